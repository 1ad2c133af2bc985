#include "argumentlist.h"

QStringList ArgumentList::split(const QString &arguments)
{
    QStringList parts;
    QString part;
    bool isQuoted = false;
    int depth = 0;
    for (int i = 0; i < arguments.size(); ++i) {
        const QChar character = arguments.at(i);
        if (isQuoted && character == QLatin1Char('\\')) {
            part += arguments.midRef(i, 2);
            ++i;
            continue;
        }
        if (character == QLatin1Char('"'))
            isQuoted = !isQuoted;
        else if (!isQuoted && (character == QLatin1Char('{') || character == QLatin1Char('[')))
            ++depth;
        else if (!isQuoted && (character == QLatin1Char('}') || character == QLatin1Char(']')))
            --depth;
        if (!isQuoted && depth == 0 && character == QLatin1Char(',')) {
            parts.append(part.trimmed());
            part.clear();
        } else {
            part += character;
        }
    }
    if (!part.trimmed().isEmpty())
        parts.append(part.trimmed());
    return parts;
}
