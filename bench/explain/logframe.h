#ifndef LOGFRAME_H
#define LOGFRAME_H

#include "logtime.h"

#include <string>
#include <string_view>

/// A line of the library without what the log wrote around it.
struct LogFrame
{
    static constexpr qint64 unknown = -1;

    std::string_view text; ///< from the library's mark on; may have line breaks where the log kept them
    LogTime::Moment time;
    qint64 process = unknown; ///< its number
    std::string_view program; ///< empty where it is not said
    quint64 line = 0; ///< in the log

    /// For people: "player (812)", "process 812"; by the thread's number where the process's is not known.
    QString writer(qint64 thread) const;

    // Where the log spells a text otherwise, the views above point here.
    std::string spelledText;
    std::string spelledProgram;
};

#endif
