#include "plotcommand.h"

#include "console.h"
#include "equalizercurves.h"
#include "exitstatus.h"
#include "jsonview.h"
#include "plot/drivelog.h"
#include "plot/fadeplot.h"
#include "plot/figurejson.h"
#include "plot/picturefile.h"
#include "plot/plotcurves.h"
#include "plot/policyplot.h"
#include "plot/terminalplot.h"
#include "plot/timelineplot.h"
#include "scenariofiles.h"
#include "settingsreader.h"

#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

const QLatin1String equalizer("equalizer");
const QLatin1String fade("fade");
const QLatin1String timeline("timeline");
const QLatin1String policy("policy");

QStringList subjects()
{
    return {equalizer, fade, timeline, policy};
}

/// Of a drive: programs can show a part of it at a time.
constexpr int mostChangesForPrograms = 50000;

/// Which subject an option belongs to; what is not here goes with all of them.
struct OptionOf
{
    const char *option;
    const char *subject;
};

constexpr OptionOf optionsOf[] = {
    {"gains", "equalizer"},
    {"settings", "equalizer"},
    {"at", "equalizer"},
    {"fade", "fade"},
    {"balance", "fade"},
    {"from", "timeline"},
    {"to", "timeline"},
    {"squeeze", "timeline"},
};

int fail(const QString &file, const QString &problem, ExitStatus status)
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(Console::printable(file), Console::printable(problem)));
    return status;
}

QStringList scenarioNames()
{
    QStringList names;
    const QStringList files = ScenarioFiles::inFolder(ScenarioFiles::installedFolder());
    for (const QString &file : files)
        names.append(QFileInfo(file).completeBaseName());
    return names;
}

/// Steps of fade or balance; empty where they are none.
std::optional<int> stepsOf(const QCommandLineParser &parsed, const QString &option)
{
    if (!parsed.isSet(option))
        return 0;
    bool isNumber = false;
    const int steps = parsed.value(option).toInt(&isNumber);
    return isNumber && std::abs(steps) <= FadePlot::highestStep ? std::optional<int>(steps) : std::nullopt;
}

/// ms of "5s", "2.5s" or "0"; empty for another text.
std::optional<qint64> durationOf(QString text)
{
    constexpr double millisecondsPerSecond = 1000;
    constexpr double longest = 86400;
    if (text.endsWith(QLatin1Char('s')))
        text.chop(1);
    bool isNumber = false;
    const double seconds = text.toDouble(&isNumber);
    return isNumber && seconds >= 0 && seconds <= longest ? std::optional<qint64>(qint64(seconds * millisecondsPerSecond)) : std::nullopt;
}

} // namespace

QString PlotCommand::name() const
{
    return QStringLiteral("plot");
}

QString PlotCommand::summary() const
{
    return QStringLiteral("draws equalizer curves, fade and balance, a drive, the policy");
}

QString PlotCommand::arguments() const
{
    return QStringLiteral("SUBJECT [WHAT]...");
}

QVector<Command::Option> PlotCommand::options() const
{
    return {
        {QStringLiteral("output"),
         QStringLiteral("FILE"),
         QStringLiteral("draw into this file, .svg or .png, instead of on the terminal; - is SVG on the standard output"),
         QLatin1Char('o')},
        {QStringLiteral("json"), {}, QStringLiteral("for programs: what would be drawn, as one JSON object")},
        {QStringLiteral("gains"),
         QStringLiteral("LIST"),
         QStringLiteral("equalizer: the curve of sixteen gains in dB, with commas; may be given several times")},
        {QStringLiteral("settings"),
         QStringLiteral("FILE"),
         QStringLiteral("equalizer: the curve that this settings file has in use; may be given several times")},
        {QStringLiteral("at"), QStringLiteral("TIME"), QStringLiteral("equalizer: the curve of a drive then, not at its end: +12s, or a time as in the log")},
        {QStringLiteral("fade"), QStringLiteral("STEPS"), QStringLiteral("fade: -15 (rear) to 15 (front)")},
        {QStringLiteral("balance"), QStringLiteral("STEPS"), QStringLiteral("fade: -15 (right) to 15 (left)")},
        {QStringLiteral("from"), QStringLiteral("TIME"), QStringLiteral("timeline: draw what happened from then on: +12s, or a time as in the log")},
        {QStringLiteral("to"), QStringLiteral("TIME"), QStringLiteral("timeline: draw what happened until then")},
        {QStringLiteral("squeeze"),
         QStringLiteral("SECONDS"),
         QStringLiteral("timeline: draw no more than this of a time in which nothing changes: 5s; 0 draws all to scale")},
        {QStringLiteral("color"),
         QStringLiteral("WHEN"),
         QStringLiteral("auto (on a terminal), always or never"),
         {},
         {QStringLiteral("auto"), QStringLiteral("always"), QStringLiteral("never")}},
    };
}

QString PlotCommand::details() const
{
    return QStringLiteral(
        "Draws on the terminal, as wide as it is, or into a file. The subjects:\n"
        "\n"
        "  equalizer [CURVE]...      responses from 20 Hz to 20 kHz, in one chart: mode0 to mode6 (the facade's), preset0 to preset6 (the settings "
        "store's), a scenario or log; without any: the modes and the presets side by side\n"
        "  fade                      the car from above, and what each setting of fade and balance does\n"
        "  timeline SCENARIO|LOG     what held when in a drive, and how loud each source was\n"
        "  policy                    statuses and channels with their volume types\n"
        "\n"
        "A scenario is a file that ends in .js or the name of one that comes with the bench; it is played. Any other name is that of a log, as "
        "explain reads it; - is the standard input.\n"
        "\n"
        "Terminals that are not UTF-8 are drawn on in ASCII. SVG has a light and a dark look, and follows its reader's. For PNG rsvg-convert is "
        "called, of the Debian package librsvg2-bin.\n");
}

QVector<Command::Ending> PlotCommand::endings() const
{
    return {
        {Failed, QStringLiteral("a scenario that is drawn failed")},
        {Failed, QStringLiteral("a settings file cannot be read")},
        {UsageError, QStringLiteral("a picture that cannot be made")},
        {NothingFound, QStringLiteral("a log has no line of the library")},
    };
}

Command::Completions PlotCommand::completions(const QStringList &before) const
{
    if (before.isEmpty())
        return {subjects(), {}};
    if (before.constFirst() == equalizer)
        return {EqualizerCurves::names() + scenarioNames(), QStringLiteral("FILE")};
    if (before.constFirst() == timeline && before.size() == 1)
        return {scenarioNames(), QStringLiteral("FILE")};
    return {};
}

bool PlotCommand::wantsVirtualTime(const QCommandLineParser & /*parsed*/) const
{
    return true;
}

QString PlotCommand::problemOfOptions(const QString &subject, const QCommandLineParser &parsed)
{
    for (const OptionOf &one : optionsOf) {
        if (parsed.isSet(QLatin1String(one.option)) && subject != QLatin1String(one.subject))
            return QStringLiteral("--%1 goes with %2, not with %3").arg(QLatin1String(one.option), QLatin1String(one.subject), subject);
    }
    for (const char *const option : {"at", "from", "to"}) {
        const QString value = parsed.value(QLatin1String(option));
        if (parsed.isSet(QLatin1String(option)) && !LogLimit::read(value))
            return QStringLiteral("--%1 is a time as in the log, 12:03:07, or from its first line on, +12s, not %2")
                .arg(QLatin1String(option), Console::printable(value));
    }
    return {};
}

int PlotCommand::run(const QCommandLineParser &parsed)
{
    const QString color = parsed.value(QStringLiteral("color"));
    const auto colors = options().constLast().values;
    if (!color.isEmpty() && !colors.contains(color))
        return complain(QStringLiteral("--color is auto, always or never, not %1").arg(Console::printable(color)));
    Console::setColors(color == QLatin1String("always")      ? Console::Colors::Always
                           : color == QLatin1String("never") ? Console::Colors::Never
                                                             : Console::Colors::Auto);
    const QString file = parsed.value(QStringLiteral("output"));
    const bool isJson = parsed.isSet(QStringLiteral("json"));
    if (isJson && parsed.isSet(QStringLiteral("output")))
        return complain(QStringLiteral("--json and --output do not go together"));
    if (parsed.isSet(QStringLiteral("output"))) {
        const QString problem = PictureFile::problemOfName(file);
        if (!problem.isEmpty())
            return complain(problem);
    }
    // Neither what the library says of itself while it is asked is of interest, nor that the platform is a simulated one.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\nqzaudio.simulator.info=false"));
    const Drawn drawn = drawSubject(parsed.positionalArguments().mid(1), parsed);
    if (!drawn.figure)
        return drawn.status;
    if (isJson) {
        Console::out(QString::fromUtf8(JsonView::line(FigureJson::of(*drawn.figure))));
        return drawn.status;
    }
    if (file.isEmpty()) {
        Console::out(TerminalPlot(Console::width(), TerminalPlot::charactersOfLocale()).draw(*drawn.figure));
        return drawn.status;
    }
    const int written = write(*drawn.figure, file);
    return written == Success ? drawn.status : written;
}

int PlotCommand::write(const Figure &figure, const QString &file)
{
    const QString problem = PictureFile::write(figure, file);
    return problem.isEmpty() ? Success : fail(file, problem, UsageError);
}

PlotCommand::Drawn PlotCommand::drawSubject(const QStringList &words, const QCommandLineParser &parsed) const
{
    const QString subject = words.value(0);
    if (!subjects().contains(subject))
        return wrong(subject.isEmpty() ? QStringLiteral("a subject is missing: %1").arg(subjects().join(QStringLiteral(", ")))
                                       : QStringLiteral("plot knows %1, not %2").arg(subjects().join(QStringLiteral(", ")), Console::printable(subject)));
    const QString problem = problemOfOptions(subject, parsed);
    if (!problem.isEmpty())
        return wrong(problem);
    if (subject == equalizer)
        return drawEqualizer(words.mid(1), parsed);
    if (subject == timeline)
        return words.size() == 2 ? drawTimeline(words.at(1), parsed) : wrong(QStringLiteral("plot timeline takes one scenario or log"));
    if (words.size() > 1)
        return wrong(QStringLiteral("plot %1 takes nothing more").arg(subject));
    return subject == fade ? drawFade(parsed) : Drawn{PolicyPlot::draw()};
}

PlotCommand::Drawn PlotCommand::drawEqualizer(const QStringList &words, const QCommandLineParser &parsed) const
{
    const QStringList lists = parsed.values(QStringLiteral("gains"));
    const QStringList files = parsed.values(QStringLiteral("settings"));
    const QString time = parsed.value(QStringLiteral("at"));
    if (words.size() + lists.size() + files.size() > EqualizerPlot::mostCurves)
        return wrong(QStringLiteral("a chart holds %1 curves").arg(EqualizerPlot::mostCurves));
    QVector<EqualizerPlot::Curve> curves;
    int worst = Success;
    bool hasDrive = false;
    for (const QString &word : words) {
        int status = Success;
        auto curve = PlotCurves::ofName(word);
        if (!curve) {
            curve = PlotCurves::ofDrive(word, LogLimit::read(time), time, status);
            hasDrive = true;
        }
        if (!curve)
            return {{}, status};
        worst = std::max(worst, status);
        curves.append(*curve);
    }
    if (!time.isEmpty() && !hasDrive)
        return wrong(QStringLiteral("--at is a time of a scenario or log, and there is none"));
    QString problem;
    for (const QString &list : lists) {
        const auto curve = PlotCurves::ofGains(list, problem);
        if (!curve)
            return wrong(Console::printable(problem));
        curves.append(*curve);
    }
    for (const QString &file : files) {
        if (!SettingsReader::exists(file))
            return wrong(QStringLiteral("there is no settings file %1").arg(Console::printable(file)));
        const auto curve = PlotCurves::ofSettings(file, problem);
        if (!curve)
            return {{}, fail(file, problem, Failed)};
        curves.append(*curve);
    }
    return {curves.isEmpty() ? EqualizerPlot::compare() : EqualizerPlot::draw(curves), worst};
}

PlotCommand::Drawn PlotCommand::drawFade(const QCommandLineParser &parsed) const
{
    const auto steps = stepsOf(parsed, QStringLiteral("fade"));
    const auto sideSteps = stepsOf(parsed, QStringLiteral("balance"));
    if (!steps || !sideSteps)
        return wrong(QStringLiteral("--fade and --balance are whole numbers from -15 to 15"));
    return {FadePlot::draw(*steps, *sideSteps)};
}

PlotCommand::Drawn PlotCommand::drawTimeline(const QString &word, const QCommandLineParser &parsed) const
{
    TimelinePlot::Settings settings;
    settings.title = Console::printable(word);
    settings.wanted.from = LogLimit::read(parsed.value(QStringLiteral("from")));
    settings.wanted.to = LogLimit::read(parsed.value(QStringLiteral("to")));
    if (parsed.isSet(QStringLiteral("squeeze"))) {
        const auto duration = durationOf(parsed.value(QStringLiteral("squeeze")));
        if (!duration)
            return wrong(QStringLiteral("--squeeze is a number of seconds, 5s, not %1").arg(Console::printable(parsed.value(QStringLiteral("squeeze")))));
        settings.longestStill = *duration;
    }
    if (parsed.isSet(QStringLiteral("json")))
        settings.mostChanges = mostChangesForPrograms;
    DriveLog drive;
    const int opened = drive.open(word);
    if (opened != Success)
        return {{}, opened};
    settings.headings = drive.headings();
    TimelinePlot plot(settings, drive.clock());
    const int status = drive.read(plot, settings.wanted);
    if (status != Success && status != Failed)
        return {{}, status};
    return {plot.finish(), status};
}
