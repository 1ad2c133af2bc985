#include "helpcommand.h"

#include "commandline.h"
#include "completion.h"
#include "console.h"
#include "exitstatus.h"
#include "helptext.h"

namespace
{

QString lines(const QStringList &texts)
{
    return texts.isEmpty() ? QString() : texts.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QString exitStatusesOf(const Command &command)
{
    QStringList texts;
    const auto endings = HelpText::endings({&command});
    for (const Command::Ending &ending : endings)
        texts.append(QString::number(ending.status) + QLatin1Char(' ') + ending.when);
    return lines(texts);
}

QString completed(const QStringList &words)
{
    const Command::Completions completions = Completion::of(words, knownCommands());
    return lines(QStringList(completions.paths) + completions.words);
}

} // namespace

QString HelpCommand::name() const
{
    return QStringLiteral("help");
}

QString HelpCommand::summary() const
{
    return QStringLiteral("tells all about a command: qzaudio-bench help COMMAND");
}

QString HelpCommand::arguments() const
{
    return QStringLiteral("[COMMAND]");
}

QVector<Command::Option> HelpCommand::options() const
{
    return {
        {QStringLiteral("commands"), {}, QStringLiteral("for scripts: the commands, one a line")},
        {QStringLiteral("exit-statuses"), {}, QStringLiteral("for scripts: what COMMAND ends with and when, one a line")},
        {QStringLiteral("complete"), {}, QStringLiteral("for shells: what the last of the words behind -- can become")},
    };
}

QString HelpCommand::details() const
{
    return QStringLiteral(
        "Tells all about a command; without one, lists the commands. Knows what scenarios can call, too: AudioPolicy, AudioPolicy.setVolume.\n"
        "\n"
        "A shell that completes a command line gives its words but the program's up to the one at the cursor, "
        "which may be empty. The first line of the answer is FILE or DIR where also the path of a file or a folder fits, "
        "else empty; each further one is a word that fits.\n");
}

Command::Completions HelpCommand::completions(const QStringList &before) const
{
    return {before.isEmpty() ? HelpText::names(knownCommands()) : QStringList(), {}};
}

int HelpCommand::run(const QCommandLineParser &parsed)
{
    const QStringList words = parsed.positionalArguments().mid(1);
    if (parsed.optionNames().size() > 1)
        return complain(QStringLiteral("the options of help do not go together"));
    if (parsed.isSet(QStringLiteral("complete"))) {
        Console::out(completed(words));
        return Success;
    }
    if (words.size() > 1)
        return complain(QStringLiteral("help takes one command"));
    const CommandList commands = knownCommands();
    if (parsed.isSet(QStringLiteral("commands"))) {
        if (!words.isEmpty())
            return complain(QStringLiteral("--commands takes no command"));
        Console::out(lines(commandNames(commands)));
        return Success;
    }
    if (parsed.isSet(QStringLiteral("exit-statuses"))) {
        const Command *const command = findCommand(commands, words.value(0));
        if (!command)
            return words.isEmpty() ? complain(QStringLiteral("--exit-statuses needs a command"))
                                   : CommandLine::complain(HelpText::unknown(words.first(), commandNames(commands)));
        Console::out(exitStatusesOf(*command));
        return Success;
    }
    if (words.isEmpty()) {
        Console::out(HelpText::overview(commands));
        return Success;
    }
    const std::optional<QString> text = HelpText::on(words.first(), commands);
    if (!text)
        return CommandLine::complain(HelpText::unknown(words.first(), HelpText::names(commands)));
    Console::out(*text);
    return Success;
}
