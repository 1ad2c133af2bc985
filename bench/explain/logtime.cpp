#include "logtime.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>

#include <algorithm>
#include <charconv>

namespace
{

constexpr qint64 millisecondsPerSecond = 1000;
constexpr qint64 secondsPerMinute = 60;
constexpr qint64 minutesPerHour = 60;
constexpr qint64 millisecondsPerDay = 24 * minutesPerHour * secondsPerMinute * millisecondsPerSecond;

constexpr std::string_view months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isBlank(char character)
{
    return character == ' ' || character == '\t';
}

/// Empty for a date that there is not.
std::optional<qint64> dayOf(int year, int month, int day)
{
    const QDate date(year, month, day);
    return date.isValid() ? std::make_optional(QDate(1970, 1, 1).daysTo(date) * millisecondsPerDay) : std::nullopt;
}

} // namespace

namespace LogTime
{

QString toText(const Moment &moment)
{
    const QDateTime written = QDateTime::fromMSecsSinceEpoch(moment.milliseconds + moment.offset, Qt::UTC);
    switch (moment.clock) {
    case Clock::None:
        return {};
    case Clock::Uptime:
        return QStringLiteral("%1 s").arg(double(moment.milliseconds) / millisecondsPerSecond, 0, 'f', 3);
    case Clock::Daytime:
        return written.toString(QStringLiteral("hh:mm:ss.zzz"));
    case Clock::Yearless:
        return QLocale::c().toString(written, QStringLiteral("MMM d hh:mm:ss.zzz"));
    case Clock::Calendar:
        return written.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
    }
    return {};
}

std::optional<qint64> number(std::string_view digits)
{
    qint64 value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const bool isNumber = error == std::errc() && end == digits.data() + digits.size() && !digits.empty() && isDigit(digits.front());
    return isNumber ? std::make_optional(value) : std::nullopt;
}

bool Reader::skip(char character)
{
    if (m_rest.empty() || m_rest.front() != character)
        return false;
    m_rest.remove_prefix(1);
    return true;
}

void Reader::skipBlanks()
{
    std::size_t count = 0;
    while (count < m_rest.size() && isBlank(m_rest[count]))
        ++count;
    skip(count);
}

std::string_view Reader::word()
{
    std::size_t count = 0;
    while (count < m_rest.size() && !isBlank(m_rest[count]))
        ++count;
    const std::string_view word = m_rest.substr(0, count);
    skip(count);
    return word;
}

std::optional<int> Reader::digits(std::size_t least, std::size_t most)
{
    std::size_t count = 0;
    int value = 0;
    for (; count < most && count < m_rest.size() && isDigit(m_rest[count]); ++count)
        value = 10 * value + (m_rest[count] - '0');
    if (count < least)
        return {};
    m_rest.remove_prefix(count);
    return value;
}

/// ms of ".123456", 0 where there is none.
qint64 Reader::fraction()
{
    if (m_rest.size() < 2 || (m_rest.front() != '.' && m_rest.front() != ',') || !isDigit(m_rest[1]))
        return 0;
    m_rest.remove_prefix(1);
    qint64 milliseconds = 0;
    qint64 unit = millisecondsPerSecond / 10;
    for (; !m_rest.empty() && isDigit(m_rest.front()); unit /= 10) {
        milliseconds += (m_rest.front() - '0') * unit;
        m_rest.remove_prefix(1);
    }
    return milliseconds;
}

std::optional<Moment> Reader::seconds()
{
    const Reader before = *this;
    qint64 value = 0;
    constexpr std::size_t most = 12;
    std::size_t count = 0;
    for (; count < most && !m_rest.empty() && isDigit(m_rest.front()); ++count) {
        value = 10 * value + (m_rest.front() - '0');
        m_rest.remove_prefix(1);
    }
    if (count == 0 || m_rest.size() < 2 || m_rest.front() != '.' || !isDigit(m_rest[1])) {
        *this = before;
        return {};
    }
    return Moment{Clock::Uptime, value * millisecondsPerSecond + fraction()};
}

std::optional<Moment> Reader::daytime()
{
    const Reader before = *this;
    const auto hour = digits(2, 2);
    const bool isHour = hour && skip(':');
    const auto minute = isHour ? digits(2, 2) : std::nullopt;
    const bool isMinute = minute && skip(':');
    const auto second = isMinute ? digits(2, 2) : std::nullopt;
    constexpr int hours = 24;
    constexpr int leapSecond = 60;
    if (!second || *hour >= hours || *minute >= minutesPerHour || *second > leapSecond) {
        *this = before;
        return {};
    }
    return Moment{Clock::Daytime, ((*hour * minutesPerHour + *minute) * secondsPerMinute + *second) * millisecondsPerSecond + fraction()};
}

std::optional<Moment> Reader::calendar()
{
    const Reader before = *this;
    constexpr std::size_t yearDigits = 4;
    const auto year = digits(yearDigits, yearDigits);
    const char separator = m_rest.empty() ? '\0' : m_rest.front();
    const bool isYear = year && (separator == '-' || separator == '/' || separator == '.') && skip(separator);
    const auto month = isYear ? digits(2, 2) : std::nullopt;
    const bool isMonth = month && skip(separator);
    const auto day = isMonth ? digits(2, 2) : std::nullopt;
    const auto date = day ? dayOf(*year, *month, *day) : std::nullopt;
    const bool isDate = date && (skip('T') || skip(' '));
    const auto time = isDate ? daytime() : std::nullopt;
    if (!time) {
        *this = before;
        return {};
    }
    const qint64 written = *date + time->milliseconds;
    const qint64 ahead = offset();
    return Moment{Clock::Calendar, written - ahead, ahead};
}

/// Of a time zone, in ms: "Z", "+01:00", "+0100"; 0 where there is none.
qint64 Reader::offset()
{
    if (skip('Z'))
        return 0;
    const Reader before = *this;
    const bool isEast = skip('+');
    if (!isEast && !skip('-'))
        return 0;
    const auto hours = digits(2, 2);
    skip(':');
    const auto minutes = hours ? digits(2, 2) : std::nullopt;
    if (!minutes) {
        *this = before;
        return 0;
    }
    const qint64 size = (*hours * minutesPerHour + *minutes) * secondsPerMinute * millisecondsPerSecond;
    return isEast ? size : -size;
}

std::optional<Moment> Reader::yearless()
{
    const Reader before = *this;
    constexpr std::size_t letters = 3;
    const auto *const month = std::find(std::begin(months), std::end(months), m_rest.substr(0, letters));
    if (month != std::end(months)) {
        m_rest.remove_prefix(letters);
        skipBlanks();
        const auto day = digits(1, 2);
        skipBlanks();
        // A leap year, so that each day exists.
        constexpr int anyYear = 1972;
        const auto date = day ? dayOf(anyYear, int(month - std::begin(months)) + 1, *day) : std::nullopt;
        const auto time = date ? daytime() : std::nullopt;
        if (time)
            return Moment{Clock::Yearless, *date + time->milliseconds};
    }
    *this = before;
    return {};
}

} // namespace LogTime
