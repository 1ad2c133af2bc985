#include "helptext.h"

#include "console.h"
#include "exitstatus.h"
#include "helptopics.h"
#include "nearestname.h"

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

/// "a, b, or c"
QString joined(const QStringList &clauses)
{
    QString text = clauses.first();
    for (int i = 1; i < clauses.size(); ++i)
        text += (i + 1 < clauses.size() ? QStringLiteral(", ") : QStringLiteral(", or ")) + clauses.at(i);
    return text;
}

QString exitStatuses(const QVector<const Command *> &commands)
{
    QStringList statuses;
    const QVector<Command::Ending> endings = HelpText::endings(commands);
    for (auto ending = endings.cbegin(); ending != endings.cend();) {
        const int status = ending->status;
        QStringList clauses;
        for (; ending != endings.cend() && ending->status == status; ++ending)
            clauses.append(ending->when);
        clauses.removeDuplicates(); // commands may end for the same reason
        statuses.append(QString::number(status) + QLatin1Char(' ') + joined(clauses));
    }
    return fitted(QStringLiteral("Exit status: %1.\n").arg(statuses.join(QLatin1String("; "))));
}

QVector<const Command *> all(const CommandList &commands)
{
    QVector<const Command *> pointers;
    for (const auto &command : commands)
        pointers.append(command.get());
    return pointers;
}

} // namespace

QString HelpText::overview(const CommandList &commands)
{
    constexpr int width = 10;
    QString text = fitted(QStringLiteral("Usage: qzaudio-bench COMMAND [ARGUMENT]...\n"
                                         "\n"
                                         "Works the audio library of the head unit on a desk, on a simulated platform.\n"
                                         "\n"
                                         "Commands:\n"));
    for (const auto &command : commands)
        text += row(command->name(), width, command->summary());
    text += QStringLiteral("\n"
                           "Options:\n"
                           "  -h, --help     show this text\n"
                           "  -v, --version  show the version\n"
                           "\n");
    return text + exitStatuses(all(commands));
}

QString HelpText::ofCommand(const Command &command)
{
    QString text = QStringLiteral("Usage: qzaudio-bench %1 [OPTION]... %2\n\n").arg(command.name(), command.arguments());
    text += fitted(command.details()) + QStringLiteral("\nOptions:\n");
    const auto options = command.options();
    for (const Command::Option &option : options) {
        if (!option.help.isEmpty())
            text += optionLine(option);
    }
    text += optionLine({QStringLiteral("help"), QString(), QStringLiteral("show this text")});
    return text + QLatin1Char('\n') + exitStatuses({&command});
}

std::optional<QString> HelpText::on(const QString &name, const CommandList &commands)
{
    if (const Command *const command = findCommand(commands, name))
        return ofCommand(*command);
    for (const auto &command : commands) {
        const HelpTopics *const topics = command->helpTopics();
        if (topics && topics->names().contains(name))
            return fitted(topics->text(name));
    }
    return {};
}

QStringList HelpText::names(const CommandList &commands)
{
    QStringList names = commandNames(commands);
    for (const auto &command : commands) {
        if (const HelpTopics *const topics = command->helpTopics())
            names += topics->names();
    }
    names.removeDuplicates();
    return names;
}

QVector<Command::Ending> HelpText::endings(const QVector<const Command *> &commands)
{
    QVector<Command::Ending> endings{{Success, QStringLiteral("success")}, {UsageError, QStringLiteral("a mistake on the command line")}};
    for (const Command *const command : commands)
        endings += command->endings();
    endings += {UsageError, QStringLiteral("output that cannot be written")};
    endings += {Interrupted, QStringLiteral("interrupted")};
    std::stable_sort(endings.begin(), endings.end(), [](const Command::Ending &a, const Command::Ending &b) { return a.status < b.status; });
    return endings;
}

QString HelpText::unknown(const QString &name, const QStringList &known)
{
    const QString nearest = nearestName(name, known);
    return QStringLiteral("unknown command %1").arg(name) + (nearest.isEmpty() ? QString() : QLatin1String("; the nearest is ") + nearest);
}
