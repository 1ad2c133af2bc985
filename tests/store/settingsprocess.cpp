#include "settingsprocess.h"

#include <QtCore/QElapsedTimer>

namespace
{

constexpr int patienceMs = 100000;

void startProcess(QProcess &process, const QStringList &arguments, const QStringList &wrapper = {})
{
    QStringList words = wrapper + settingsprocess::commandLine(arguments);
    const QString program = words.takeFirst();
    process.start(program, words);
}

} // namespace

QStringList settingsprocess::commandLine(const QStringList &arguments)
{
    return QString::fromLatin1(SETTINGS_CLIENT_EMULATOR).split(QLatin1Char(' '), Qt::SkipEmptyParts) << QStringLiteral(SETTINGS_CLIENT) << arguments;
}

bool settingsprocess::isEmulated()
{
    return qstrlen(SETTINGS_CLIENT_EMULATOR) > 0;
}

settingsprocess::Outcome settingsprocess::run(const QStringList &arguments, const QStringList &wrapper)
{
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    startProcess(process, arguments, wrapper);
    Outcome outcome;
    if (process.waitForFinished(patienceMs) && process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    outcome.output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.errors = QString::fromUtf8(process.readAllStandardError());
    outcome.milliseconds = timer.elapsed();
    return outcome;
}

std::unique_ptr<QProcess> settingsprocess::start(const QStringList &arguments)
{
    auto process = std::make_unique<QProcess>();
    startProcess(*process, arguments);
    while (!process->canReadLine() && process->waitForReadyRead(patienceMs)) { }
    if (!process->canReadLine())
        qFatal("%s said nothing: %s", qUtf8Printable(arguments.join(QLatin1Char(' '))), process->readAllStandardError().constData());
    process->readLine();
    return process;
}

QString settingsprocess::storedValue(const QString &group, const QString &key)
{
    const Outcome outcome = run({QStringLiteral("value"), group, key});
    return outcome.exitCode == 0 ? outcome.output.trimmed() : outcome.errors;
}
