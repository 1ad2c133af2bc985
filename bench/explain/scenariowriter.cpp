#include "scenariowriter.h"

#include "policynames.h"
#include "valuetext.h"

#include <algorithm>
#include <iterator>
#include <utility>

using LogLines::Id;

namespace
{

constexpr qint64 muteUnit = 50; // ms, that a timed mute is counted in
/// ms that the end of a timed mute may be late. What comes at another time is somebody's call.
constexpr qint64 muteTolerance = 5;
/// A mute that ends behind so many lines is written without its count.
constexpr int mostWaiting = 20000;
constexpr qint64 endlessCount = 100000000;
/// ms that a unit takes until its audio has settled, before a log that begins while it is on.
constexpr qint64 settlingTime = 3000;
constexpr int mostNotes = 100; // before the first request

bool isOfManager(const LogLine &line)
{
    return QLatin1String(line.row->function).startsWith(QLatin1String("ZelAudioManager::"));
}

bool hasLine(const LoggedRequest &request, Id id)
{
    return std::any_of(request.lines.cbegin(), request.lines.cend(), [id](const LoggedRequest::Line &line) { return line.line.id() == id; });
}

} // namespace

ScenarioWriter::ScenarioWriter(Output receivesText, Purpose chosen, const QString &log, std::optional<StoredSettings> stored, bool goesOn)
    : m_output(std::move(receivesText))
    , m_purpose(chosen)
    , m_log(log)
    , m_stored(std::move(stored))
    , m_goesOn(goesOn)
{
}

QString ScenarioWriter::purposeOf(const LoggedRequest &request)
{
    const auto *const found = std::find_if(std::begin(policynames::timers), std::end(policynames::timers), [&request](const policynames::Timer &one) {
        return request.timer == QLatin1String(one.name);
    });
    return found == std::end(policynames::timers) ? QString() : QString::fromLatin1(found->purpose);
}

QString ScenarioWriter::beginning()
{
    return QStringLiteral("The log begins");
}

void ScenarioWriter::request(const LoggedRequest &request)
{
    begin(request);
    ++m_requests;
    m_hasMadeLast = true;
    if (request.first().id() == Id::ManagerStarts)
        startManager(request);
    else if (m_times.isAwaited(request))
        await(request, m_times.next(request), purposeOf(request));
    else if (request.first().id() != Id::DeMute || !awaitsUnmute(request))
        make(request);
    m_script.learn(request);
}

void ScenarioWriter::begin(const LoggedRequest &request)
{
    if (std::exchange(m_hasBegun, true))
        return;
    if (isForPeople())
        writeHead(request);
    const bool isStart = request.first().id() == Id::ManagerStarts;
    if (isStart && m_goesOn) {
        m_isLargeHome = false;
    } else if (isStart) {
        StoredSettings stored = m_stored.value_or(StoredSettings::ofStart(request));
        stored.setLargeHome(StoredSettings::ofStart(request).isLargeHome());
        writeSettings(stored);
    } else if (isOfManager(request.first())) {
        if (m_stored)
            writeSettings(*m_stored);
        comment(QStringLiteral("The log begins while the audio is on: how it came there is not in the log."));
        write(QStringLiteral("powerOn();"));
        write(QStringLiteral("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);"));
        write(QStringLiteral("wait(%1);").arg(settlingTime));
        write(QStringLiteral("Platform.clearJournal();"));
        m_isOn = true;
        m_times = ReplayTimes(settlingTime);
        m_waited = settlingTime;
    }
    if (!isForPeople())
        write(QStringLiteral("say(%1);").arg(simulator::quotedText(beginning())));
    const QStringList notes = std::exchange(m_notes, {});
    for (const QString &note : notes)
        comment(note);
}

void ScenarioWriter::writeHead(const LoggedRequest &request)
{
    const QString moment = LogTime::toText(request.moment);
    comment(QStringLiteral("What a unit did, from its log %1.").arg(m_log));
    comment({});
    comment(QStringLiteral("Each request is made when the log has it, counted from the library's first line%1.")
                .arg(moment.isEmpty() ? QString() : QStringLiteral(", %1").arg(moment)));
    comment(QStringLiteral("Timers run by themselves. What the log does not say is marked \"not in the log\"."));
    comment(QStringLiteral("What the unit's platform refused is ordered with Platform.failOnce(); without these lines"));
    comment(QStringLiteral("the scenario shows where a platform that takes all has something else."));
}

/// On a unit that is on for that alone.
void ScenarioWriter::writeSettings(const StoredSettings &stored)
{
    const QStringList statements = stored.statements();
    if (!statements.isEmpty()) {
        write({});
        comment(QStringLiteral("What is stored when the log begins."));
        write(QStringLiteral("powerOn();"));
        for (const QString &statement : statements)
            write(statement);
        write(QStringLiteral("powerOff();"));
        if (isForPeople())
            comment(QStringLiteral("Another master step, so that the start sends the master volume as a process does that is new."));
        write(QStringLiteral("AudioControl.setMasterStepVolume(24);"));
        write(QStringLiteral("Platform.reset();"));
    }
    m_isLargeHome = stored.isLargeHome();
    if (m_isLargeHome)
        write(QStringLiteral("Platform.setHomeUiType(7);"));
}

void ScenarioWriter::startManager(const LoggedRequest &request)
{
    flushStep();
    endMute({});
    if (m_isOn)
        write(QStringLiteral("powerOff();"));
    waitUntil(m_times.next(request), false, LogTime::toText(request.moment));
    const bool isLarge = hasLine(request, Id::StoreLargeHomeUi);
    if (isLarge != std::exchange(m_isLargeHome, isLarge))
        write(QStringLiteral("Platform.setHomeUiType(%1);").arg(isLarge ? 7 : 0));
    m_stepLines.append(QStringLiteral("powerOn();"));
    m_isOn = true;
    addStep(request);
}

/// A timer runs out. Others that do at the same time are of the same step, since one wait lets all of them.
void ScenarioWriter::await(const LoggedRequest &request, qint64 time, const QString &purpose)
{
    if (!m_stepIsTimer || time > m_waited) {
        flushStep();
        m_stepIsTimer = true;
        m_stepLines.append(QStringLiteral("wait(%1);").arg(qMax<qint64>(0, time - m_waited)));
        m_waited = qMax(m_waited, time);
    }
    if (isForPeople()) {
        const QString moment = LogTime::toText(request.moment);
        m_stepLines.last() += QStringLiteral(" // %1").arg(moment.isEmpty() ? purpose : moment + QLatin1String(": ") + purpose);
    }
    addStep(request);
}

/// Whether it was the end of a timed mute; then its count is known.
bool ScenarioWriter::awaitsUnmute(const LoggedRequest &request)
{
    if (!m_mute)
        return false;
    // A log need not have times; then what was awaited meanwhile counts.
    const qint64 length = qMax(request.time() - m_mute->told, m_times.now() - m_mute->start);
    if (length % muteUnit > muteTolerance)
        return false;
    const qint64 count = length / muteUnit;
    const qint64 due = m_mute->start + count * muteUnit;
    m_times.advanceTo(due);
    resolveMute(count);
    await(request, due, QStringLiteral("unmute after the timed mute"));
    return true;
}

void ScenarioWriter::make(const LoggedRequest &request)
{
    flushStep();
    const RequestScript::Statements statements = m_script.of(request);
    const qint64 time = m_times.next(request);
    if (statements.lines.isEmpty()) {
        m_hasMadeLast = false;
        if (!request.calls.isEmpty()) {
            ++m_incomplete;
            comment(QStringLiteral("%1, line %2, not in the log: how it was made").arg(statements.remark).arg(request.lines.constFirst().number));
        } else if (!statements.remark.isEmpty()) {
            comment(statements.remark);
        }
        return;
    }
    waitUntil(time, false, LogTime::toText(request.moment));
    if (!m_isOn && isOfManager(request.first())) {
        comment(QStringLiteral("Not in the log: the start of the audio."));
        write(QStringLiteral("powerOn();"));
        m_isOn = true;
    }
    const bool beginsMute = request.first().id() == Id::SetAudioMute && statements.lines.constLast().contains(RequestScript::muteCount());
    if (beginsMute)
        endMute({});
    m_stepLines = statements.lines;
    if (!statements.remark.isEmpty()) {
        ++m_incomplete;
        m_stepLines.last() += QStringLiteral(" // not in the log: ") + statements.remark;
    }
    addStep(request);
    if (!beginsMute)
        return;
    // Its line waits, and whatever comes behind it.
    m_mute = TimedMute{time, request.time(), 0};
    flushStep();
    const auto line = std::find_if(m_waiting.cbegin(), m_waiting.cend(), [](const QString &one) { return one.contains(RequestScript::muteCount()); });
    m_mute->line = int(line - m_waiting.cbegin());
}

void ScenarioWriter::addStep(const LoggedRequest &request)
{
    if (!isForPeople())
        return;
    m_step.add(request.calls);
    for (const LoggedRequest::Event &event : request.events) {
        if (event.line != LoggedRequest::none)
            comment(QStringLiteral("line %1: %2").arg(request.lines.at(event.line).number).arg(request.lines.at(event.line).text));
    }
}

void ScenarioWriter::flushStep()
{
    const ScenarioStep step = std::exchange(m_step, {});
    const QStringList lines = std::exchange(m_stepLines, {});
    const QStringList faults = step.faults();
    for (const QString &line : faults)
        write(line);
    for (const QString &line : lines)
        write(line);
    const QStringList expectations = step.expectations();
    for (const QString &line : expectations)
        write(RequestScript::harmless(line));
    m_stepIsTimer = false;
}

/// Before a request.
void ScenarioWriter::waitUntil(qint64 time, bool isTimer, const QString &remark)
{
    if (time > m_waited || isTimer)
        write(QStringLiteral("wait(%1);").arg(time - m_waited) + (isForPeople() && !remark.isEmpty() ? QStringLiteral(" // ") + remark : QString()));
    m_waited = qMax(m_waited, time);
    const QStringList headings = std::exchange(m_headings, {});
    for (const QString &text : headings) {
        write({});
        write(QStringLiteral("say(%1);").arg(RequestScript::harmless(simulator::quotedText(text))));
    }
}

void ScenarioWriter::resolveMute(qint64 count, const QString &remark)
{
    if (!m_mute)
        return;
    const int line = m_mute->line;
    m_mute.reset();
    QStringList lines = std::exchange(m_waiting, {});
    lines[line].replace(RequestScript::muteCount(), QString::number(count));
    if (!remark.isEmpty() && isForPeople())
        lines[line] += QStringLiteral(" // not in the log: ") + remark;
    for (const QString &each : qAsConst(lines))
        writeNow(each);
}

/// Something ends the timed mute's timer before it runs out.
void ScenarioWriter::endMute(const QString &remark)
{
    if (m_mute)
        resolveMute((m_times.now() - m_mute->start) / muteUnit + 1, remark);
}

void ScenarioWriter::note(qint64 /*time*/, quint64 line, const QString &text)
{
    const QString whole = line == 0 ? text : QStringLiteral("line %1: %2").arg(line).arg(text);
    if (!isForPeople())
        return;
    if (m_hasBegun) {
        flushStep();
        comment(whole);
    } else if (m_notes.size() < mostNotes) {
        m_notes.append(whole);
    }
}

void ScenarioWriter::heading(qint64 /*time*/, quint64 /*line*/, const QString &text)
{
    if (isForPeople())
        m_headings.append(text);
}

void ScenarioWriter::reboot()
{
    flushStep();
    endMute({});
    if (m_isOn)
        write(QStringLiteral("powerOff();"));
    m_isOn = false;
    write(QStringLiteral("Platform.reset();"));
}

void ScenarioWriter::finish()
{
    flushStep();
    endMute(QStringLiteral("the count, the log ends before the mute"));
}

void ScenarioWriter::comment(const QString &text)
{
    if (isForPeople())
        write(text.isEmpty() ? QStringLiteral("//") : QStringLiteral("// ") + RequestScript::harmless(text));
}

void ScenarioWriter::write(const QString &line)
{
    if (!m_mute) {
        writeNow(line);
        return;
    }
    m_waiting.append(line);
    if (m_waiting.size() > mostWaiting)
        resolveMute(endlessCount, QStringLiteral("the count, it is a long one"));
}

void ScenarioWriter::writeNow(const QString &line)
{
    m_output(line.toUtf8() + '\n');
}
