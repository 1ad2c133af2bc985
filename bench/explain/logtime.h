#ifndef LOGTIME_H
#define LOGTIME_H

#include <QtCore/QString>

#include <optional>
#include <string_view>

/// The times that logs are written with.
namespace LogTime
{

enum class Clock {
    None, ///< no time at all
    Uptime, ///< since the system or the process started
    Daytime, ///< of a day that is not said
    Yearless, ///< of a year that is not said
    Calendar,
};

struct Moment
{
    Clock clock = Clock::None;
    qint64 milliseconds = 0; ///< since the clock's own beginning, for Calendar since 1970 in UTC
    qint64 offset = 0; ///< ms that the time zone which it was written in is ahead of UTC
};

/// As it was written, as far as it says: "2026-11-22 12:03:07.123", "12:03:07.123", "12.345 s"; empty for no time.
QString toText(const Moment &moment);

/// A number of digits only; empty where there is anything else, or nothing, or more than fits.
std::optional<qint64> number(std::string_view digits);

/// What a text begins with, which is taken off it; nothing is taken where it is no such time.
class Reader
{
public:
    explicit Reader(std::string_view text)
        : m_rest(text)
    {
    }

    std::string_view rest() const { return m_rest; }
    bool skip(char character);
    void skip(std::size_t count) { m_rest.remove_prefix(count); }
    void skipBlanks();
    /// Up to the next blank.
    std::string_view word();

    /// "12.345678", with at least one digit behind the point.
    std::optional<Moment> seconds();
    /// "12:03:07", "12:03:07.123456", with a comma as well
    std::optional<Moment> daytime();
    /// "2026-11-22T12:03:07.123+01:00", with a blank for the T, with "/" for "-", with or without a fraction and an offset
    std::optional<Moment> calendar();
    /// "Nov 22 12:03:07.123456"
    std::optional<Moment> yearless();

private:
    std::optional<int> digits(std::size_t least, std::size_t most);
    qint64 fraction();
    qint64 offset();

    std::string_view m_rest;
};

} // namespace LogTime

#endif
