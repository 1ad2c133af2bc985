#pragma once

#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// A run of qzaudio-bench from start to end, on the same flash as the test.
struct BenchProcess
{
    explicit BenchProcess(const QStringList &arguments, const QString &workingDirectory = {});

    /// Starts the bench without waiting for it.
    static void start(QProcess &process, const QStringList &arguments);

    QProcess::ExitStatus exitStatus = QProcess::CrashExit;
    int exitCode = -1;
    QString output;
    QString errors;
};
