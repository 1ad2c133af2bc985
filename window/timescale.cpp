#include "timescale.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double shortestView = 0.02; // s
constexpr double roomOfTick = 80; // pixels

constexpr double steps[]
    = {0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 14400, 43200, 86400};

} // namespace

void TimeScale::setWidth(double pixels)
{
    m_width = std::max(1.0, pixels);
}

void TimeScale::setDuration(double seconds)
{
    const bool wasWhole = isWhole();
    m_duration = std::max(shortestView, seconds);
    if (wasWhole)
        fit();
    hold();
}

void TimeScale::fit()
{
    m_from = 0;
    m_to = m_duration;
}

void TimeScale::zoom(double factor, double place)
{
    const double time = timeAt(place);
    const double length = std::clamp((m_to - m_from) * factor, std::min(shortestView, m_duration), m_duration);
    m_from = time - length * place / m_width;
    m_to = m_from + length;
    hold();
}

void TimeScale::scroll(double pixels)
{
    const double seconds = pixels * secondsPerPixel();
    m_from += seconds;
    m_to += seconds;
    hold();
}

void TimeScale::show(double time)
{
    if (time < m_from)
        scroll((time - m_from) / secondsPerPixel());
    else if (time > m_to)
        scroll((time - m_to) / secondsPerPixel());
}

void TimeScale::hold()
{
    const double length = std::min(m_to - m_from, m_duration);
    m_from = std::clamp(m_from, 0.0, m_duration - length);
    m_to = m_from + length;
}

double TimeScale::secondsPerPixel() const
{
    return (m_to - m_from) / m_width;
}

double TimeScale::placeOf(double time) const
{
    return (time - m_from) / secondsPerPixel();
}

double TimeScale::timeAt(double place) const
{
    return std::clamp(m_from + place * secondsPerPixel(), 0.0, m_duration);
}

QVector<TimeScale::Tick> TimeScale::ticks(double origin) const
{
    const double *const step = std::find_if(std::begin(steps), std::end(steps) - 1, [this](double one) { return one / secondsPerPixel() >= roomOfTick; });
    QVector<Tick> all;
    const double first = std::ceil((m_from + origin) / *step);
    for (double count = first; count * *step <= m_to + origin && all.size() < m_width; ++count) {
        const double time = count * *step - origin;
        all.append({time, placeOf(time), text(count * *step)});
    }
    return all;
}

QString TimeScale::text(double seconds)
{
    constexpr qint64 millisecondsPerSecond = 1000;
    constexpr qint64 secondsPerMinute = 60;
    constexpr qint64 secondsPerHour = 3600;
    const qint64 milliseconds = qRound64(seconds * double(millisecondsPerSecond));
    const qint64 whole = milliseconds / millisecondsPerSecond;
    const auto digits = [](qint64 number, int width) { return QString::number(number).rightJustified(width, QLatin1Char('0')); };
    QString text = whole < secondsPerHour
        ? QStringLiteral("%1:%2").arg(whole / secondsPerMinute).arg(digits(whole % secondsPerMinute, 2))
        : QStringLiteral("%1:%2:%3").arg(whole / secondsPerHour).arg(digits(whole % secondsPerHour / secondsPerMinute, 2), digits(whole % secondsPerMinute, 2));
    if (milliseconds % millisecondsPerSecond != 0) {
        text += QLatin1Char('.') + digits(milliseconds % millisecondsPerSecond, 3);
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
    }
    return text;
}
