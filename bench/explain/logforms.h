#ifndef LOGFORMS_H
#define LOGFORMS_H

#include "logframe.h"

#include <iterator>

/// The forms that a line of a log has before the library's text. Those of several lines are not here: JournalExport.
namespace LogForms
{

/// @param line of the log, whole; the library's mark is at @p mark. False where the line has another form; @p frame is then undefined.
using Recognise = bool (*)(std::string_view line, std::size_t mark, LogFrame &frame);

struct Form
{
    const char *name;
    Recognise recognise;
};

bool isBare(std::string_view line, std::size_t mark, LogFrame &frame);
bool isJournalJson(std::string_view line, std::size_t mark, LogFrame &frame);
bool isSinceBoot(std::string_view line, std::size_t mark, LogFrame &frame);
bool isStructuredSyslog(std::string_view line, std::size_t mark, LogFrame &frame);
bool isSyslog(std::string_view line, std::size_t mark, LogFrame &frame);
bool isSyslogWithDate(std::string_view line, std::size_t mark, LogFrame &frame);
bool isDltText(std::string_view line, std::size_t mark, LogFrame &frame);
bool isDltTable(std::string_view line, std::size_t mark, LogFrame &frame);
bool isMessagePattern(std::string_view line, std::size_t mark, LogFrame &frame);

/// In the order in which they are tried: what is recognised more surely comes first.
constexpr Form forms[] = {
    {"no frame", isBare},
    {"journalctl -o json", isJournalJson},
    {"[seconds] as of the kernel, journalctl -o short-monotonic", isSinceBoot},
    {"syslog as RFC 5424", isStructuredSyslog},
    {"journalctl -o short, syslog as RFC 3164", isSyslog},
    {"journalctl -o short-iso, syslog with a date", isSyslogWithDate},
    {"text of a DLT viewer", isDltText},
    {"table of a DLT viewer", isDltTable},
    {"QT_MESSAGE_PATTERN", isMessagePattern},
};

} // namespace LogForms

#endif
