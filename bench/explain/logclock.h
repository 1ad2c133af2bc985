#ifndef LOGCLOCK_H
#define LOGCLOCK_H

#include "logtime.h"

#include <QtCore/QString>

/**
 * The time of a log as one that only goes forward, from 0 at its first line: whatever clock the lines were written by, and though somebody
 * may have set it.
 */
class LogClock
{
public:
    struct Reading
    {
        qint64 time = 0; ///< ms of the timeline
        qint64 pause = 0; ///< ms since the line before
        QString jump; ///< what the log's clock did that time does not do; empty for nothing
        bool isReboot = false; ///< the time since the start of the system began anew
    };

    Reading read(const LogTime::Moment &moment);

    /// The moment of the first line that had one.
    const LogTime::Moment &first() const { return m_first; }
    /// That of the last one.
    const LogTime::Moment &last() const { return m_last; }
    qint64 now() const { return m_now; }

    /// Where in the timeline a time of the log's clock is, counted from what the first line says; for a daytime the first such time.
    qint64 timeOf(const LogTime::Moment &moment) const;

private:
    LogTime::Moment m_first;
    LogTime::Moment m_last;
    qint64 m_now = 0;
};

#endif
