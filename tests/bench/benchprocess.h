#ifndef BENCHPROCESS_H
#define BENCHPROCESS_H

#include <program.h>

#include <QtCore/QMap>

/// A run of qzaudio-bench.
struct BenchProcess : program::Run
{
    using Environment = QMap<QString, QString>;

    /// @param changed variables that differ from the test's own
    explicit BenchProcess(const QStringList &arguments, const QString &workingDirectory = {}, const Environment &changed = {});

    /// Starts the bench without waiting for it.
    static void start(QProcess &process, const QStringList &arguments);

    /// Whether "play" can start a process that plays: an emulator runs one program only.
    static bool canSupervise();
};

#endif
