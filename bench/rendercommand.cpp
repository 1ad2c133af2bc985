#include "rendercommand.h"

#include "console.h"
#include "exitstatus.h"
#include "explain/logframes.h"
#include "explain/loggedunit.h"
#include "explain/logreading.h"
#include "explain/logstory.h"
#include "interruption.h"
#include "playsummary.h"
#include "render/loudnessreport.h"
#include "render/progressbar.h"
#include "render/rendering.h"
#include "render/soundrecorder.h"
#include "scenariofiles.h"
#include "scenariorun.h"
#include "timeline.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace
{

constexpr int secondsOfPlaying = 60;
const QString earsWord = QStringLiteral("two-ears");
const QString loudspeakersWord = QStringLiteral("loudspeakers");

/// Makes a log's calls once more.
class LogPlayer : public LogStoryListener
{
public:
    explicit LogPlayer(Timeline &timeline)
        : m_unit(timeline)
    {
    }

    void request(const LoggedRequest &request) override { m_unit.apply(request); }
    void note(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void heading(qint64 time, quint64 /*line*/, const QString &text) override { m_unit.heading(time, Console::printable(text)); }
    void reboot() override { LoggedUnit::restart(); }

private:
    LoggedUnit m_unit;
};

/// "66", "66.5s", "500ms", "1:06.5" in ms.
std::optional<qint64> milliseconds(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^(?:(\\d{1,4}):(?=\\d\\d))?(\\d{1,6}(?:\\.\\d{1,3})?)(ms|s)?$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return {};
    constexpr double millisecondsPerSecond = 1000;
    constexpr qint64 millisecondsPerMinute = 60000;
    const double unit = match.captured(3) == QLatin1String("ms") ? 1 : millisecondsPerSecond;
    return match.captured(1).toLongLong() * millisecondsPerMinute + qRound64(match.captured(2).toDouble() * unit);
}

/// Whether a word of the command line is a log: a file that is no scenario.
bool isLog(const QString &word)
{
    return QFileInfo(word).isFile() && !word.endsWith(QLatin1String(".js"));
}

int fail(const QString &problem)
{
    Console::error(QStringLiteral("qzaudio-bench: %1\n").arg(Console::printable(problem)));
    return UsageError;
}

QString show(const FilterGraph &graph)
{
    QString text = graph.text();
    for (const FilterGraph::CommandFile &file : graph.commandFiles())
        text += QStringLiteral("\n# %1\n").arg(file.name) + file.text;
    return text;
}

} // namespace

QString RenderCommand::name() const
{
    return QStringLiteral("render");
}

QString RenderCommand::summary() const
{
    return QStringLiteral("makes a drive to be listened to, from a scenario or a log, and says how loud it is");
}

QString RenderCommand::arguments() const
{
    return QStringLiteral("SCENARIO|LOG");
}

QVector<Command::Option> RenderCommand::options() const
{
    return {
        {QStringLiteral("output"), QStringLiteral("FILE"), QStringLiteral("write the sound, as WAV of 48 kHz"), QLatin1Char('o')},
        {QStringLiteral("for"),
         QStringLiteral("WHOM"),
         QStringLiteral("loudspeakers: a channel for each, left front, right front, left rear, right rear; two-ears: in stereo"),
         {},
         {loudspeakersWord, earsWord}},
        {QStringLiteral("from"), QStringLiteral("TIME"), QStringLiteral("begin at this time of the drive: 66s, 1:06.5")},
        {QStringLiteral("to"), QStringLiteral("TIME"), QStringLiteral("end at this time of the drive")},
        {QStringLiteral("squeeze"), QStringLiteral("TIME"), QStringLiteral("shorten each wait in which nothing changes to this: 5s")},
        {QStringLiteral("sound"),
         QStringLiteral("SOURCE=FILE"),
         QStringLiteral("what a source sounds like: S+FilePlayer=song.flac; may be given several times")},
        {QStringLiteral("report"), {}, QStringLiteral("measure loudness, true peak and clipping, and how far prompts and calls stand above the rest")},
        {QStringLiteral("json"), {}, QStringLiteral("for programs: the report as one JSON object")},
        {QStringLiteral("play"), {}, QStringLiteral("play it on the sound card")},
        {QStringLiteral("graph"), {}, QStringLiteral("show FFmpeg's filter graph and its commands")},
    };
}

QString RenderCommand::details() const
{
    return QStringLiteral(
        "Plays a scenario, or makes a log's platform calls once more, and lets FFmpeg make sound of it: each source with a sound of its own or a "
        "file of yours, as loud at each loudspeaker as the simulated chip says at each millisecond, with its equalizer, loudness and delays. "
        "A word that is a file and does not end with .js is a log.\n"
        "\n"
        "The report is that of two ears. A prompt or a call is easy to understand from 6 to 12 LU above what else sounds.\n"
        "\n"
        "It needs the Debian package ffmpeg, and where something speaks, espeak-ng. What the chip's sound is taken to be where nobody knows it, "
        "docs/sound.md tells.\n");
}

QVector<Command::Ending> RenderCommand::endings() const
{
    return {
        {Failed, QStringLiteral("an expectation or a script failed")},
        {UsageError, QStringLiteral("a scenario that cannot be read")},
        {UsageError, QStringLiteral("a sound or a log that cannot be read")},
        {UsageError, QStringLiteral("a program for sound that is not installed")},
        {UsageError, QStringLiteral("no sound card")},
        {NothingFound, QStringLiteral("a log has no line of the library")},
    };
}

Command::Completions RenderCommand::completions(const QStringList &before) const
{
    if (!before.isEmpty())
        return {};
    QStringList names;
    const QStringList files = ScenarioFiles::inFolder(ScenarioFiles::installedFolder());
    for (const QString &file : files)
        names.append(QFileInfo(file).completeBaseName());
    return {names, QStringLiteral("FILE")};
}

bool RenderCommand::wantsVirtualTime(const QCommandLineParser &parsed) const
{
    return isLog(parsed.positionalArguments().value(1));
}

bool RenderCommand::understandTimes(const QCommandLineParser &parsed, Request &request) const
{
    for (const char *const name : {"from", "to", "squeeze"}) {
        const QString option = QLatin1String(name);
        if (!parsed.isSet(option))
            continue;
        const auto time = milliseconds(parsed.value(option));
        const bool isSqueeze = option == QLatin1String("squeeze");
        if (!time || (isSqueeze && *time == 0)) {
            complain(QStringLiteral("--%1 is a time such as 5s or 1:06.5, not %2").arg(option, parsed.value(option)));
            return false;
        }
        if (isSqueeze)
            request.longest = *time;
        else if (option == QLatin1String("from"))
            request.from = *time;
        else
            request.to = time;
    }
    if (request.to && *request.to <= request.from) {
        complain(QStringLiteral("--to is a time after --from"));
        return false;
    }
    return true;
}

bool RenderCommand::understandSounds(const QCommandLineParser &parsed, Request &request) const
{
    const QStringList sounds = parsed.values(QStringLiteral("sound"));
    for (const QString &sound : sounds) {
        const QString source = sound.section(QLatin1Char('='), 0, 0);
        const QString file = sound.section(QLatin1Char('='), 1);
        if (source.isEmpty() || file.isEmpty()) {
            complain(QStringLiteral("--sound is a source and a file, S+FilePlayer=song.flac, not %1").arg(sound));
            return false;
        }
        if (!QFileInfo(file).isReadable()) {
            fail(QStringLiteral("%1: there is no such file that can be read").arg(file));
            return false;
        }
        request.files.insert(source, QFileInfo(file).absoluteFilePath());
    }
    return true;
}

std::optional<RenderCommand::Request> RenderCommand::understand(const QCommandLineParser &parsed) const
{
    Request request;
    const auto isSet = [&parsed](const char *option) { return parsed.isSet(QLatin1String(option)); };
    const auto wrong = [this](const QString &message) -> std::optional<Request> {
        complain(message);
        return {};
    };
    const QStringList words = parsed.positionalArguments().mid(1);
    if (words.size() != 1)
        return wrong(QStringLiteral("render takes one scenario or log"));
    request.word = words.constFirst();
    request.output = parsed.value(QStringLiteral("output"));
    if (isSet("output") && (request.output.isEmpty() || request.output == ScenarioFiles::standardInput()))
        return wrong(QStringLiteral("--output needs the name of a file"));
    const QString whom = isSet("for") ? parsed.value(QStringLiteral("for")) : loudspeakersWord;
    if (whom != earsWord && whom != loudspeakersWord)
        return wrong(QStringLiteral("--for is %1 or %2, not %3").arg(loudspeakersWord, earsWord, whom));
    request.listener = whom == earsWord ? FilterGraph::Listener::TwoEars : FilterGraph::Listener::Loudspeakers;
    request.showsGraph = isSet("graph");
    request.isPlayed = isSet("play");
    request.isReported = isSet("report");
    request.isJson = isSet("json");
    if (request.isJson && !request.isReported)
        return wrong(QStringLiteral("--json is a form of --report"));
    if (request.output.isEmpty() && !request.showsGraph && !request.isPlayed && !request.isReported)
        return wrong(QStringLiteral("render needs -o FILE, --report, --play or --graph"));
    if (!understandTimes(parsed, request) || !understandSounds(parsed, request))
        return {};
    return request;
}

RenderCommand::Recorded RenderCommand::recordScenario(const QString &file, const QString &recording)
{
    Recorded recorded;
    QByteArray input;
    QFile source(file);
    const bool isStandardInput = file == ScenarioFiles::standardInput();
    if (!(isStandardInput ? source.open(STDIN_FILENO, QIODevice::ReadOnly) : source.open(QIODevice::ReadOnly))) {
        recorded.status = fail(QStringLiteral("%1: %2").arg(file, source.errorString()));
        return recorded;
    }
    if (isStandardInput)
        input = source.readAll();
    Interruption interruption;
    const QStringList options{
        QStringLiteral("--brief"), QStringLiteral("--sound-to"), recording, QStringLiteral("--timeout"), QString::number(secondsOfPlaying)};
    ScenarioRun run({options, {}, secondsOfPlaying, true}, interruption);
    const ScenarioRun::Outcome outcome = run.play(file, input);
    if (!outcome.problem.isEmpty()) {
        recorded.status = fail(QStringLiteral("%1: %2").arg(file, outcome.problem));
        return recorded;
    }
    recorded.isUsable = true;
    if (!PlaySummary::isPassed(outcome, false)) {
        Console::error(PlaySummary::toText(outcome, false));
        recorded.status = outcome.isInterrupted ? Interrupted - SIGINT + Interruption::received() : int(Failed);
    }
    return recorded;
}

RenderCommand::Recorded RenderCommand::recordLog(const Request &request, const QString &recording)
{
    Recorded recorded;
    LogFrames frames;
    LogReading log(frames, request.word);
    if (!log.open()) {
        recorded.status = UsageError;
        return recorded;
    }
    // Not this unit's platform, but that of the log.
    QLoggingCategory::setFilterRules(QStringLiteral("qzaudio.simulator.info=false"));
    Timeline timeline;
    SoundRecorder recorder(timeline);
    const QString problem = recorder.writeTo(recording);
    if (!problem.isEmpty()) {
        recorded.status = fail(problem);
        return recorded;
    }
    LogPlayer player(timeline);
    log.read(player);
    timeline.showUnfinished();
    recorded.status = log.status();
    recorded.isUsable = log.hasToldAnything();
    return recorded;
}

RenderCommand::Recorded RenderCommand::record(const Request &request)
{
    const QTemporaryDir folder;
    const QString recording = folder.filePath(QStringLiteral("recording"));
    Recorded recorded;
    if (!folder.isValid()) {
        recorded.status = fail(QStringLiteral("there is no place for temporary files: %1").arg(folder.errorString()));
        return recorded;
    }
    if (isLog(request.word)) {
        recorded = recordLog(request, recording);
    } else {
        QString problem;
        const QStringList files = ScenarioFiles::find(request.word, problem);
        if (files.size() != 1) {
            recorded.status = fail(QStringLiteral("%1: %2").arg(request.word, problem.isEmpty() ? QStringLiteral("render takes one scenario") : problem));
            return recorded;
        }
        recorded = recordScenario(files.constFirst(), recording);
    }
    QFile lines(recording);
    if (!recorded.isUsable || !lines.open(QIODevice::ReadOnly))
        return recorded;
    QString problem;
    recorded.track = SoundTrack::read(lines.readAll(), problem);
    if (!problem.isEmpty()) {
        recorded.status = fail(problem);
        recorded.isUsable = false;
    }
    return recorded;
}

int RenderCommand::report(const Request &request, Rendering &rendering, const SoundTrack &track)
{
    const QTemporaryDir folder;
    const bool isWritten = !request.output.isEmpty() && request.listener == FilterGraph::Listener::Loudspeakers;
    const QString file = isWritten ? request.output : folder.filePath(QStringLiteral("drive.wav"));
    QString problem;
    if (!isWritten) {
        ProgressBar bar(track.duration);
        problem = rendering.write(track, FilterGraph::Listener::Loudspeakers, file, [&bar](qint64 time) { bar.show(time); });
    }
    LoudnessReport report(track, rendering);
    if (problem.isEmpty())
        problem = report.measure(file);
    if (!problem.isEmpty())
        return Interruption::received() != 0 ? int(Interrupted) : fail(problem);
    Console::out(request.isJson ? QString::fromUtf8(report.toJson()) : report.toText());
    return Success;
}

int RenderCommand::render(const Request &request, const SoundTrack &track)
{
    if (request.showsGraph)
        Console::out(show(FilterGraph(track, request.listener)));
    const Interruption interruption;
    Rendering rendering(request.files);
    QString problem;
    if (!request.output.isEmpty()) {
        ProgressBar bar(track.duration);
        problem = rendering.write(track, request.listener, request.output, [&bar](qint64 time) { bar.show(time); });
    }
    if (problem.isEmpty() && request.isPlayed) {
        ProgressBar bar(track.duration);
        problem = rendering.play(track, [&bar](qint64 time) { bar.show(time); });
    }
    if (Interruption::received() != 0)
        return Interrupted - SIGINT + Interruption::received();
    if (!problem.isEmpty())
        return fail(problem);
    const int status = request.isReported ? report(request, rendering, track) : int(Success);
    return Interruption::received() != 0 ? Interrupted - SIGINT + Interruption::received() : status;
}

int RenderCommand::run(const QCommandLineParser &parsed)
{
    const std::optional<Request> request = understand(parsed);
    if (!request)
        return UsageError;
    const Recorded recorded = record(*request);
    if (!recorded.isUsable || Interruption::received() != 0)
        return recorded.status;
    SoundTrack track = recorded.track;
    if (request->from >= track.duration)
        return fail(QStringLiteral("there is nothing to hear from then on: the drive ends after %1 s").arg(double(track.duration) / 1000));
    track = track.part({request->from, request->to.value_or(track.duration)});
    if (request->longest > 0)
        track = track.squeezed(request->longest);
    const int status = render(*request, track);
    return status == Success ? recorded.status : status;
}
