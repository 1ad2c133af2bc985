#include "program.h"

#include <QtCore/QElapsedTimer>

#include <unistd.h>

namespace
{

constexpr int patienceMs = 100000;

QStringList emulator()
{
    return QString::fromLatin1(QZAUDIO_EMULATOR).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

bool program::isEmulated()
{
    return !emulator().isEmpty();
}

QStringList program::commandLine(const QString &file, const QStringList &arguments)
{
    return emulator() << file << arguments;
}

QString program::forShell(const QStringList &commandLine)
{
    QStringList quoted = commandLine;
    quoted.replaceInStrings(QStringLiteral("'"), QStringLiteral("'\\''"));
    return QLatin1Char('\'') + quoted.join(QStringLiteral("' '")) + QLatin1Char('\'');
}

QStringList program::asNobody()
{
    return {QStringLiteral("setpriv"), QStringLiteral("--reuid=65534"), QStringLiteral("--regid=65534"), QStringLiteral("--clear-groups")};
}

QString program::whyNobodyCannotRun(const QString &file)
{
    if (::geteuid() != 0)
        return QStringLiteral("Only root can be another user");
    const Run readable = run(asNobody() + QStringList{QStringLiteral("test"), QStringLiteral("-r"), file});
    return readable.exitCode == 0 ? QString() : QStringLiteral("Other users may not run what is built here");
}

void program::start(QProcess &process, const QStringList &commandLine)
{
    process.start(commandLine.constFirst(), commandLine.mid(1));
}

program::Run program::run(QProcess &process, const QStringList &commandLine)
{
    QElapsedTimer timer;
    timer.start();
    start(process, commandLine);
    Run run;
    if (process.waitForFinished(patienceMs))
        run.exitStatus = process.exitStatus();
    if (run.exitStatus == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    run.output = QString::fromUtf8(process.readAllStandardOutput());
    run.errors = QString::fromUtf8(process.readAllStandardError());
    run.milliseconds = timer.elapsed();
    return run;
}

program::Run program::run(const QStringList &commandLine)
{
    QProcess process;
    return run(process, commandLine);
}

QStringList program::lines(const QString &output)
{
    return output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
