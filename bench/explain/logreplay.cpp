#include "logreplay.h"

#include "interruption.h"
#include "requesttext.h"
#include "scenariorun.h"

#include <QtCore/QDataStream>

#include <algorithm>

using LogLines::Id;

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
        beginPart();
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

void LogReplay::beginPart()
{
    endPart();
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
    for (int part = 0; part < m_parts && outcome.problem.isEmpty(); ++part) {
        if (!playPart(part, outcome))
            break;
    }
    return outcome;
}

/// False where nothing is to be played after it.
bool LogReplay::playPart(int part, Outcome &outcome) const
{
    QFile told(partFile(part, "json"));
    if (!told.open(QIODevice::ReadWrite)) {
        outcome.problem = told.errorString();
        return false;
    }
    Interruption interruption;
    const QStringList options{QStringLiteral("--json"), QStringLiteral("--timeout"), QStringLiteral("0"), QStringLiteral("--memory"), QStringLiteral("0")};
    ScenarioRun run({options, m_folder.filePath(QStringLiteral("flash")), 0, false, told.handle()}, interruption);
    const ScenarioRun::Outcome played = run.play(partFile(part, "js"), {});
    outcome.problem = played.problem;
    if (played.isInterrupted || !played.problem.isEmpty())
        return false;

    QFile calls(partFile(part, "calls"));
    told.seek(0);
    if (!calls.open(QIODevice::ReadOnly)) {
        outcome.problem = calls.errorString();
        return false;
    }
    ReplayComparison comparison(calls, told);
    outcome.difference = comparison.find();
    if (outcome.difference)
        outcome.difference->number += outcome.compared;
    outcome.compared += comparison.count();
    if (!played.result.error.isEmpty() && !outcome.difference)
        outcome.problem = QStringLiteral("the replay ended early: %1").arg(played.result.error);
    return !outcome.difference && outcome.problem.isEmpty();
}
