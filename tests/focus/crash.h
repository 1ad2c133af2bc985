#ifndef CRASH_H
#define CRASH_H

#include <QtCore/QByteArray>

#include <functional>

/// How a piece of code that must not return ended.
struct Crash
{
    bool aborted = false; ///< by SIGABRT, the end of a fatal assertion
    QByteArray errorOutput; ///< what it wrote to the standard error stream
};

/// Runs @p code in a copy of this process.
Crash crashOf(const std::function<void()> &code);

#endif
