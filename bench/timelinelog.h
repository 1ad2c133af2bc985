#ifndef TIMELINELOG_H
#define TIMELINELOG_H

#include <QtCore/QtGlobal>

class LogFile;
class Timeline;

/**
 * Takes the log lines of the library into the timeline, and what a script's console prints.
 *
 * Where debug lines are neither shown nor kept the library formats none; its critical lines are shown always. Lines of other categories go where
 * they went before. One at a time: Qt has one message handler.
 */
class TimelineLog
{
public:
    /// @param keptIn receives all lines of the library and outlives this; null for no file
    TimelineLog(Timeline &shownIn, bool showsDebugLines, LogFile *keptIn = nullptr);
    ~TimelineLog();

private:
    Q_DISABLE_COPY(TimelineLog)

    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message);

    Timeline &m_timeline;
    const bool m_showsDebugLines;
    LogFile *const m_file;
    QtMessageHandler m_previous;
    static TimelineLog *current;
};

#endif
