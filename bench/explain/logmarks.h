#ifndef LOGMARKS_H
#define LOGMARKS_H

#include <cstring>
#include <string_view>

/// What lines of the library begin with, wherever that stands in the line of a log.
namespace LogMarks
{

constexpr std::string_view trace = "[DBG] ";
constexpr std::string_view critical = "[ERR] ";
constexpr std::string_view facade = "[QT] ";
constexpr std::string_view service = "qzaudio-focusd: ";

/// How the journal's JSON spells a text that it takes for binary data: the same marks as numbers.
constexpr std::string_view spelledMarks[] = {"[91,68,66,71,93,32,", "[91,69,82,82,93,32,", "[91,81,84,93,32,"};

constexpr std::size_t none = std::string_view::npos;

/// Where the first mark stands; most lines of a log have none, so that this decides how fast a log is read.
inline std::size_t find(std::string_view line)
{
    const char *const begin = line.data();
    const char *const end = begin + line.size();
    for (const char *at = begin; at < end; ++at) {
        at = static_cast<const char *>(std::memchr(at, '[', std::size_t(end - at)));
        if (!at)
            break;
        const std::string_view rest(at, std::size_t(end - at));
        const char next = rest.size() > 1 ? rest[1] : '\0';
        const bool isMark = (next == 'D' && rest.substr(0, trace.size()) == trace) || (next == 'E' && rest.substr(0, critical.size()) == critical)
            || (next == 'Q' && rest.substr(0, facade.size()) == facade);
        if (isMark)
            return std::size_t(at - begin);
        if (next != '9')
            continue;
        for (const std::string_view spelled : spelledMarks) {
            if (rest.substr(0, spelled.size()) == spelled)
                return std::size_t(at - begin);
        }
    }
    const void *const name = ::memmem(begin, line.size(), service.data(), service.size());
    return name ? std::size_t(static_cast<const char *>(name) - begin) : none;
}

} // namespace LogMarks

#endif
