#ifndef LOGCLOCK_H
#define LOGCLOCK_H

#include "logtime.h"

#include <QtCore/QString>
#include <QtCore/QVector>

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

    /**
     * Where in the timeline the log's clock had reached a time; of a time that it shows several times, because it was set back or because another
     * day has that daytime, too, the first. One that it leaps over is where it arrives.
     *
     * While the log is read, a time that is still to come is where the clock will have it unless somebody sets it.
     */
    qint64 timeOf(const LogTime::Moment &moment) const;

private:
    /// From here on the clock runs as the timeline does.
    struct Stretch
    {
        LogTime::Moment moment;
        qint64 time = 0;
    };

    void beginStretch(const LogTime::Moment &moment);
    /// ms from the beginning of a stretch to a time, as far as that comes after it; less than 0 for one before.
    static qint64 fromBegin(const LogTime::Moment &begin, const LogTime::Moment &moment);

    QVector<Stretch> m_stretches;
    LogTime::Moment m_first;
    LogTime::Moment m_last;
    qint64 m_now = 0;
};

#endif
