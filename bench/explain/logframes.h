#ifndef LOGFRAMES_H
#define LOGFRAMES_H

#include "journalexport.h"
#include "logforms.h"
#include "logpattern.h"

#include <vector>

/// Finds the library's lines in a log, and what the log says of them. Which form the lines have it finds out by itself, for each anew.
class LogFrames
{
public:
    LogFrames();

    /// Lines of this form are recognised as well, before all others. @return what is wrong with it; empty when it is understood
    QString setPattern(const QString &pattern);

    enum class Found {
        Nothing,
        Frame,
        UnknownForm, ///< a line of the library, but what is before its text is not understood; the frame has the text only
    };

    /// @param line the next one of the log; the frame is valid until the line is gone
    Found read(std::string_view line, quint64 number, LogFrame &frame);
    /// What the log ended in.
    bool finish(LogFrame &frame);

    /// Names of the forms that were met.
    QStringList met() const;

private:
    LogPattern m_pattern;
    JournalExport m_export;
    const LogForms::Form *m_last; // the form of the line before, which is mostly that of the next one, too
    std::vector<bool> m_met; // by form
    bool m_metPattern = false;
    bool m_metExport = false;
};

#endif
