#ifndef LOGGEDUNIT_H
#define LOGGEDUNIT_H

#include "loggedrequest.h"

class Timeline;

/**
 * The head unit that wrote a log: makes its platform calls once more, on the simulated platform, at their times, and tells the timeline.
 *
 * What the unit's platform refused does not reach the simulated one; what the log does not say whole does not either. Needs a VirtualClock.
 */
class LoggedUnit
{
public:
    explicit LoggedUnit(Timeline &toldTo);

    void apply(const LoggedRequest &request);
    /// Something that was noticed at this time, ms of the timeline.
    void note(qint64 time, const QString &text);
    void heading(qint64 time, const QString &text);
    /// The power was off: the chip is as at the start.
    static void restart();

private:
    Q_DISABLE_COPY(LoggedUnit)

    void advanceTo(qint64 time);
    void applyCall(const LoggedCall &call);

    Timeline &m_timeline;
};

#endif
