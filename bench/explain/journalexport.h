#ifndef JOURNALEXPORT_H
#define JOURNALEXPORT_H

#include "logframe.h"

/**
 * The journal's export: an entry is a block of lines KEY=VALUE, which an empty line ends. A value with line breaks follows its key on a
 * line of its own, behind its length in eight bytes.
 */
class JournalExport
{
public:
    static bool isBeginning(std::string_view line);

    /// Whether an entry is being read. All lines then go here.
    bool isOpen() const { return m_isOpen; }
    /// @return true where an entry of the library has ended with this line, and @p frame is that
    bool add(std::string_view line, quint64 number, LogFrame &frame);
    /// The log has ended, or does not go on for now.
    bool finish(LogFrame &frame);

private:
    void setField(std::string_view key, std::string_view value, quint64 number);
    void addBinary(std::string_view line);

    bool m_isOpen = false;
    std::string m_key; // of the value that is being read
    std::string m_value; // with its length in front
    quint64 m_valueLine = 0;
    LogFrame m_entry;
    std::string m_message;
    std::string m_program;
};

#endif
