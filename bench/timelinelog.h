#ifndef TIMELINELOG_H
#define TIMELINELOG_H

#include <QtCore/QtGlobal>

class Timeline;

/**
 * Takes the log lines of the library into the timeline, and what a script's console prints.
 *
 * Without debug lines the library formats none; its critical lines are shown always. Lines of other categories go where they
 * went before. One at a time: Qt has one message handler.
 */
class TimelineLog
{
public:
    TimelineLog(Timeline &shownIn, bool debugLines);
    ~TimelineLog();

private:
    Q_DISABLE_COPY(TimelineLog)

    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message);

    Timeline &m_timeline;
    QtMessageHandler m_previous;
    static TimelineLog *current;
};

#endif
