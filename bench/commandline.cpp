#include "commandline.h"

#include "console.h"
#include "exitstatus.h"
#include "helptext.h"

CommandLine::CommandLine(CommandList given)
    : m_commands(std::move(given))
{
}

CommandLine::Parsed CommandLine::parse(const QStringList &arguments, QCommandLineParser &options) const
{
    const QString first = arguments.value(0);
    if (first.isEmpty())
        return {nullptr, complain(QStringLiteral("a command is missing"))};
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        Console::out(HelpText::overview(m_commands));
        return {};
    }
    if (first == QLatin1String("--version") || first == QLatin1String("-v")) {
        Console::out(QStringLiteral("qzaudio-bench " QZAUDIO_VERSION "\n"));
        return {};
    }
    if (first.startsWith(QLatin1Char('-')))
        return {nullptr, complain(QStringLiteral("unknown option %1").arg(first))};
    Command *const command = findCommand(m_commands, first);
    if (!command)
        return {nullptr, complain(HelpText::unknown(first, commandNames(m_commands)))};

    const auto known = command->options();
    for (const Command::Option &option : known) {
        QStringList names(option.name);
        if (!option.letter.isNull())
            names.append(QString(option.letter));
        options.addOption(option.value.isEmpty() ? QCommandLineOption(names) : QCommandLineOption(names, option.help, option.value));
    }
    options.addOption(QCommandLineOption(QStringList{QStringLiteral("h"), QStringLiteral("help")}));
    const bool understood = options.parse(QStringList(QStringLiteral("qzaudio-bench")) + arguments);
    if (options.isSet(QStringLiteral("help"))) {
        Console::out(HelpText::ofCommand(*command));
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

int CommandLine::complain(const QString &message)
{
    Console::error(QStringLiteral("qzaudio-bench: %1; see qzaudio-bench --help\n").arg(message));
    return UsageError;
}
