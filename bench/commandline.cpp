#include "commandline.h"

#include "console.h"
#include "exitstatus.h"

#include <algorithm>

namespace
{

QString column(const QString &text, int width)
{
    return QStringLiteral("  ") + text.leftJustified(width) + QStringLiteral("  ");
}

QString optionLine(const Command::Option &option)
{
    constexpr int width = 20;
    const QString value = option.value.isEmpty() ? QString() : QLatin1Char(' ') + option.value;
    return column(QStringLiteral("--") + option.name + value, width) + option.help + QLatin1Char('\n');
}

} // namespace

CommandLine::CommandLine(std::vector<std::unique_ptr<Command>> knownCommands)
    : commands(std::move(knownCommands))
{
}

CommandLine::Parsed CommandLine::parse(const QStringList &arguments, QCommandLineParser &options) const
{
    const QString first = arguments.value(0);
    if (first.isEmpty())
        return complain(QStringLiteral("a command is missing"));
    if (first == QLatin1String("help") || first == QLatin1String("--help") || first == QLatin1String("-h"))
        return help(arguments.mid(1));
    if (first == QLatin1String("--version") || first == QLatin1String("-v")) {
        Console::out(QStringLiteral("qzaudio-bench " QZAUDIO_VERSION "\n"));
        return {};
    }
    if (first.startsWith(QLatin1Char('-')))
        return complain(QStringLiteral("unknown option %1").arg(first));
    Command *const command = find(first);
    if (!command)
        return complain(QStringLiteral("unknown command %1").arg(first));

    const auto known = command->options();
    for (const Command::Option &option : known)
        options.addOption(option.value.isEmpty() ? QCommandLineOption(option.name) : QCommandLineOption(option.name, option.help, option.value));
    options.addOption(QCommandLineOption(QStringList{QStringLiteral("h"), QStringLiteral("help")}));
    const bool understood = options.parse(QStringList(QStringLiteral("qzaudio-bench")) + arguments);
    if (options.isSet(QStringLiteral("help"))) {
        Console::out(helpOf(*command));
        return {};
    }
    if (!understood) {
        QString complaint = options.errorText();
        while (complaint.endsWith(QLatin1Char('.')))
            complaint.chop(1);
        complaint.replace(0, 1, complaint.at(0).toLower());
        return {nullptr, command->complain(complaint)};
    }
    return {command, 0};
}

CommandLine::Parsed CommandLine::help(const QStringList &arguments) const
{
    if (arguments.isEmpty()) {
        Console::out(overview());
        return {};
    }
    const Command *const command = find(arguments.first());
    if (!command)
        return complain(QStringLiteral("unknown command %1").arg(arguments.first()));
    Console::out(helpOf(*command));
    return {};
}

Command *CommandLine::find(const QString &name) const
{
    const auto found = std::find_if(commands.cbegin(), commands.cend(), [&name](const auto &command) { return command->name() == name; });
    return found == commands.cend() ? nullptr : found->get();
}

QString CommandLine::overview() const
{
    constexpr int width = 10;
    QString text = QStringLiteral("Usage: qzaudio-bench COMMAND [ARGUMENT]...\n"
                                  "\n"
                                  "Works the audio library of the head unit on a desk, on a simulated platform.\n"
                                  "\n"
                                  "Commands:\n");
    for (const auto &command : commands)
        text += column(command->name(), width) + command->summary() + QLatin1Char('\n');
    text += column(QStringLiteral("help"), width) + QStringLiteral("tells all about a command: qzaudio-bench help COMMAND\n");
    text += QStringLiteral("\n"
                           "Options:\n"
                           "  -h, --help     show this text\n"
                           "  -v, --version  show the version\n"
                           "\n");
    return text + Command::exitStatuses();
}

QString CommandLine::helpOf(const Command &command)
{
    QString text = QStringLiteral("Usage: qzaudio-bench %1 [OPTION]... %2\n\n").arg(command.name(), command.arguments());
    text += command.details() + QStringLiteral("\nOptions:\n");
    const auto options = command.options();
    for (const Command::Option &option : options)
        text += optionLine(option);
    text += optionLine({QStringLiteral("help"), QString(), QStringLiteral("show this text")});
    return text + QLatin1Char('\n') + Command::exitStatuses();
}

CommandLine::Parsed CommandLine::complain(const QString &message)
{
    Console::error(QStringLiteral("qzaudio-bench: %1; see qzaudio-bench --help\n").arg(message));
    return {nullptr, UsageError};
}
