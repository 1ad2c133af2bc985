#include "commandline.h"
#include "console.h"
#include "exitstatus.h"
#include "focuscommand.h"
#include "playcommand.h"
#include "settingscommand.h"

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
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<PlayCommand>());
    commands.push_back(std::make_unique<SettingsCommand>());
    commands.push_back(std::make_unique<FocusCommand>());
    const CommandLine commandLine(std::move(commands));

    QCommandLineParser options;
    const CommandLine::Parsed parsed = commandLine.parse(arguments, options);
    if (!parsed.command)
        return finish(parsed.exitStatus);
    if (parsed.command->wantsVirtualTime(options))
        simulator::VirtualClock::install();
    const QCoreApplication application(argc, argv);
    return finish(parsed.command->run(options));
}
