#include "commandline.h"
#include "focuscommand.h"
#include "playcommand.h"
#include "settingscommand.h"

#include "virtualclock.h"

#include <QtCore/QCoreApplication>

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
        return parsed.exitStatus;
    if (parsed.command->wantsVirtualTime(options))
        simulator::VirtualClock::install();
    const QCoreApplication application(argc, argv);
    return parsed.command->run(options);
}
