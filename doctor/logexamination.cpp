#include "logexamination.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QStringList>

Findings examineLog()
{
    // The library's lines are in Qt's own category.
    const QLoggingCategory &category = *QLoggingCategory::defaultCategory();
    const bool hasDebug = category.isDebugEnabled();
    const bool hasCritical = category.isCriticalEnabled();
    QJsonObject facts{{QStringLiteral("debug"), hasDebug}, {QStringLiteral("critical"), hasCritical}};
    QStringList deciding;
    for (const char *const variable : {"QT_LOGGING_RULES", "QT_LOGGING_CONF", "QT_LOGGING_TO_CONSOLE"}) {
        const QString value = qEnvironmentVariable(variable);
        if (value.isEmpty())
            continue;
        facts.insert(QLatin1String(variable), value);
        deciding.append(QLatin1String(variable) + QLatin1Char('=') + value);
    }
    const QString by = deciding.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(deciding.join(QStringLiteral(", ")));
    Finding finding{Finding::Area::Log, Finding::Grade::Note, QStringLiteral("levels"), QString(), facts};
    if (!hasCritical) {
        finding.text = QStringLiteral("not even failed saves are told") + by;
    } else if (!hasDebug) {
        finding.text = QStringLiteral("failures are told, calls are not; QT_LOGGING_RULES=default.debug=true tells them") + by;
    } else {
        finding.grade = Finding::Grade::Good;
        finding.text = QStringLiteral("each call is told, at debug level") + by;
    }
    return {finding};
}
