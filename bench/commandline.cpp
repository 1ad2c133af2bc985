#include "commandline.h"

#include "console.h"
#include "exitstatus.h"

#include <QtCore/QRegularExpression>

#include <algorithm>

namespace
{

constexpr int margin = 2;

/// A text in a column of its own behind what begins the line, or below that where the column would be too narrow to read.
QString inColumn(const QString &begin, const QString &text)
{
    constexpr int narrowest = 24;
    constexpr int below = 6;
    const int column = begin.size();
    if (Console::width() - column >= narrowest)
        return begin + Console::wrapped(text, column, column).mid(column) + QLatin1Char('\n');
    QString alone = begin;
    while (alone.endsWith(QLatin1Char(' ')))
        alone.chop(1);
    return alone + QLatin1Char('\n') + Console::wrapped(text, below, below) + QLatin1Char('\n');
}

/// What something is called and what it is, in two columns.
QString row(const QString &name, int width, const QString &meaning)
{
    return inColumn(QString(margin, QLatin1Char(' ')) + name.leftJustified(width) + QString(margin, QLatin1Char(' ')), meaning);
}

QString optionLine(const Command::Option &option)
{
    constexpr int width = 20;
    const QString letter = option.letter.isNull() ? QString() : QLatin1Char('-') + option.letter + QStringLiteral(", ");
    const QString value = option.value.isEmpty() ? QString() : QLatin1Char(' ') + option.value;
    return row(letter + QStringLiteral("--") + option.name + value, width, option.help);
}

/// A line of a list, "  name   what it is", broken below what it is.
QString listLine(const QString &line)
{
    static const QRegularExpression twoColumns(QStringLiteral("^( +\\S.*?) {2,}(\\S.*)$"));
    const QRegularExpressionMatch match = twoColumns.match(line);
    if (match.hasMatch())
        return inColumn(line.left(match.capturedStart(2)), match.captured(2));
    constexpr int hanging = 2 * margin;
    return Console::wrapped(line.trimmed(), margin, hanging) + QLatin1Char('\n');
}

/// Paragraphs broken to the width, lists as they are.
QString fitted(const QString &text)
{
    QString result;
    QStringList paragraph;
    const auto endParagraph = [&] {
        if (!paragraph.isEmpty())
            result += Console::wrapped(paragraph.join(QLatin1Char(' ')), 0, 0) + QLatin1Char('\n');
        paragraph.clear();
    };
    QString whole = text;
    if (whole.endsWith(QLatin1Char('\n')))
        whole.chop(1);
    const QStringList lines = whole.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (!line.isEmpty() && !line.startsWith(QLatin1Char(' '))) {
            paragraph.append(line);
            continue;
        }
        endParagraph();
        result += line.isEmpty() ? QStringLiteral("\n") : listLine(line);
    }
    endParagraph();
    return result;
}

} // namespace

CommandLine::CommandLine(std::vector<std::unique_ptr<Command>> knownCommands)
    : m_commands(std::move(knownCommands))
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
    for (const Command::Option &option : known) {
        QStringList names(option.name);
        if (!option.letter.isNull())
            names.append(QString(option.letter));
        options.addOption(option.value.isEmpty() ? QCommandLineOption(names) : QCommandLineOption(names, option.help, option.value));
    }
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
    const auto found = std::find_if(m_commands.cbegin(), m_commands.cend(), [&name](const auto &command) { return command->name() == name; });
    return found == m_commands.cend() ? nullptr : found->get();
}

QString CommandLine::overview() const
{
    constexpr int width = 10;
    QString text = fitted(QStringLiteral("Usage: qzaudio-bench COMMAND [ARGUMENT]...\n"
                                         "\n"
                                         "Works the audio library of the head unit on a desk, on a simulated platform.\n"
                                         "\n"
                                         "Commands:\n"));
    for (const auto &command : m_commands)
        text += row(command->name(), width, command->summary());
    text += row(QStringLiteral("help"), width, QStringLiteral("tells all about a command: qzaudio-bench help COMMAND"));
    text += QStringLiteral("\n"
                           "Options:\n"
                           "  -h, --help     show this text\n"
                           "  -v, --version  show the version\n"
                           "\n");
    return text + fitted(Command::exitStatuses());
}

QString CommandLine::helpOf(const Command &command)
{
    QString text = QStringLiteral("Usage: qzaudio-bench %1 [OPTION]... %2\n\n").arg(command.name(), command.arguments());
    text += fitted(command.details()) + QStringLiteral("\nOptions:\n");
    const auto options = command.options();
    for (const Command::Option &option : options) {
        if (!option.help.isEmpty())
            text += optionLine(option);
    }
    text += optionLine({QStringLiteral("help"), QString(), QStringLiteral("show this text")});
    return text + QLatin1Char('\n') + fitted(Command::exitStatuses());
}

CommandLine::Parsed CommandLine::complain(const QString &message)
{
    Console::error(QStringLiteral("qzaudio-bench: %1; see qzaudio-bench --help\n").arg(message));
    return {nullptr, UsageError};
}
