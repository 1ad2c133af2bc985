#pragma once

#include <program.h>

/// A run of qzaudio-bench.
struct BenchProcess : program::Run
{
    explicit BenchProcess(const QStringList &arguments, const QString &workingDirectory = {});

    /// Starts the bench without waiting for it.
    static void start(QProcess &process, const QStringList &arguments);
};
