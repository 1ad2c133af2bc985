#include "benchprocess.h"

namespace
{

QStringList commandLine(const QStringList &given)
{
    QStringList arguments = given;
    if (!BenchProcess::canSupervise() && arguments.value(0) == QLatin1String("play"))
        arguments.insert(1, QStringLiteral("--in-process"));
    return program::commandLine(QStringLiteral(BENCH_PROGRAM), arguments);
}

program::Run runIn(const QString &folder, const QStringList &arguments, const BenchProcess::Environment &changed)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // That of whoever runs the tests.
    environment.remove(QStringLiteral("COLUMNS"));
    for (auto variable = changed.cbegin(); variable != changed.cend(); ++variable)
        environment.insert(variable.key(), variable.value());
    process.setProcessEnvironment(environment);
    return program::run(process, commandLine(arguments));
}

} // namespace

BenchProcess::BenchProcess(const QStringList &arguments, const QString &workingDirectory, const Environment &changed)
    : program::Run(runIn(workingDirectory, arguments, changed))
{
}

void BenchProcess::start(QProcess &process, const QStringList &arguments)
{
    program::start(process, commandLine(arguments));
}

bool BenchProcess::canSupervise()
{
    return !program::isEmulated();
}
