#include "explaincommand.h"

#include "console.h"
#include "driveview.h"
#include "exitstatus.h"
#include "explain/focusview.h"
#include "explain/logfilter.h"
#include "explain/logframes.h"
#include "explain/loggedunit.h"
#include "explain/logjsonview.h"
#include "explain/logreading.h"
#include "explain/logsource.h"
#include "explain/logstory.h"
#include "explain/logsummary.h"
#include "explain/replayoptions.h"
#include "interruption.h"
#include "requestview.h"
#include "settingsreader.h"
#include "timeline.h"

#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>

#include <csignal>

namespace
{

/// Tells the unit, and for programs also where in the log it is told.
class Teller : public LogStoryListener
{
public:
    Teller(Timeline &timeline, LogJsonView *json)
        : m_unit(timeline)
        , m_json(json)
    {
    }

    void request(const LoggedRequest &request) override
    {
        if (m_json)
            m_json->setOrigin({request.lines.constFirst().number, request.process, request.program, LogTime::toText(request.moment)});
        m_unit.apply(request);
    }

    void note(qint64 time, quint64 line, const QString &text) override
    {
        setLine(line);
        // Programs have the number apart.
        const bool isPlain = m_json || line == 0;
        m_unit.note(time, Console::printable(isPlain ? text : QStringLiteral("line %1: %2").arg(line).arg(text)));
    }

    void focus(const FocusChange &change) override
    {
        if (m_json)
            m_json->setOrigin({change.line, change.process, change.program, LogTime::toText(change.moment)});
        m_unit.note(change.time, Console::printable(QStringLiteral("focus: ") + change.text));
    }

    void heading(qint64 time, quint64 line, const QString &text) override
    {
        setLine(line);
        m_unit.heading(time, Console::printable(text));
    }

    void reboot() override { LoggedUnit::restart(); }

private:
    void setLine(quint64 line)
    {
        if (m_json)
            m_json->setOrigin({line, LogFrame::unknown, {}, {}});
    }

    LoggedUnit m_unit;
    LogJsonView *m_json;
};

int fail(const QString &file, const QString &problem)
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(Console::printable(file), Console::printable(problem)));
    return UsageError;
}

/// Why there are no settings to be read; empty where there may be.
QString settingsProblem(const QString &file)
{
    if (QFileInfo(file).isDir())
        return QStringLiteral("%1 is a folder, not a settings file").arg(Console::printable(file));
    return SettingsReader::exists(file) ? QString() : QStringLiteral("there is no file %1").arg(Console::printable(file));
}

QString firstTime(const LogClock &clock)
{
    return clock.first().clock == LogTime::Clock::None ? QStringLiteral("without a time") : LogTime::toText(clock.first());
}

} // namespace

QString ExplainCommand::name() const
{
    return QStringLiteral("explain");
}

QString ExplainCommand::summary() const
{
    return QStringLiteral("tells from a unit's log what was heard, and why");
}

QString ExplainCommand::arguments() const
{
    return QStringLiteral("[LOG]");
}

QVector<Command::Option> ExplainCommand::options() const
{
    const QVector<Option> ofViews = {
        {QStringLiteral("verbose"), {}, QStringLiteral("show each request with its platform calls; twice: those of the audio's start, too"), QLatin1Char('v')},
        {QStringLiteral("json"), {}, QStringLiteral("for programs: all of it, one JSON object a line")},
        {QStringLiteral("summary"), {}, QStringLiteral("show what it comes to: volumes, statuses, keys, saves, focus, refusals")},
        {QStringLiteral("follow"), {}, QStringLiteral("go on as lines come, until interrupted")},
        {QStringLiteral("from"), QStringLiteral("TIME"), QStringLiteral("show what happened from then on: a time as in the log, or +12s from its first line")},
        {QStringLiteral("to"), QStringLiteral("TIME"), QStringLiteral("show what happened until then")},
        {QStringLiteral("only"),
         QStringLiteral("AREAS"),
         QStringLiteral("show these, with commas: %1").arg(LogFilter::areaNames().join(QStringLiteral(", "))),
         {},
         LogFilter::areaNames()},
        {QStringLiteral("source"), QStringLiteral("NAME"), QStringLiteral("show what concerns this source: S+FilePlayer")},
        {QStringLiteral("pattern"), QStringLiteral("FORM"), QStringLiteral("what the lines look like, in the words of QT_MESSAGE_PATTERN")},
        {QStringLiteral("color"),
         QStringLiteral("WHEN"),
         QStringLiteral("auto (on a terminal), always or never"),
         {},
         {QStringLiteral("auto"), QStringLiteral("always"), QStringLiteral("never")}},
    };
    const QVector<Option> ofAnswers = {
        {QStringLiteral("settings"),
         QStringLiteral("FILE"),
         QStringLiteral("the unit's settings file: for --why and its like what the log does not say, for --scenario and --replay what they start with")},
    };
    return ofViews + LevelQuestion::options() + ReplayOptions::rows() + ofAnswers;
}

QString ExplainCommand::details() const
{
    return QStringLiteral(
        "Reads a log that has the library's lines in it, from a file or the standard input, also one that gzip, xz or zstd compressed, and tells "
        "what the unit did: each situation, what was heard at the driver's ear, and why. Lines of other programs are passed over.\n"
        "\n"
        "What stands before the library's text is found out for each line: nothing, the usual forms of QT_MESSAGE_PATTERN, journalctl's "
        "(short, short-iso, short-precise, short-monotonic, json, export), syslog's, the text of DLT viewers, seconds as of the kernel.\n"
        "\n"
        "The unit's platform calls are made once more on the simulated platform, which says what was heard. What the log does not say is "
        "shown as \"?\".\n"
        "\n"
        "With --scenario or --replay the library itself is given the same requests at the same times. A scenario orders what the unit's platform "
        "refused, and expects what it was sent. A replay refuses nothing, so that a refusal shows as the difference that it made.\n");
}

QVector<Command::Ending> ExplainCommand::endings() const
{
    return {
        {Failed, QStringLiteral("a replay differs from the log")},
        {UsageError, QStringLiteral("a log or a settings file that cannot be read")},
        {NothingFound, QStringLiteral("a log has no line of the library")},
    };
}

Command::Completions ExplainCommand::completions(const QStringList &before) const
{
    return {{}, before.isEmpty() ? QStringLiteral("FILE") : QString()};
}

bool ExplainCommand::wantsVirtualTime(const QCommandLineParser &parsed) const
{
    return !ReplayOptions(parsed).isReplayed();
}

std::optional<LogFilter::Wanted> ExplainCommand::understandWanted(const QCommandLineParser &parsed) const
{
    LogFilter::Wanted wanted;
    for (const bool isFrom : {true, false}) {
        const QString option = isFrom ? QStringLiteral("from") : QStringLiteral("to");
        if (!parsed.isSet(option))
            continue;
        const auto limit = LogLimit::read(parsed.value(option));
        if (!limit) {
            complain(QStringLiteral("--%1 is a time as in the log, 12:03:07, or from its first line on, +12s, not %2").arg(option, parsed.value(option)));
            return {};
        }
        (isFrom ? wanted.from : wanted.to) = limit;
    }
    if (parsed.isSet(QStringLiteral("only")))
        wanted.areas = parsed.value(QStringLiteral("only")).split(QLatin1Char(','));
    for (const QString &area : qAsConst(wanted.areas)) {
        if (!LogFilter::areaNames().contains(area)) {
            complain(QStringLiteral("--only knows %1, not %2").arg(LogFilter::areaNames().join(QStringLiteral(", ")), area));
            return {};
        }
    }
    wanted.source = parsed.value(QStringLiteral("source"));
    return wanted;
}

std::optional<ExplainCommand::Request> ExplainCommand::understand(const QCommandLineParser &parsed) const
{
    Request request;
    const auto isSet = [&parsed](const char *option) { return parsed.isSet(QLatin1String(option)); };
    const auto wrong = [this](const QString &message) -> std::optional<Request> {
        complain(message);
        return {};
    };
    const QStringList words = parsed.positionalArguments().mid(1);
    if (words.size() > 1)
        return wrong(QStringLiteral("explain takes one log"));
    const auto verbosity = parsed.optionNames().count(QStringLiteral("v")) + parsed.optionNames().count(QStringLiteral("verbose"));
    if (int(isSet("summary")) + int(isSet("json")) + int(verbosity > 0) > 1)
        return wrong(QStringLiteral("--summary, --json and --verbose do not go together"));
    request.view = isSet("summary") ? View::Summary
        : isSet("json")             ? View::Json
        : verbosity == 0            ? View::Drive
        : verbosity == 1            ? View::Requests
                                    : View::Everything;
    const QString color = parsed.value(QStringLiteral("color"));
    if (!color.isEmpty() && color != QLatin1String("auto") && color != QLatin1String("always") && color != QLatin1String("never"))
        return wrong(QStringLiteral("--color is auto, always or never, not %1").arg(color));
    Console::setColors(color == QLatin1String("always")      ? Console::Colors::Always
                           : color == QLatin1String("never") ? Console::Colors::Never
                                                             : Console::Colors::Auto);
    const auto wanted = understandWanted(parsed);
    if (!wanted)
        return {};
    request.wanted = *wanted;
    request.wanted.tellsRefusals = request.view == View::Drive;
    request.isFollowed = isSet("follow");
    QString problem;
    request.question = LevelQuestion::read(parsed, problem);
    if (!problem.isEmpty())
        return wrong(problem);
    if (request.question)
        request.question->wanted = request.wanted;
    request.file = words.isEmpty() ? QLatin1String(LogSource::standardInput()) : words.first();
    return request;
}

int ExplainCommand::run(const QCommandLineParser &parsed)
{
    const std::optional<Request> request = understand(parsed);
    if (!request)
        return UsageError;
    LogFrames frames;
    if (parsed.isSet(QStringLiteral("pattern"))) {
        const QString problem = frames.setPattern(parsed.value(QStringLiteral("pattern")));
        if (!problem.isEmpty())
            return complain(QStringLiteral("--pattern is no QT_MESSAGE_PATTERN: %1").arg(problem));
    }
    // Not this unit's platform, but that of the log.
    QLoggingCategory::setFilterRules(QStringLiteral("qzaudio.simulator.info=false"));
    const ReplayOptions replay(parsed);
    if (const QString problem = replay.problem(parsed); !problem.isEmpty())
        return complain(problem);
    std::optional<SettingsReader> unit;
    if (parsed.isSet(QStringLiteral("settings"))) {
        const QString file = parsed.value(QStringLiteral("settings"));
        if (!request->question && !replay.isWanted())
            return complain(QStringLiteral("--settings goes with a question, --why and its like, --scenario or --replay"));
        const QString problem = settingsProblem(file);
        if (!problem.isEmpty())
            return complain(problem);
        unit.emplace(file);
        if (!unit->isReadable())
            return fail(file, unit->problem());
    }
    const SettingsReader *const ofUnit = unit ? &*unit : nullptr;
    return replay.isWanted() ? replay.run(frames, request->file, ofUnit) : explain(*request, frames, ofUnit);
}

std::unique_ptr<TimelineView> ExplainCommand::viewFor(const Request &request, LogJsonView *&json)
{
    if (request.view == View::Drive && request.wanted.areas == QStringList(QStringLiteral("focus")))
        return std::make_unique<FocusView>();
    if (request.view == View::Drive)
        return std::make_unique<DriveView>();
    if (request.view != View::Json)
        return std::make_unique<RequestView>(request.view == View::Everything);
    auto view = std::make_unique<LogJsonView>(request.file);
    json = view.get();
    return view;
}

void ExplainCommand::tell(const Request &request, LogReading &log)
{
    LogJsonView *json = nullptr;
    const std::unique_ptr<TimelineView> view = viewFor(request, json);
    LogFilter filter(*view, log.clock(), request.wanted);
    Timeline timeline(&filter);
    Teller teller(timeline, json);
    log.read(teller);
    timeline.showUnfinished();
}

void ExplainCommand::summarize(const Request &request, LogReading &log)
{
    LogSummary summary(log.clock(), request.wanted);
    log.read(summary);
    summary.finish();
    if (log.hasToldAnything())
        Console::out(summary.toText());
}

int ExplainCommand::explain(const Request &request, LogFrames &frames, const SettingsReader *unit) const
{
    LogReading log(frames, request.file);
    if (!log.open(request.isFollowed))
        return UsageError;
    if (request.question)
        return answer(*request.question, log, unit);

    const std::unique_ptr<Interruption> interruption = request.isFollowed ? std::make_unique<Interruption>() : nullptr;
    if (request.view == View::Summary)
        summarize(request, log);
    else
        tell(request, log);
    return statusOf(log, request.wanted);
}

int ExplainCommand::answer(const LevelQuestion &question, LogReading &log, const SettingsReader *unit) const
{
    QString problem;
    const int status = question.answer(log, unit, problem);
    if (!problem.isEmpty())
        return complain(problem);
    return status == Success ? statusOf(log, question.wanted) : status;
}

int ExplainCommand::statusOf(LogReading &log, const LogFilter::Wanted &wanted) const
{
    const int status = log.status();
    if (status != Success)
        return status;
    for (const auto &limit : {wanted.from, wanted.to}) {
        if (limit && !limit->in(log.clock()))
            return complain(QStringLiteral("the log's lines have no such times as --from or --to; its first one is %1").arg(firstTime(log.clock())));
    }
    const int signal = Interruption::received();
    return signal == 0 ? Success : Interrupted - SIGINT + signal;
}
