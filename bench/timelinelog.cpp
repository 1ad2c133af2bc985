#include "timelinelog.h"

#include "logfile.h"
#include "timeline.h"

#include <QtCore/QLoggingCategory>

TimelineLog *TimelineLog::current = nullptr;

TimelineLog::TimelineLog(Timeline &shownIn, bool showsDebugLines, LogFile *keptIn)
    : m_timeline(shownIn)
    , m_showsDebugLines(showsDebugLines)
    , m_file(keptIn)
    , m_previous(qInstallMessageHandler(&TimelineLog::handle))
{
    current = this;
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, showsDebugLines || keptIn);
}

TimelineLog::~TimelineLog()
{
    qInstallMessageHandler(m_previous);
    current = nullptr;
}

void TimelineLog::handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const QLatin1String category(context.category);
    if (type == QtFatalMsg) {
        current->m_timeline.showUnfinished();
    } else if (category == QLatin1String("default")) {
        if (current->m_file)
            current->m_file->add(current->m_timeline.now(), message);
        if (type != QtDebugMsg || current->m_showsDebugLines)
            current->m_timeline.log(message);
        return;
    } else if (category == QLatin1String("js") || category == QLatin1String("qml")) {
        current->m_timeline.note(QStringLiteral("console: ") + message);
        return;
    }
    current->m_previous(type, context, message);
}
