#include "timelinelog.h"

#include "timeline.h"

#include <QtCore/QLoggingCategory>

TimelineLog *TimelineLog::current = nullptr;

TimelineLog::TimelineLog(Timeline &shownIn, bool debugLines)
    : timeline(shownIn)
    , previous(qInstallMessageHandler(&TimelineLog::handle))
{
    current = this;
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, debugLines);
}

TimelineLog::~TimelineLog()
{
    qInstallMessageHandler(previous);
    current = nullptr;
}

void TimelineLog::handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const QLatin1String category(context.category);
    if (type == QtFatalMsg) {
        current->timeline.showUnfinished();
    } else if (category == QLatin1String("default")) {
        current->timeline.log(message);
        return;
    } else if (category == QLatin1String("js") || category == QLatin1String("qml")) {
        current->timeline.note(QStringLiteral("console: ") + message);
        return;
    }
    current->previous(type, context, message);
}
