#include "settingsprocess.h"

namespace
{

constexpr int patienceMs = 100000;

} // namespace

QStringList settingsprocess::commandLine(const QStringList &arguments)
{
    return program::commandLine(QStringLiteral(SETTINGS_CLIENT), arguments);
}

QString settingsprocess::whyNobodyCannotRun()
{
    return program::whyNobodyCannotRun(QStringLiteral(SETTINGS_CLIENT));
}

program::Run settingsprocess::run(const QStringList &arguments, const QStringList &wrapper)
{
    return program::run(wrapper + commandLine(arguments));
}

std::unique_ptr<QProcess> settingsprocess::start(const QStringList &arguments)
{
    auto process = std::make_unique<QProcess>();
    program::start(*process, commandLine(arguments));
    while (!process->canReadLine() && process->waitForReadyRead(patienceMs)) { }
    if (!process->canReadLine())
        qFatal("%s said nothing: %s", qUtf8Printable(arguments.join(QLatin1Char(' '))), process->readAllStandardError().constData());
    process->readLine();
    return process;
}

QString settingsprocess::storedValue(const QString &group, const QString &key)
{
    const program::Run outcome = run({QStringLiteral("value"), group, key});
    return outcome.exitCode == 0 ? outcome.output.trimmed() : outcome.errors;
}
