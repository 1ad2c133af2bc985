#include "playcommand.h"

#include "console.h"
#include "driveview.h"
#include "exitstatus.h"
#include "interruption.h"
#include "jsonview.h"
#include "junitreport.h"
#include "logfile.h"
#include "playsummary.h"
#include "render/soundrecorder.h"
#include "requestview.h"
#include "resultchannel.h"
#include "scenariofiles.h"
#include "scenariolimits.h"
#include "scenarioplayer.h"
#include "scenariorun.h"
#include "settingsfile.h"
#include "statetable.h"
#include "timeline.h"
#include "timelinelog.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonObject>
#include <QtCore/QLoggingCategory>

#include <algorithm>
#include <limits>
#include <memory>
#include <unistd.h>

namespace
{

constexpr int usualSeconds = 60;
constexpr int usualMegabytes = 1024;

int fail(const QString &file, const QString &problem)
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(file, problem));
    return UsageError;
}

struct ColorWord
{
    const char *name;
    Console::Colors colors;
};

constexpr ColorWord colorWords[] = {
    {"auto", Console::Colors::Auto},
    {"always", Console::Colors::Always},
    {"never", Console::Colors::Never},
};

std::optional<Console::Colors> colorsOf(const QString &text)
{
    if (text.isEmpty())
        return Console::Colors::Auto;
    for (const ColorWord &word : colorWords) {
        if (text == QLatin1String(word.name))
            return word.colors;
    }
    return {};
}

QStringList namesOfColors()
{
    QStringList names;
    for (const ColorWord &word : colorWords)
        names.append(QLatin1String(word.name));
    return names;
}

/// The value of an option that is a whole number of @p least or more; empty where it is none.
std::optional<int> numberOf(const QCommandLineParser &parsed, const QString &option, int least, int usual)
{
    if (!parsed.isSet(option))
        return usual;
    bool isNumber = false;
    const int number = parsed.value(option).toInt(&isNumber);
    // Also in ms it has to fit.
    constexpr int most = 1000000;
    return isNumber && number >= least && number <= most ? std::optional<int>(number) : std::nullopt;
}

/// A scenario's text, or why there is none.
std::optional<QByteArray> read(const QString &file, QString &problem)
{
    QFile source(file);
    const bool isOpen = file == ScenarioFiles::standardInput() ? source.open(STDIN_FILENO, QIODevice::ReadOnly) : source.open(QIODevice::ReadOnly);
    if (isOpen) {
        const QByteArray text = source.readAll();
        if (source.error() == QFileDevice::NoError)
            return text;
    }
    problem = source.errorString();
    return {};
}

QJsonObject verdictOf(const ScenarioRun::Outcome &outcome, bool isStrict)
{
    QJsonObject verdict{
        {QStringLiteral("scenario"), outcome.result.file},
        {QStringLiteral("event"), QStringLiteral("end")},
        {QStringLiteral("time"), outcome.result.duration},
        {QStringLiteral("passed"), PlaySummary::isPassed(outcome, isStrict)},
        {QStringLiteral("expectations"), outcome.result.checks.size()},
        {QStringLiteral("failures"), outcome.result.failures()},
        {QStringLiteral("realTime"), outcome.milliseconds},
    };
    const QString error = outcome.problem.isEmpty() ? outcome.result.error : outcome.problem;
    if (!error.isEmpty())
        verdict.insert(QStringLiteral("error"), error);
    if (outcome.result.errorLine > 0)
        verdict.insert(QStringLiteral("line"), outcome.result.errorLine);
    return verdict;
}

} // namespace

QString PlayCommand::name() const
{
    return QStringLiteral("play");
}

QString PlayCommand::summary() const
{
    return QStringLiteral("plays scenarios and shows what the driver hears, or what happens on the platform");
}

QString PlayCommand::arguments() const
{
    return QStringLiteral("SCENARIO...");
}

QVector<Command::Option> PlayCommand::options() const
{
    return {
        {QStringLiteral("verbose"),
         {},
         QStringLiteral("show each request, expectation and platform call; twice: the start-up's too, and the platform's state at the end"),
         QLatin1Char('v')},
        {QStringLiteral("brief"), {}, QStringLiteral("show failures and the verdict only")},
        {QStringLiteral("json"), {}, QStringLiteral("for programs: all of it, one JSON object a line")},
        {QStringLiteral("log"), {}, QStringLiteral("show the library's log lines too")},
        {QStringLiteral("log-to"), QStringLiteral("FILE"), QStringLiteral("keep the library's log lines in this file, as explain reads it")},
        {QStringLiteral("list"), {}, QStringLiteral("list the scenarios that come with the bench, or those of the folders named")},
        {QStringLiteral("repeat"), QStringLiteral("COUNT"), QStringLiteral("play each so many times, up to the first failure")},
        {QStringLiteral("strict"), {}, QStringLiteral("fail a scenario that expects nothing")},
        {QStringLiteral("timeout"), QStringLiteral("SECONDS"), QStringLiteral("real time that each may take: 60, with --realtime unlimited; 0 for no limit")},
        {QStringLiteral("memory"), QStringLiteral("MB"), QStringLiteral("memory that each may take: 1024; 0 for no limit")},
        {QStringLiteral("realtime"), {}, QStringLiteral("wait for real; otherwise time is virtual and takes none")},
        {QStringLiteral("flash"), QStringLiteral("DIR"), QStringLiteral("keep the settings in this folder")},
        {QStringLiteral("junit"), QStringLiteral("FILE"), QStringLiteral("write the results for a CI server; - is the standard output")},
        {QStringLiteral("color"), QStringLiteral("WHEN"), QStringLiteral("auto (on a terminal), always or never"), {}, namesOfColors()},
        {QStringLiteral("in-process"), {}, QStringLiteral("play one in this process, on the flash as it is: for debuggers and emulators")},
        {QStringLiteral("results-to"), QStringLiteral("DESCRIPTOR"), {}},
        {QStringLiteral("sound-to"), QStringLiteral("RECORDING"), {}},
    };
}

QString PlayCommand::details() const
{
    return QStringLiteral("Plays scenarios in JavaScript: files, all that are in a folder, the standard input (-), or the names of those that come with "
                          "the bench. Shows the drive as the driver hears it: each situation, what is heard at the driver's ear (left front, without the "
                          "equalizer; 0 dB is the loudest that the unit can be) and why. Several are played as with --brief, and end with one verdict.\n"
                          "\n"
                          "Each plays on a unit and a flash of its own, which are gone afterwards. --flash keeps the settings of one run for the next; "
                          "%1 is the library's own folder.\n"
                          "\n"
                          "A scenario may use:\n\n"
                          "  AudioControl, AudioPolicy, AudioSettings   the layers of the library\n"
                          "  new AudioFocus({clientId, durationHint})   a client of audio focus\n"
                          "  Platform                                   the simulated platform and the car round it\n"
                          "  powerOn(), powerOff(), eraseSettings()     the unit; AudioPolicy switches it on when used\n  writeSettings(text),\n      "
                          "cutPowerWhileSaving(byte, line)        damage to its flash, while it is off\n"
                          "  say(text), wait(ms), now()                 the story and its time\n"
                          "  expect(actual).toBe(x), .toEqual(x), .toBeCloseTo(x, within), .toContain(x),\n      .toBeGreaterThan(x), .toBeLessThan(x), .not\n"
                          "  Sound.above(source, other)                 how far one was above the other, in LU\n"
                          "\n"
                          "A failed expectation does not stop the scenario; an error does.\n")
        .arg(QFileInfo(SettingsFile::path()).path());
}

QVector<Command::Ending> PlayCommand::endings() const
{
    return {
        {Failed, QStringLiteral("an expectation or a script failed")},
        {UsageError, QStringLiteral("a scenario that cannot be read")},
    };
}

Command::Completions PlayCommand::completions(const QStringList & /*before*/) const
{
    QStringList names;
    const QStringList files = ScenarioFiles::inFolder(ScenarioFiles::installedFolder());
    for (const QString &file : files)
        names.append(QFileInfo(file).completeBaseName());
    return {names, QStringLiteral("FILE")};
}

const HelpTopics *PlayCommand::helpTopics() const
{
    return &m_scriptHelp;
}

bool PlayCommand::wantsVirtualTime(const QCommandLineParser &parsed) const
{
    return parsed.isSet(QStringLiteral("in-process")) && !parsed.isSet(QStringLiteral("realtime"));
}

std::optional<PlayCommand::Request> PlayCommand::understand(const QCommandLineParser &parsed) const
{
    Request request;
    const auto wrong = [this](const QString &message) -> std::optional<Request> {
        complain(message);
        return {};
    };
    const auto isSet = [&parsed](const char *option) { return parsed.isSet(QLatin1String(option)); };
    const auto verbosity = parsed.optionNames().count(QStringLiteral("v")) + parsed.optionNames().count(QStringLiteral("verbose"));
    if (int(isSet("brief")) + int(isSet("json")) + int(verbosity > 0) > 1)
        return wrong(QStringLiteral("--brief, --json and --verbose do not go together"));
    request.view = isSet("brief") ? View::Brief
        : isSet("json")           ? View::Json
        : verbosity == 0          ? View::Drive
        : verbosity == 1          ? View::Requests
                                  : View::Everything;
    request.color = parsed.value(QStringLiteral("color"));
    if (!colorsOf(request.color))
        return wrong(QStringLiteral("--color is auto, always or never, not %1").arg(request.color));
    request.isRealtime = isSet("realtime");
    const auto seconds = numberOf(parsed, QStringLiteral("timeout"), 0, request.isRealtime ? 0 : usualSeconds);
    const auto megabytes = numberOf(parsed, QStringLiteral("memory"), 0, usualMegabytes);
    const auto repetitions = numberOf(parsed, QStringLiteral("repeat"), 1, 1);
    if (!seconds)
        return wrong(QStringLiteral("--timeout is a whole number of seconds, not %1").arg(parsed.value(QStringLiteral("timeout"))));
    if (!megabytes)
        return wrong(QStringLiteral("--memory is a whole number of megabytes, not %1").arg(parsed.value(QStringLiteral("memory"))));
    if (!repetitions)
        return wrong(QStringLiteral("--repeat is a whole number from 1, not %1").arg(parsed.value(QStringLiteral("repeat"))));
    request.seconds = *seconds;
    request.megabytes = *megabytes;
    request.repetitions = *repetitions;
    request.isStrict = isSet("strict");
    request.showsLog = isSet("log");
    request.logFile = parsed.value(QStringLiteral("log-to"));
    request.soundFile = parsed.value(QStringLiteral("sound-to"));
    request.flash = parsed.value(QStringLiteral("flash"));
    request.junit = parsed.value(QStringLiteral("junit"));
    for (const char *const option : {"log-to", "flash", "junit"}) {
        if (isSet(option) && parsed.value(QLatin1String(option)).isEmpty())
            return wrong(QStringLiteral("--%1 needs a name").arg(QLatin1String(option)));
    }
    if (isSet("in-process") && (isSet("flash") || request.repetitions > 1))
        return wrong(QStringLiteral("--in-process goes neither with --flash nor with --repeat"));
    return request;
}

int PlayCommand::run(const QCommandLineParser &parsed)
{
    const QStringList words = parsed.positionalArguments().mid(1);
    const std::optional<Request> request = understand(parsed);
    if (!request)
        return UsageError;
    if (parsed.isSet(QStringLiteral("list")))
        return list(words);
    if (words.isEmpty())
        return complain(QStringLiteral("play needs a scenario; --list has those that come with the bench"));
    if (request->junit == QLatin1String("-"))
        Console::divertToError();
    Console::setColors(*colorsOf(request->color));
    if (!parsed.isSet(QStringLiteral("in-process")))
        return playAll(*request, words);

    QString problem;
    const QStringList files = ScenarioFiles::find(words.first(), problem);
    if (words.size() > 1 || files.size() > 1)
        return complain(QStringLiteral("--in-process takes one scenario"));
    if (files.isEmpty())
        return fail(words.first(), problem);
    const QString resultsTo = parsed.value(QStringLiteral("results-to"));
    return playInProcess(*request, files.first(), resultsTo.isEmpty() ? -1 : resultsTo.toInt());
}

int PlayCommand::list(const QStringList &words)
{
    const QStringList folders = words.isEmpty() ? QStringList(ScenarioFiles::installedFolder()) : words;
    for (const QString &folder : folders) {
        if (!QFileInfo(folder).isDir())
            return fail(folder, QStringLiteral("there is no such folder"));
        const QStringList files = ScenarioFiles::inFolder(folder);
        int widest = 0;
        for (const QString &file : files)
            widest = std::max(widest, QFileInfo(file).completeBaseName().size());
        for (const QString &file : files) {
            constexpr int gap = 2;
            const int column = widest + gap;
            const QString title = Console::wrapped(Console::printable(ScenarioFiles::title(file)), column, column).mid(column);
            Console::out(Console::printable(QFileInfo(file).completeBaseName()).leftJustified(column) + title + QLatin1Char('\n'));
        }
    }
    return Success;
}

int PlayCommand::playInProcess(const Request &request, const QString &file, int resultsTo)
{
    QString problem;
    const std::optional<QByteArray> program = read(file, problem);
    if (!program)
        return fail(file, problem);
    const std::unique_ptr<ResultChannel> channel = resultsTo < 0 ? nullptr : std::make_unique<ResultChannel>(resultsTo);
    if (channel) {
        channel->writeStart();
        // Said already, once for all runs.
        QLoggingCategory::setFilterRules(QStringLiteral("qzaudio.simulator.info=false"));
    } else if (!QFileInfo(QFileInfo(SettingsFile::path()).path()).isDir()) {
        return fail(QFileInfo(SettingsFile::path()).path(), QStringLiteral("there is no such folder; qzaudio-with-flash COMMAND gives one to a program"));
    }

    std::unique_ptr<TimelineView> view;
    if (request.view == View::Json)
        view = std::make_unique<JsonView>(file);
    else if (request.view == View::Drive)
        view = std::make_unique<DriveView>();
    else if (request.view != View::Brief)
        view = std::make_unique<RequestView>(request.view == View::Everything);
    Timeline timeline(view.get());
    std::optional<SoundRecorder> sound;
    problem = request.soundFile.isEmpty() ? QString() : sound.emplace(timeline).writeTo(request.soundFile);
    if (!problem.isEmpty())
        return fail(request.soundFile, problem);
    if (channel)
        QObject::connect(&timeline, &Timeline::checked, &timeline, [&channel](const ScenarioResult::Check &check) { channel->writeCheck(check); });
    LogFile log(request.logFile);
    const bool isLogKept = !request.logFile.isEmpty();
    problem = isLogKept ? log.open() : QString();
    if (!problem.isEmpty())
        return fail(request.logFile, problem);
    const TimelineLog recorder(timeline, request.showsLog, isLogKept ? &log : nullptr);

    constexpr qint64 millisecondsPerSecond = 1000;
    constexpr qint64 bytesPerMegabyte = 1024LL * 1024;
    ScenarioLimits limits{request.seconds * millisecondsPerSecond, request.megabytes * bytesPerMegabyte, {}};
    limits.onStuck = [&channel](const ScenarioResult &result) {
        if (channel)
            channel->writeEnd(result);
        else
            Console::error(PlaySummary::toText({result, {}, 0, false, false}, false));
        _exit(Failed);
    };
    const ScenarioResult result = ScenarioPlayer(timeline, limits).play(file, QString::fromUtf8(*program));
    if (request.view == View::Everything)
        Console::out(QLatin1Char('\n') + StateTable::toText());
    problem = log.close();
    if (!problem.isEmpty())
        fail(request.logFile, problem);
    if (channel) {
        channel->writeEnd(result);
        if (!problem.isEmpty())
            return UsageError;
        return result.succeeded() ? Success : Failed;
    }
    ScenarioRun::Outcome outcome;
    outcome.result = result;
    if (request.view == View::Json)
        Console::out(QString::fromUtf8(JsonView::line(verdictOf(outcome, request.isStrict))));
    else
        Console::out((request.view == View::Brief ? QString() : QStringLiteral("\n")) + PlaySummary::toText(outcome, request.isStrict));
    QString error;
    if (!request.junit.isEmpty() && !JUnitReport({outcome}, request.isStrict).write(request.junit, error))
        return fail(request.junit, error);
    if (!problem.isEmpty())
        return UsageError;
    return PlaySummary::isPassed(outcome, request.isStrict) ? Success : Failed;
}

QStringList PlayCommand::optionsFor(const Request &request)
{
    QStringList options;
    switch (request.view) {
    case View::Brief:
        options.append(QStringLiteral("--brief"));
        break;
    case View::Drive:
        break;
    case View::Requests:
        options.append(QStringLiteral("-v"));
        break;
    case View::Everything:
        options.append(QStringLiteral("-vv"));
        break;
    case View::Json:
        options.append(QStringLiteral("--json"));
        break;
    }
    if (request.isRealtime)
        options.append(QStringLiteral("--realtime"));
    if (request.showsLog)
        options.append(QStringLiteral("--log"));
    if (!request.logFile.isEmpty())
        options += {QStringLiteral("--log-to"), request.logFile};
    options += {QStringLiteral("--timeout"), QString::number(request.seconds), QStringLiteral("--memory"), QString::number(request.megabytes)};
    if (!request.color.isEmpty())
        options += {QStringLiteral("--color"), request.color};
    return options;
}

int PlayCommand::playAll(const Request &given, const QStringList &words)
{
    struct Planned
    {
        QString file;
        QString problem;
    };
    QVector<Planned> plan;
    for (const QString &word : words) {
        QString problem;
        const QStringList files = ScenarioFiles::find(word, problem);
        for (const QString &file : files)
            plan.append({file, {}});
        if (files.isEmpty())
            plan.append({word, problem});
    }
    const int planned = plan.size() * given.repetitions;
    Request request = given;
    if (planned > 1 && !request.logFile.isEmpty())
        return fail(request.logFile, QStringLiteral("--log-to keeps the log of one scenario, played once"));
    const QString logProblem = request.logFile.isEmpty() ? QString() : LogFile(request.logFile).open();
    if (!logProblem.isEmpty())
        return fail(request.logFile, logProblem);
    // Of many the verdicts are what is looked for, unless all was asked for.
    if (planned > 1 && request.view == View::Drive)
        request.view = View::Brief;
    const bool forPeople = request.view != View::Json;

    Interruption interruption;
    ScenarioRun run({optionsFor(request), request.flash, request.seconds, request.junit == QLatin1String("-")}, interruption);
    QVector<ScenarioRun::Outcome> outcomes;
    QByteArray input;
    bool inputIsRead = false;
    bool isUsageError = false;
    if (ScenarioRun::isLibrarysFolder(request.flash) && !QFileInfo(request.flash).isDir())
        return fail(request.flash, QStringLiteral("there is no such folder, and the bench makes none there"));
    bool isAnnounced = false;
    const auto announce = [&] {
        isAnnounced = true;
        Console::error(request.flash.isEmpty() ? QStringLiteral("qzaudio-bench: simulated platform, private flash (--flash DIR keeps one)\n")
                                               : QStringLiteral("qzaudio-bench: simulated platform, settings in %1\n").arg(request.flash));
    };
    const auto playOne = [&](const Planned &each) {
        ScenarioRun::Outcome outcome;
        outcome.result.file = each.file;
        outcome.problem = each.problem;
        // Read here too: what cannot be read is a mistake on the command line, not a failure of the unit.
        if (outcome.problem.isEmpty() && (each.file != ScenarioFiles::standardInput() || !inputIsRead)) {
            const std::optional<QByteArray> text = read(each.file, outcome.problem);
            if (text && each.file == ScenarioFiles::standardInput()) {
                input = *text;
                inputIsRead = true;
            }
        }
        if (outcome.problem.isEmpty()) {
            if (!isAnnounced)
                announce();
            outcome = run.play(each.file, input);
        }
        isUsageError = isUsageError || !outcome.problem.isEmpty() || outcome.isOutputLost;
        if (!outcome.problem.isEmpty())
            fail(each.file, outcome.problem);
        if (!forPeople)
            Console::out(QString::fromUtf8(JsonView::line(verdictOf(outcome, request.isStrict))));
        else if (outcome.problem.isEmpty())
            Console::out((request.view == View::Brief ? QString() : QStringLiteral("\n")) + PlaySummary::toText(outcome, request.isStrict));
        outcomes.append(outcome);
        return PlaySummary::isPassed(outcome, request.isStrict);
    };
    for (const Planned &each : qAsConst(plan)) {
        for (int i = 0; i < request.repetitions && Interruption::received() == 0; ++i) {
            if (!playOne(each))
                break;
        }
    }
    if (planned > 1 && forPeople)
        Console::out(PlaySummary::toText(outcomes, planned, request.isStrict));

    QString error;
    if (!request.junit.isEmpty() && !JUnitReport(outcomes, request.isStrict).write(request.junit, error))
        return fail(request.junit, error);
    // As shells report a program that a signal ended.
    constexpr int signalBase = 128;
    if (Interruption::received() != 0)
        return signalBase + Interruption::received();
    if (isUsageError)
        return UsageError;
    const bool allPassed = std::all_of(
        outcomes.cbegin(), outcomes.cend(), [&request](const ScenarioRun::Outcome &outcome) { return PlaySummary::isPassed(outcome, request.isStrict); });
    return allPassed ? Success : Failed;
}
