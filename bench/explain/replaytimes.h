#ifndef REPLAYTIMES_H
#define REPLAYTIMES_H

#include "loggedrequest.h"

#include <optional>

/**
 * When a scenario makes the requests of a log, ms of the scenario's time.
 *
 * That is when the log has them, but for what the library's timers do: on a unit they run late, or early by some percent, and the lines of many logs
 * have whole seconds only. In a scenario they run out to the millisecond. So that requests keep their order with them, a request before a timer is
 * made before it, and one behind it no earlier.
 */
class ReplayTimes
{
public:
    /// @param beginning of the log, in the scenario's time
    explicit ReplayTimes(qint64 beginning = 0)
        : m_beginning(beginning)
        , m_now(beginning)
    {
    }

    /// The next request's time, which becomes now().
    qint64 next(const LoggedRequest &request);
    /// Now is this, where it is not later already.
    void advanceTo(qint64 time) { m_now = qMax(m_now, time); }
    qint64 now() const { return m_now; }

    /// Whether the request is one of a timer that runs in the scenario, too. Asked before next().
    bool isAwaited(const LoggedRequest &request) const;

private:
    enum Timer { DelayedVolumes, FirstEqualizer, CarPlayAlert, CarPlayUnduck, timerCount };

    static std::optional<Timer> timerOf(const LoggedRequest &request);
    void learn(const LoggedRequest &request);
    void start(Timer timer, int interval) { m_due[timer] = m_now + interval; }

    qint64 m_beginning;
    qint64 m_now;
    std::optional<qint64> m_due[timerCount];
};

#endif
