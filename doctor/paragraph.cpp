#include "paragraph.h"

#include <algorithm>

QStringList Paragraph::folded(const QString &text, int columns)
{
    if (columns <= 0)
        return {text};
    QStringList lines;
    QString line;
    const QStringList words = text.split(QLatin1Char(' '));
    for (const QString &word : words) {
        if (!line.isEmpty() && line.size() + 1 + word.size() > columns) {
            lines.append(line);
            line.clear();
        }
        line += line.isEmpty() ? word : QLatin1Char(' ') + word;
    }
    return lines << line;
}

QString Paragraph::withHead(const QString &head, const QString &text, int indentation, int columns)
{
    constexpr int leastRoom = 40;
    constexpr int indentationBelow = 6;
    const QStringList words = text.split(QLatin1Char(' '));
    const bool isTooLong = std::any_of(words.cbegin(), words.cend(), [&](const QString &word) { return word.size() > columns - indentation; });
    const bool isBelow = columns > 0 && (columns - indentation < leastRoom || isTooLong);
    const QString blanks(isBelow ? indentationBelow : indentation, QLatin1Char(' '));
    const QStringList lines = folded(text, columns > 0 ? columns - blanks.size() : 0);
    const QString begin = isBelow ? head + QLatin1Char('\n') + blanks : head.leftJustified(indentation);
    return begin + lines.join(QLatin1Char('\n') + blanks) + QLatin1Char('\n');
}
