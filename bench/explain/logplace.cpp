#include "logplace.h"

QString LogPlace::toText() const
{
    if (!isKnown())
        return {};
    QString text = QStringLiteral("line %1").arg(line);
    if (!cause.isEmpty())
        text += QStringLiteral(", ") + cause;
    const QString at = LogTime::toText(moment);
    return at.isEmpty() ? text : text + QStringLiteral(" at ") + at;
}
