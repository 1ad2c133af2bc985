#include "playcommand.h"

#include "console.h"
#include "exitstatus.h"
#include "junitreport.h"
#include "timelinelog.h"
#include "scenarioplayer.h"
#include "statetable.h"
#include "timeline.h"

#include <QtCore/QFile>

#include <optional>

using Console::Style;

namespace
{

int fail(const QString &file, const QString &problem)
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(file, problem));
    return UsageError;
}

std::optional<Console::Colors> colorsOf(const QString &text)
{
    if (text.isEmpty() || text == QLatin1String("auto"))
        return Console::Colors::Auto;
    if (text == QLatin1String("always"))
        return Console::Colors::Always;
    if (text == QLatin1String("never"))
        return Console::Colors::Never;
    return {};
}

void printSummary(const ScenarioResult &result)
{
    const int total = result.checks.size();
    const QString checks = total == 1 ? QStringLiteral("1 expectation") : QStringLiteral("%1 expectations").arg(total);
    constexpr double millisecondsPerSecond = 1000;
    const QString time = QString::number(double(result.duration) / millisecondsPerSecond, 'f', 3) + QStringLiteral(" s");
    if (result.succeeded()) {
        Console::out(Console::styled(Style::Good, QStringLiteral("Passed")) + QStringLiteral(": %1: %2 held in %3.\n").arg(result.file, checks, time));
        return;
    }
    for (const ScenarioResult::Check &check : result.checks) {
        if (!check.passed)
            Console::out(QStringLiteral("%1:%2: %3\n").arg(result.file, QString::number(check.line), check.cause));
    }
    if (!result.error.isEmpty())
        Console::out(QStringLiteral("%1:%2: %3\n").arg(result.file, QString::number(result.errorLine), result.error));
    const QString stopped = result.error.isEmpty() ? QString() : QStringLiteral("; stopped by an error");
    Console::out(Console::styled(Style::Bad, QStringLiteral("Failed"))
                 + QStringLiteral(": %1: %2 of %3 failed in %4%5.\n").arg(result.file, QString::number(result.failures()), checks, time, stopped));
}

} // namespace

QString PlayCommand::name() const
{
    return QStringLiteral("play");
}

QString PlayCommand::summary() const
{
    return QStringLiteral("plays a scenario and shows what it causes on the platform");
}

QString PlayCommand::arguments() const
{
    return QStringLiteral("FILE.js");
}

QVector<Command::Option> PlayCommand::options() const
{
    return {
        {QStringLiteral("realtime"), {}, QStringLiteral("wait for real; otherwise time is virtual and takes none")},
        {QStringLiteral("log"), {}, QStringLiteral("show the library's log lines too")},
        {QStringLiteral("junit"), QStringLiteral("FILE"), QStringLiteral("write the result for a CI server")},
        {QStringLiteral("color"), QStringLiteral("WHEN"), QStringLiteral("auto (on a terminal), always or never")},
    };
}

QString PlayCommand::details() const
{
    return QStringLiteral("Plays a scenario in JavaScript and prints a timeline: each request and the platform calls that it\n"
                          "caused, then the platform's state. A scenario may use:\n"
                          "\n"
                          "  AudioControl, AudioPolicy, AudioSettings   the layers of the library\n"
                          "  new AudioFocus({clientId, durationHint})   a client of audio focus\n"
                          "  Platform                                   the simulated platform and the car round it\n"
                          "  powerOn(), powerOff(), eraseSettings()     the unit; AudioPolicy switches it on when used\n"
                          "  say(text), wait(ms), now()                 the story and its time\n"
                          "  expect(actual).toBe(x), .toEqual(x), .toBeCloseTo(x, within), .toContain(x), .not\n"
                          "\n"
                          "A failed expectation does not stop the scenario; an error does.\n");
}

bool PlayCommand::wantsVirtualTime(const QCommandLineParser &parsed) const
{
    return !parsed.isSet(QStringLiteral("realtime"));
}

int PlayCommand::run(const QCommandLineParser &parsed)
{
    const QStringList files = parsed.positionalArguments().mid(1);
    if (files.size() != 1)
        return complain(files.isEmpty() ? QStringLiteral("play needs a scenario") : QStringLiteral("play takes one scenario"));
    const std::optional<Console::Colors> colors = colorsOf(parsed.value(QStringLiteral("color")));
    if (!colors)
        return complain(QStringLiteral("--color is auto, always or never, not %1").arg(parsed.value(QStringLiteral("color"))));
    QFile file(files.first());
    if (!file.open(QIODevice::ReadOnly))
        return fail(file.fileName(), file.errorString());
    const QString program = QString::fromUtf8(file.readAll());
    if (file.error() != QFileDevice::NoError)
        return fail(file.fileName(), file.errorString());

    Console::setColors(*colors);
    Timeline timeline;
    const TimelineLog recorder(timeline, parsed.isSet(QStringLiteral("log")));
    const ScenarioResult result = ScenarioPlayer(timeline).play(file.fileName(), program);

    Console::out(QLatin1Char('\n') + StateTable::toText() + QLatin1Char('\n'));
    printSummary(result);
    const QString report = parsed.value(QStringLiteral("junit"));
    QString error;
    if (!report.isEmpty() && !JUnitReport(result).write(report, error))
        return fail(report, error);
    return result.succeeded() ? Success : Failed;
}
