#include "journalexport.h"

#include "logmarks.h"

#include <algorithm>

namespace
{

constexpr std::size_t lengthSize = 8;
constexpr std::size_t longestValue = 65536;

std::size_t lengthOf(std::string_view value)
{
    std::size_t length = 0;
    for (std::size_t i = lengthSize; i > 0; --i)
        length = length << 8U | static_cast<unsigned char>(value[i - 1]);
    return length;
}

} // namespace

bool JournalExport::isBeginning(std::string_view line)
{
    constexpr std::string_view cursor = "__CURSOR=";
    return line.substr(0, cursor.size()) == cursor;
}

bool JournalExport::add(std::string_view line, quint64 number, LogFrame &frame)
{
    if (!m_key.empty()) {
        addBinary(line);
        return false;
    }
    // An entry of which the end is missing ends where the next one begins.
    const bool hasEnded = line.empty() || (m_isOpen && isBeginning(line));
    const bool isComplete = hasEnded && finish(frame);
    if (line.empty())
        return isComplete;
    m_isOpen = true;
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) {
        m_key = line;
        m_value.clear();
        m_valueLine = number;
    } else {
        setField(line.substr(0, equals), line.substr(equals + 1), number);
    }
    return isComplete;
}

/// One more line of a value whose length stands in front of it. Its bytes may be line breaks, too.
void JournalExport::addBinary(std::string_view line)
{
    if (m_value.size() < longestValue)
        m_value += line;
    const bool isWhole = m_value.size() >= lengthSize && m_value.size() - lengthSize >= std::min(lengthOf(m_value), longestValue - lengthSize);
    if (!isWhole) {
        m_value += '\n';
        return;
    }
    const std::string key = std::exchange(m_key, {});
    setField(key, std::string_view(m_value).substr(lengthSize), m_valueLine);
}

void JournalExport::setField(std::string_view key, std::string_view value, quint64 number)
{
    constexpr qint64 microsecondsPerMillisecond = 1000;
    if (key == "MESSAGE") {
        m_message = value;
        m_entry.line = number;
    } else if (key == "_PID") {
        m_entry.process = LogTime::number(value).value_or(LogFrame::unknown);
    } else if (key == "SYSLOG_IDENTIFIER") {
        m_program = value;
    } else if (key == "__REALTIME_TIMESTAMP") {
        if (const auto microseconds = LogTime::number(value))
            m_entry.time = {LogTime::Clock::Calendar, *microseconds / microsecondsPerMillisecond};
    }
}

bool JournalExport::finish(LogFrame &frame)
{
    const std::size_t mark = LogMarks::find(m_message);
    const bool isOfLibrary = m_isOpen && mark != LogMarks::none;
    if (isOfLibrary) {
        frame = m_entry;
        frame.spelledText = m_message.substr(mark);
        frame.text = frame.spelledText;
        frame.spelledProgram = m_program;
        frame.program = frame.spelledProgram;
    }
    m_isOpen = false;
    m_key.clear();
    m_entry = LogFrame();
    m_message.clear();
    m_program.clear();
    return isOfLibrary;
}
