#include "logreplay.h"

#include "interruption.h"
#include "logfile.h"
#include "requesttext.h"
#include "scenariorun.h"

#include <QtCore/QDataStream>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>

#include <algorithm>

using LogLines::Id;

namespace
{

/// ms of the scenario at which the log begins.
qint64 beginningIn(QIODevice &told)
{
    while (!told.atEnd()) {
        const QJsonObject event = QJsonDocument::fromJson(told.readLine()).object();
        if (event.value(QLatin1String("text")) == ScenarioWriter::beginning())
            return qint64(event.value(QLatin1String("time")).toDouble());
    }
    return 0;
}

} // namespace

LogReplay::LogReplay(const QString &log, const std::optional<StoredSettings> &stored)
    : m_log(log)
    , m_stored(stored)
{
    if (!m_folder.isValid())
        m_problem = m_folder.errorString();
}

LogReplay::~LogReplay() = default;

void LogReplay::request(const LoggedRequest &request)
{
    // The facade's lines say neither process nor thread where the log does not: then they are of whom the others are.
    const bool isKnown = request.process != LogFrame::unknown;
    const bool isOther = m_writer && isKnown && m_process != LogFrame::unknown && request.process != m_process;
    if (isOther && request.first().id() != Id::ManagerStarts) {
        // Where lines have no process, another thread looks like one.
        m_hasOtherThread = m_hasOtherThread || request.process == request.first().thread;
        ++m_sum.leftOut;
        return;
    }
    if (m_parts == 0)
        m_sum.beginsInTheMiddle = request.first().id() != Id::ManagerStarts;
    if (!m_writer || isOther)
        beginPart(request.time());
    if (isKnown)
        m_process = request.process;
    m_hasOtherThread = isOfOtherThread(request) || m_hasOtherThread;
    m_writer->request(request);
    if (m_writer->hasMadeLast())
        addCalls(request);
}

void LogReplay::reboot()
{
    endPart();
}

bool LogReplay::isOfOtherThread(const LoggedRequest &request)
{
    const LogLine &first = request.first();
    if (first.thread == LogLine::unknown || !QLatin1String(first.row->function).startsWith(QLatin1String("ZelAudioManager::")))
        return false;
    if (m_thread == LogLine::unknown || first.id() == Id::ManagerStarts)
        m_thread = first.thread;
    return first.thread != m_thread;
}

QString LogReplay::partFile(int part, const char *ending) const
{
    return m_folder.filePath(QStringLiteral("%1.%2").arg(part).arg(QLatin1String(ending)));
}

void LogReplay::beginPart(qint64 time)
{
    endPart();
    m_begins.append(time);
    m_script.setFileName(partFile(m_parts, "js"));
    m_calls.setFileName(partFile(m_parts, "calls"));
    for (QFile *const file : {&m_script, &m_calls}) {
        if (!file->open(QIODevice::WriteOnly) && m_problem.isEmpty())
            m_problem = file->errorString();
    }
    m_writer = std::make_unique<ScenarioWriter>(
        [this](const QByteArray &text) { m_script.write(text); }, ScenarioWriter::Purpose::Replay, m_log, m_parts == 0 ? m_stored : std::nullopt, m_parts > 0);
    ++m_parts;
    m_process = LogFrame::unknown;
    m_thread = LogLine::unknown;
    m_hasOtherThread = false;
}

void LogReplay::endPart()
{
    if (!m_writer)
        return;
    m_writer->finish();
    m_sum.incomplete += m_writer->incomplete();
    m_writer.reset();
    for (QFile *const file : {&m_script, &m_calls}) {
        file->close();
        if (file->error() != QFileDevice::NoError && m_problem.isEmpty())
            m_problem = file->errorString();
    }
}

void LogReplay::addCalls(const LoggedRequest &request)
{
    QDataStream stream(&m_calls);
    const QString text = request.timer.isEmpty() ? requestText(request) : QStringLiteral("a timer: ") + ScenarioWriter::purposeOf(request);
    for (const LoggedCall &call : request.calls) {
        const auto isItsLine = [&call](const LoggedRequest::Line &line) { return line.number == call.line; };
        const auto line = std::find_if(request.lines.cbegin(), request.lines.cend(), isItsLine);
        ExpectedCall expected;
        expected.call = ReplayCall::of(call);
        expected.line = call.line;
        expected.at = LogTime::toText(request.moment);
        expected.request = text;
        expected.isOfSteps = line != request.lines.cend() && (line->line.id() == Id::StepStreamSet || line->line.id() == Id::StepStreamRefused);
        expected.isAfterOtherThread = m_hasOtherThread;
        stream << expected;
        ++m_sum.calls;
    }
}

LogReplay::Outcome LogReplay::play()
{
    endPart();
    Outcome outcome = m_sum;
    outcome.problem = m_problem;
    LogFile kept(m_keptLog);
    if (!m_keptLog.isEmpty() && outcome.problem.isEmpty())
        outcome.problem = kept.open();
    for (int part = 0; part < m_parts && outcome.problem.isEmpty(); ++part) {
        if (!playPart(part, kept, outcome))
            break;
    }
    const QString problem = kept.close();
    if (outcome.problem.isEmpty())
        outcome.problem = problem;
    return outcome;
}

/// False where nothing is to be played after it.
bool LogReplay::playPart(int part, LogFile &kept, Outcome &outcome) const
{
    QFile told(partFile(part, "json"));
    if (!told.open(QIODevice::ReadWrite)) {
        outcome.problem = told.errorString();
        return false;
    }
    const bool isKept = !m_keptLog.isEmpty();
    Interruption interruption;
    QStringList options{QStringLiteral("--json"), QStringLiteral("--timeout"), QStringLiteral("0"), QStringLiteral("--memory"), QStringLiteral("0")};
    if (isKept)
        options += {QStringLiteral("--log-to"), partFile(part, "log")};
    ScenarioRun run({options, m_folder.filePath(QStringLiteral("flash")), 0, false, told.handle()}, interruption);
    const ScenarioRun::Outcome played = run.play(partFile(part, "js"), {});
    outcome.problem = played.problem;
    if (outcome.problem.isEmpty() && isKept)
        outcome.problem = keepPart(part, told, kept);
    if (played.isInterrupted || !outcome.problem.isEmpty())
        return false;
    if (!outcome.difference)
        comparePart(part, told, outcome);
    if (!played.result.error.isEmpty() && !outcome.difference)
        outcome.problem = QStringLiteral("the replay ended early: %1").arg(played.result.error);
    return outcome.problem.isEmpty() && (isKept || !outcome.difference);
}

void LogReplay::comparePart(int part, QIODevice &told, Outcome &outcome) const
{
    QFile calls(partFile(part, "calls"));
    told.seek(0);
    if (!calls.open(QIODevice::ReadOnly)) {
        outcome.problem = calls.errorString();
        return;
    }
    ReplayComparison comparison(calls, told);
    outcome.difference = comparison.find();
    if (outcome.difference)
        outcome.difference->number += outcome.compared;
    outcome.compared += comparison.count();
}

/// @return what is the matter; empty for nothing
QString LogReplay::keepPart(int part, QIODevice &told, LogFile &kept) const
{
    QFile log(partFile(part, "log"));
    if (!log.open(QIODevice::ReadOnly))
        return log.errorString();
    told.seek(0);
    const qint64 beginning = beginningIn(told);
    static const QRegularExpression form(QStringLiteral(R"(^\[ *(\d+\.\d+)\] (.*)\n$)"));
    while (!log.atEnd()) {
        const QRegularExpressionMatch line = form.match(QString::fromUtf8(log.readLine()));
        constexpr double millisecondsPerSecond = 1000;
        const qint64 time = qRound64(line.captured(1).toDouble() * millisecondsPerSecond) - beginning;
        if (line.hasMatch())
            kept.add(std::max(m_begins.at(part), time), line.captured(2));
    }
    return {};
}
