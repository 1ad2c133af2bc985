#include "benchprocess.h"

namespace
{

constexpr int patience = 60000; // ms

} // namespace

void BenchProcess::start(QProcess &process, const QStringList &arguments)
{
    // Through the emulator where the test itself runs in one.
    QStringList command = QString::fromLatin1(BENCH_EMULATOR).split(QLatin1Char(' '), Qt::SkipEmptyParts) << QStringLiteral(BENCH_PROGRAM) << arguments;
    const QString program = command.takeFirst();
    process.start(program, command);
}

BenchProcess::BenchProcess(const QStringList &arguments, const QString &workingDirectory)
{
    QProcess process;
    process.setWorkingDirectory(workingDirectory);
    start(process, arguments);
    process.waitForFinished(patience);
    exitStatus = process.exitStatus();
    exitCode = process.exitCode();
    output = QString::fromUtf8(process.readAllStandardOutput());
    errors = QString::fromUtf8(process.readAllStandardError());
}
