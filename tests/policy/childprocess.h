#pragma once

#include <QtCore/QProcess>
#include <QtCore/QStringList>

/// A run of policy_process, see there. Starts where the test runs: on the same flash.
struct ChildProcess
{
    explicit ChildProcess(const QStringList &arguments);

    QProcess::ExitStatus exitStatus = QProcess::CrashExit;
    int exitCode = -1;
    QStringList outputLines;
    QStringList errorLines;
};
