#include "benchprocess.h"

namespace
{

QStringList commandLine(const QStringList &arguments)
{
    return program::commandLine(QStringLiteral(BENCH_PROGRAM), arguments);
}

program::Run runIn(const QString &folder, const QStringList &arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    return program::run(process, commandLine(arguments));
}

} // namespace

BenchProcess::BenchProcess(const QStringList &arguments, const QString &workingDirectory)
    : program::Run(runIn(workingDirectory, arguments))
{
}

void BenchProcess::start(QProcess &process, const QStringList &arguments)
{
    program::start(process, commandLine(arguments));
}
