#ifndef CHILDPROCESS_H
#define CHILDPROCESS_H

#include <program.h>

/// A run of policy_process, see there.
struct ChildProcess : program::Run
{
    explicit ChildProcess(const QStringList &arguments);

    QStringList outputLines() const { return program::lines(output); }
    QStringList errorLines() const { return program::lines(errors); }
};

#endif
