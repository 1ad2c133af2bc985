#include "logsummary.h"

#include "console.h"
#include "policytext.h"

#include "objectkind.h"
#include "policynames.h"

#include <algorithm>
#include <iterator>

using LogLines::Id;

namespace
{

/// More than a unit has. The others are not listed.
constexpr int mostFocusClients = 256;

/// Operations that store what they were given.
constexpr Id savers[] = {
    Id::SaveVolume,
    Id::SetMicInputValue,
    Id::SetLoudNess,
    Id::SetEqType,
    Id::StoreSetCustomEq,
    Id::StoreSetAutoMicGain,
    Id::StoreSetHandsfreeDelay,
    Id::SetMicLeftRightSwitch,
};

QString durationText(qint64 milliseconds)
{
    constexpr qint64 second = 1000;
    constexpr qint64 minute = 60;
    const qint64 seconds = milliseconds / second;
    return QStringLiteral("%1:%2:%3.%4")
        .arg(seconds / minute / minute)
        .arg(seconds / minute % minute, 2, 10, QLatin1Char('0'))
        .arg(seconds % minute, 2, 10, QLatin1Char('0'))
        .arg(milliseconds % second, 3, 10, QLatin1Char('0'));
}

QString timesText(int count)
{
    return count == 1 ? QStringLiteral("once") : QStringLiteral("%1 times").arg(count);
}

QString typeText(int type)
{
    return type >= 0 && std::size_t(type) < std::size(policynames::volumeTypes) ? QString::fromLatin1(policynames::volumeTypes[type].name)
                                                                                : QString::number(type);
}

QString row(const QString &name, const QString &text)
{
    constexpr int width = 26;
    return QStringLiteral("  ") + name.leftJustified(width) + QLatin1Char(' ') + text + QLatin1Char('\n');
}

} // namespace

void LogSummary::Range::add(int value)
{
    least = count > 0 ? std::min(least, value) : value;
    most = count > 0 ? std::max(most, value) : value;
    last = value;
    ++count;
}

LogSummary::LogSummary(const LogClock &clock, const LogFilter::Wanted &wanted)
    : m_clock(clock)
    , m_wanted(wanted)
{
}

void LogSummary::note(qint64 time, quint64 /*line*/, const QString & /*text*/)
{
    m_now = std::max(m_now, time);
}

void LogSummary::heading(qint64 time, quint64 /*line*/, const QString & /*text*/)
{
    m_now = std::max(m_now, time);
}

void LogSummary::reboot()
{
}

void LogSummary::request(const LoggedRequest &request)
{
    m_now = std::max(m_now, request.calls.isEmpty() ? request.time() : request.calls.constLast().time);
    if (!m_wanted.isInTime(request.time(), m_clock))
        return;
    ++m_requests;
    for (const LoggedRequest::Line &line : request.lines)
        addLine(line);
    for (const LoggedCall &call : request.calls) {
        if (call.isRefused())
            ++m_refusals[simulator::objectKindName(call.kind) + QLatin1Char('.') + call.operation][call.result];
    }
    if (request.statusAfter != m_status)
        holdStatus(request.statusAfter, request.time());
}

void LogSummary::focus(const FocusChange &change)
{
    m_now = std::max(m_now, change.time);
    if (!m_wanted.isInTime(change.time, m_clock))
        return;
    if (change.kind == FocusChange::Kind::InTheEnd && m_focusInTheEnd.size() < mostFocusClients)
        m_focusInTheEnd.append(change.text);
    const bool isCounted = change.kind == FocusChange::Kind::Lost || change.kind == FocusChange::Kind::Regained;
    if (!isCounted || (!m_focus.contains(change.client) && m_focus.size() >= mostFocusClients))
        return;
    Focus &focus = m_focus[change.client];
    ++(change.kind == FocusChange::Kind::Lost ? focus.losses : focus.returns);
}

void LogSummary::addLine(const LoggedRequest::Line &line)
{
    const LogLine &said = line.line;
    switch (said.id()) {
    case Id::ManagerStarts:
        ++m_starts;
        break;
    case Id::SetVolume:
        m_volumes[said.number(0)].add(said.number(1));
        m_saves += said.isTrue(2) ? 1 : 0;
        break;
    case Id::UpdateCurrentAudioVolume:
        ++(said.isTrue(0) ? m_keysUp : m_keysDown);
        break;
    case Id::StoreFileMissing:
    case Id::StoreSaveComplaint:
        ++m_blockedSaves;
        break;
    default:
        m_saves += int(std::count(std::begin(savers), std::end(savers), said.id()));
        break;
    }
}

void LogSummary::holdStatus(int status, qint64 time)
{
    if (m_status != LoggedRequest::none)
        m_statuses[m_status] += time - m_statusSince;
    m_status = status;
    m_statusSince = time;
}

void LogSummary::finish()
{
    holdStatus(m_status, m_now);
}

QString LogSummary::toText() const
{
    QString text = QStringLiteral("Requests and timers\n") + row(QStringLiteral("in all"), QString::number(m_requests))
        + row(QStringLiteral("starts of the audio"), QString::number(m_starts));
    text += QStringLiteral("Volumes set\n");
    for (auto volume = m_volumes.cbegin(); volume != m_volumes.cend(); ++volume) {
        text += row(typeText(volume.key()),
                    QStringLiteral("%1 to %2, in the end %3; set %4").arg(volume->least).arg(volume->most).arg(volume->last).arg(timesText(volume->count)));
    }
    text += QStringLiteral("Volume keys\n") + row(QStringLiteral("up"), QString::number(m_keysUp)) + row(QStringLiteral("down"), QString::number(m_keysDown));
    text += QStringLiteral("Time in each status\n");
    for (auto status = m_statuses.cbegin(); status != m_statuses.cend(); ++status)
        text += row(statusText(status.key()), durationText(status.value()));
    text += QStringLiteral("Saves\n") + row(QStringLiteral("asked for"), QString::number(m_saves))
        + row(QStringLiteral("with a complaint"), QString::number(m_blockedSaves));
    if (!m_focus.isEmpty() || !m_focusInTheEnd.isEmpty())
        text += QStringLiteral("Focus\n");
    for (auto client = m_focus.cbegin(); client != m_focus.cend(); ++client)
        text += row(QLatin1Char('"') + Console::printable(client.key()) + QLatin1Char('"'),
                    QStringLiteral("lost %1, had again %2").arg(timesText(client->losses), timesText(client->returns)));
    for (const QString &end : m_focusInTheEnd)
        text += QStringLiteral("  %1\n").arg(Console::printable(end));
    text += QStringLiteral("Refused by the platform\n");
    for (auto operation = m_refusals.cbegin(); operation != m_refusals.cend(); ++operation) {
        for (auto code = operation->cbegin(); code != operation->cend(); ++code)
            text += row(operation.key(), QStringLiteral("%1 with %2").arg(timesText(code.value())).arg(code.key()));
    }
    if (m_refusals.isEmpty())
        text += QStringLiteral("  nothing\n");
    return text;
}
