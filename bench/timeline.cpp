#include "timeline.h"

#include "calltext.h"
#include "console.h"

#include "platform.h"

using Console::Style;

namespace
{

// Columns at which the lines of a timeline begin.
constexpr int requestColumn = 12;
constexpr int causedColumn = 16;
constexpr int hangingColumn = 20;

constexpr int millisecondsPerSecond = 1000;
constexpr int secondsPerMinute = 60;

/// "  0:01.500  "
QString timeText(qint64 time)
{
    const qint64 seconds = time / millisecondsPerSecond;
    const QString text = QStringLiteral("%1:%2.%3")
                             .arg(seconds / secondsPerMinute)
                             .arg(seconds % secondsPerMinute, 2, 10, QLatin1Char('0'))
                             .arg(time % millisecondsPerSecond, 3, 10, QLatin1Char('0'));
    return text.rightJustified(requestColumn - 2) + QStringLiteral("  ");
}

QString causedLine(Style style, const QString &text)
{
    return Console::styled(style, Console::wrapped(text, causedColumn, hangingColumn)) + QLatin1Char('\n');
}

} // namespace

Timeline::Timeline(QObject *parent)
    : QObject(parent)
    , start(simulator::Platform::instance()->now())
{
    connect(simulator::Platform::instance()->journal(), &simulator::Journal::appended, this, &Timeline::addCall);
}

qint64 Timeline::now() const
{
    return simulator::Platform::instance()->now() - start;
}

void Timeline::heading(const QString &text)
{
    const QString blank(requests.isEmpty() ? QStringLiteral("\n") : QString());
    addEntry(Style::Heading, text, blank + timeText(now()));
}

void Timeline::beginRequest(const QString &request)
{
    requests.append({now(), request, {}});
}

void Timeline::endRequest(const QString &result)
{
    const Request request = requests.takeLast();
    const QString text = result.isEmpty() ? request.text : request.text + QStringLiteral(" = ") + result;
    const int column = requests.isEmpty() ? requestColumn : causedColumn;
    const QString lines = Console::styled(Style::Request, Console::wrapped(text, column, hangingColumn).mid(column)) + QLatin1Char('\n');
    if (requests.isEmpty())
        print(timeText(request.time) + lines + request.caused);
    else
        requests.last().caused += QString(column, QLatin1Char(' ')) + lines + request.caused;
}

void Timeline::note(const QString &text)
{
    addEntry(Style::Plain, text, QString(requestColumn, QLatin1Char(' ')));
}

void Timeline::check(bool passed, const QString &text, const QString &cause)
{
    const QString margin(requestColumn, QLatin1Char(' '));
    if (passed)
        addEntry(Style::Good, QStringLiteral("ok: ") + text, margin);
    else
        addEntry(Style::Bad, QStringLiteral("FAILED: ") + text + QLatin1String(": ") + cause, margin);
}

void Timeline::log(const QString &line)
{
    addCaused(causedLine(Style::Faint, QStringLiteral("log: ") + line));
}

void Timeline::addCall(const simulator::JournalEntry &entry)
{
    if (entry.isDestroy() || (entry.isCreate() && entry.number > 0))
        return;
    addCaused(causedLine(Style::Plain, callText(entry)));
}

void Timeline::addEntry(Style style, const QString &text, const QString &margin)
{
    if (requests.isEmpty())
        print(margin + Console::styled(style, Console::wrapped(text, requestColumn, causedColumn).mid(requestColumn)) + QLatin1Char('\n'));
    else
        requests.last().caused += causedLine(style, text);
}

void Timeline::addCaused(const QString &lines)
{
    if (!requests.isEmpty()) {
        requests.last().caused += lines;
        return;
    }
    const qint64 time = now();
    if (timerHeading == time) {
        Console::out(lines);
        return;
    }
    print(timeText(time) + QStringLiteral("timer\n") + lines);
    timerHeading = time;
}

void Timeline::showUnfinished()
{
    while (!requests.isEmpty())
        endRequest(QStringLiteral("(did not return)"));
}

void Timeline::print(const QString &lines)
{
    timerHeading = -1;
    Console::out(lines);
}
