#include "carnews.h"

#include "calltext.h"
#include "timeline.h"

#include "platform.h"

#include <algorithm>
#include <utility>

using Kind = TimelineEvent::Kind;

namespace
{

QString kindText(Kind kind)
{
    switch (kind) {
    case Kind::Heading:
        return QStringLiteral("heading");
    case Kind::Request:
        return QStringLiteral("request");
    case Kind::Timer:
        return QStringLiteral("timer");
    case Kind::Status:
        return QStringLiteral("status");
    case Kind::Check:
        return QStringLiteral("check");
    case Kind::Note:
    case Kind::Call:
    case Kind::Log:
        break;
    }
    return QStringLiteral("note");
}

} // namespace

CarNews::CarNews(const Timeline &followed)
    : m_timeline(followed)
{
    connect(simulator::Platform::instance()->journal(), &simulator::Journal::appended, this, &CarNews::addRow);
    connect(&followed, &Timeline::happened, this, [this](const TimelineEvent &event) { addEntry(event, {}); });
}

QVariantList CarNews::takeRows()
{
    return std::exchange(m_rows, {});
}

QVariantList CarNews::takeEntries()
{
    return std::exchange(m_entries, {});
}

void CarNews::addRow(const simulator::JournalEntry &entry)
{
    const bool isRefused = !entry.note.isEmpty();
    m_rows.append(QVariantMap{
        {QStringLiteral("time"), m_timeline.now()},
        {QStringLiteral("object"), entry.object()},
        {QStringLiteral("operation"), QString(simulator::objectKindName(entry.kind) + QLatin1Char('.') + entry.operation)},
        {QStringLiteral("call"), callText(entry)},
        {QStringLiteral("cause"), m_timeline.cause()},
        {QStringLiteral("note"), entry.note},
        {QStringLiteral("refused"), isRefused},
    });
}

void CarNews::addEntry(const TimelineEvent &event, const QString &cause)
{
    // Calls are in the journal, log lines in the log.
    if (event.kind == Kind::Call || event.kind == Kind::Log)
        return;
    const auto calls = std::count_if(event.caused.cbegin(), event.caused.cend(), [](const TimelineEvent &caused) { return caused.kind == Kind::Call; });
    m_entries.append(QVariantMap{
        {QStringLiteral("time"), event.time},
        {QStringLiteral("kind"), kindText(event.kind)},
        {QStringLiteral("text"), event.text},
        {QStringLiteral("result"), event.kind == Kind::Check ? event.check.cause : event.result},
        {QStringLiteral("cause"), cause},
        {QStringLiteral("calls"), int(calls)},
        {QStringLiteral("passed"), event.kind != Kind::Check || event.check.passed},
    });
    for (const TimelineEvent &caused : event.caused)
        addEntry(caused, event.text);
}
