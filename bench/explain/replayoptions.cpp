#include "replayoptions.h"

#include "console.h"
#include "exitstatus.h"
#include "interruption.h"
#include "logreading.h"
#include "logreplay.h"
#include "outputfile.h"
#include "scenariowriter.h"
#include "settingsreader.h"
#include "viewtext.h"

#include <QtCore/QFileInfo>

#include <csignal>

namespace
{

/// Those that choose what of a timeline is shown, and how.
constexpr const char *viewOptions[] = {"verbose", "json", "summary", "follow", "from", "to", "only", "source"};

int fail(const QString &file, const QString &problem)
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(Console::printable(file), Console::printable(problem)));
    return UsageError;
}

bool isSameFile(const QString &one, const QString &other)
{
    const QString written = QFileInfo(one).canonicalFilePath();
    return !written.isEmpty() && written == QFileInfo(other).canonicalFilePath();
}

QString countText(quint64 count, const char *one, const char *many)
{
    return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

/// What of the log is not in the replay.
QString remarks(quint64 incomplete, quint64 leftOut)
{
    QString text;
    if (incomplete > 0)
        text += QStringLiteral("; the log does not say all of %1").arg(countText(incomplete, "request", "requests"));
    if (leftOut > 0)
        text += QStringLiteral("; %1 of other processes or threads left out").arg(countText(leftOut, "request", "requests"));
    return text;
}

QString differenceText(const LogReplay::Outcome &outcome)
{
    const ReplayDifference &difference = *outcome.difference;
    QString text = QStringLiteral("The first difference is call %1 of %2").arg(difference.number).arg(outcome.calls);
    if (difference.logged) {
        text += QStringLiteral(", line %1").arg(difference.logged->line);
        if (!difference.logged->at.isEmpty())
            text += QStringLiteral(", ") + difference.logged->at;
        text += QStringLiteral(", of ") + difference.logged->request;
    } else {
        text += QStringLiteral(", before line %1").arg(difference.nextLine);
    }
    const QString none = QStringLiteral("no such call");
    text += QStringLiteral(":\n  on the unit  %1\n").arg(difference.logged ? difference.logged->call.toText() : none);
    text += QStringLiteral("  replayed     %1\n").arg(difference.replayed ? difference.replayed->toText() : none);
    text += QStringLiteral("Likely cause: %1\n").arg(difference.cause());
    if (outcome.beginsInTheMiddle)
        text += QStringLiteral("The log does not have the audio's start; what was set before it, and stored but for --settings, is not known\n");
    return text;
}

} // namespace

ReplayOptions::ReplayOptions(const QCommandLineParser &parsed)
    : m_isReplayed(parsed.isSet(QStringLiteral("replay")))
    , m_writesScenario(parsed.isSet(QStringLiteral("scenario")))
    , m_scenario(parsed.value(QStringLiteral("scenario")))
    , m_keepsLog(parsed.isSet(QStringLiteral("log-to")))
    , m_keptLog(parsed.value(QStringLiteral("log-to")))
{
}

QVector<Command::Option> ReplayOptions::rows()
{
    return {
        {QStringLiteral("scenario"),
         QStringLiteral("FILE"),
         QStringLiteral("write a scenario that makes the same requests at the same times; - is the standard output")},
        {QStringLiteral("replay"), {}, QStringLiteral("play that at once, and tell the first platform call that is another one than in the log")},
        {QStringLiteral("log-to"), QStringLiteral("FILE"), QStringLiteral("with --replay: keep the log of what was played, at this log's times, in this file")},
    };
}

QString ReplayOptions::problem(const QCommandLineParser &parsed) const
{
    if (m_isReplayed && m_writesScenario)
        return QStringLiteral("--scenario and --replay do not go together");
    if (m_keepsLog && !m_isReplayed)
        return QStringLiteral("--log-to goes with --replay");
    if (m_keepsLog && m_keptLog.isEmpty())
        return QStringLiteral("--log-to needs a name");
    if (m_writesScenario && m_scenario.isEmpty())
        return QStringLiteral("--scenario needs a name");
    if (!isWanted())
        return {};
    for (const char *const option : viewOptions) {
        if (parsed.isSet(QLatin1String(option)))
            return QStringLiteral("--%1 does not go with --%2").arg(QLatin1String(option), QLatin1String(m_isReplayed ? "replay" : "scenario"));
    }
    return {};
}

int ReplayOptions::run(LogFrames &frames, const QString &log, const SettingsReader *unit) const
{
    const auto stored = unit ? std::make_optional(StoredSettings::ofFile(*unit)) : std::nullopt;
    return m_isReplayed ? replay(frames, log, stored) : writeScenario(frames, log, stored);
}

int ReplayOptions::writeScenario(LogFrames &frames, const QString &log, const std::optional<StoredSettings> &stored) const
{
    if (isSameFile(m_scenario, log))
        return fail(m_scenario, QStringLiteral("this is the log itself"));
    LogReading reading(frames, log);
    if (!reading.open())
        return UsageError;
    OutputFile file;
    QString problem = file.open(m_scenario);
    if (!problem.isEmpty())
        return fail(m_scenario, problem);
    ScenarioWriter writer([&file](const QByteArray &text) { file.write(text); }, ScenarioWriter::Purpose::Reading, log, stored);
    reading.read(writer);
    writer.finish();
    const int status = reading.status();
    if (!reading.hasToldAnything())
        return status;
    problem = file.close();
    if (!problem.isEmpty())
        return fail(m_scenario, problem);
    if (m_scenario != QLatin1String("-")) {
        Console::out(QStringLiteral("%1: %2 in %3%4\n")
                         .arg(Console::printable(m_scenario),
                              countText(writer.requests(), "request or timer", "requests and timers"),
                              ViewText::time(writer.duration()).trimmed(),
                              remarks(writer.incomplete(), 0)));
    }
    return status;
}

int ReplayOptions::replay(LogFrames &frames, const QString &log, const std::optional<StoredSettings> &stored) const
{
    if (m_keepsLog && isSameFile(m_keptLog, log))
        return fail(m_keptLog, QStringLiteral("this is the log itself"));
    LogReading reading(frames, log);
    if (!reading.open())
        return UsageError;
    LogReplay listener(log, stored);
    if (m_keepsLog)
        listener.keepLog(m_keptLog);
    reading.read(listener);
    const int status = reading.status();
    if (!reading.hasToldAnything())
        return status;
    const LogReplay::Outcome outcome = listener.play();
    if (Interruption::received() != 0)
        return Interrupted - SIGINT + Interruption::received();
    if (!outcome.problem.isEmpty())
        return fail(log, outcome.problem);
    if (outcome.difference) {
        Console::out(differenceText(outcome));
        return Failed;
    }
    Console::out(QStringLiteral("no difference in %1%2\n").arg(countText(outcome.calls, "call", "calls"), remarks(outcome.incomplete, outcome.leftOut)));
    return status;
}
