#include "logclock.h"

#include <algorithm>

using LogTime::Clock;
using LogTime::Moment;

namespace
{

constexpr qint64 second = 1000;
constexpr qint64 minute = 60 * second;
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;
/// Lines of several threads and programs are not quite in order.
constexpr qint64 disorder = second;
/// Further forward than this nobody leaves a unit switched on: somebody has set the clock.
constexpr qint64 farthest = 30 * day;
/// A clock that is set more often than this is none.
constexpr int mostStretches = 1000;

QString lengthText(qint64 milliseconds)
{
    if (milliseconds >= 2 * day)
        return QStringLiteral("%1 days").arg(milliseconds / day);
    if (milliseconds >= 2 * hour)
        return QStringLiteral("%1 h").arg(milliseconds / hour);
    if (milliseconds >= 2 * minute)
        return QStringLiteral("%1 min").arg(milliseconds / minute);
    return QStringLiteral("%1 s").arg(double(milliseconds) / second, 0, 'f', 1);
}

/// Clocks that begin again: by how much the time went on, where it went back by almost a whole round.
qint64 acrossTheEnd(Clock clock, qint64 passed)
{
    constexpr qint64 leapYear = 366 * day;
    if (clock == Clock::Daytime && passed < -day / 2)
        return passed + day;
    if (clock == Clock::Yearless && passed < -leapYear / 2)
        return passed + leapYear;
    return passed;
}

} // namespace

LogClock::Reading LogClock::read(const Moment &moment)
{
    Reading reading;
    reading.time = m_now;
    if (moment.clock == Clock::None)
        return reading;
    if (m_first.clock == Clock::None) {
        m_first = moment;
        beginStretch(moment);
    }
    const bool isComparable = m_last.clock == moment.clock;
    const qint64 passed = isComparable ? acrossTheEnd(moment.clock, moment.milliseconds - m_last.milliseconds) : 0;
    if (passed < 0 && passed >= -disorder)
        return reading;
    m_last = moment;
    if (passed < 0) {
        reading.jump = QStringLiteral("the clock goes back by %1, to %2").arg(lengthText(-passed), LogTime::toText(moment));
        reading.isReboot = moment.clock == Clock::Uptime;
        beginStretch(moment);
        return reading;
    }
    if (passed > farthest) {
        reading.jump = QStringLiteral("the clock is set forward by %1, to %2").arg(lengthText(passed), LogTime::toText(moment));
        beginStretch(moment);
        return reading;
    }
    reading.pause = passed;
    m_now += passed;
    reading.time = m_now;
    return reading;
}

void LogClock::beginStretch(const Moment &moment)
{
    if (moment.clock != m_first.clock)
        return;
    if (m_stretches.size() >= mostStretches)
        m_stretches.removeLast();
    m_stretches.append({moment, m_now});
}

qint64 LogClock::fromBegin(const Moment &begin, const Moment &moment)
{
    qint64 milliseconds = moment.milliseconds;
    if (moment.clock == Clock::Daytime && begin.clock != Clock::Daytime) {
        const qint64 written = begin.milliseconds + begin.offset;
        milliseconds += written - written % day - begin.offset;
        if (milliseconds < begin.milliseconds)
            milliseconds += day;
    } else if (moment.clock == Clock::Daytime && milliseconds < begin.milliseconds) {
        milliseconds += day;
    } else if (moment.clock == Clock::Calendar) {
        // Given without a time zone, in that of the log.
        milliseconds -= begin.offset;
    }
    return moment.clock == Clock::Yearless ? acrossTheEnd(moment.clock, milliseconds - begin.milliseconds) : milliseconds - begin.milliseconds;
}

qint64 LogClock::timeOf(const Moment &moment) const
{
    if (m_stretches.isEmpty())
        return 0;
    int index = 0;
    while (index + 1 < m_stretches.size()) {
        const Stretch &stretch = m_stretches.at(index);
        if (stretch.time + fromBegin(stretch.moment, moment) <= m_stretches.at(index + 1).time)
            break;
        ++index;
    }
    const Stretch &stretch = m_stretches.at(index);
    const qint64 time = stretch.time + fromBegin(stretch.moment, moment);
    return index > 0 ? std::max(time, stretch.time) : time;
}
