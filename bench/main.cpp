#include "commandline.h"
#include "console.h"
#include "exitstatus.h"

#include "virtualclock.h"

#include <QtCore/QCoreApplication>

namespace
{

/// The status to end with, once all of the output has arrived.
int finish(int status)
{
    QString problem;
    if (Console::close(problem))
        return status;
    Console::error(QStringLiteral("qzaudio-bench: the output cannot be written: %1\n").arg(problem));
    return UsageError;
}

} // namespace

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const CommandLine commandLine(knownCommands());

    QCommandLineParser options;
    const CommandLine::Parsed parsed = commandLine.parse(arguments, options);
    if (!parsed.command)
        return finish(parsed.exitStatus);
    if (parsed.command->wantsVirtualTime(options))
        simulator::VirtualClock::install();
    const QCoreApplication application(argc, argv);
    return finish(parsed.command->run(options));
}
