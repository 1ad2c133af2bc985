#include "callreader.h"

#include <platform.h>

namespace lives
{

using simulator::JournalEntry;
using simulator::ObjectKind;
using simulator::Platform;

void fail(const QString &text)
{
    throw Discrepancy(text);
}

void CallReader::begin()
{
    m_entries = Platform::instance()->journal()->entries();
    Platform::instance()->journal()->clear();
    m_place = 0;
    m_trackVolumes.clear();
    m_isLoudnessRefused = false;
    m_isAlternativeSet = false;
    m_isObjectMissing = false;
}

void CallReader::end() const
{
    if (const JournalEntry *const entry = peek())
        fail(QStringLiteral("nothing more was to reach the platform, and this did: ") + entry->call());
}

const JournalEntry *CallReader::peek(int further) const
{
    return m_place + further < m_entries.size() ? &m_entries.at(m_place + further) : nullptr;
}

const JournalEntry &CallReader::next(const QString &expected)
{
    if (!peek())
        fail(QStringLiteral("this was to reach the platform, and did not: ") + expected);
    const JournalEntry &entry = m_entries.at(m_place++);
    note(entry);
    return entry;
}

void CallReader::note(const JournalEntry &entry)
{
    if (entry.isDestroy())
        return;
    const bool isNull = entry.isCreate() && entry.number == 0;
    m_isObjectMissing = m_isObjectMissing || isNull;
    const bool isCode = entry.result.type() == QVariant::Int && entry.operation != QLatin1String("queryAlterNumber");
    const bool isAccepted = !isNull && (!isCode || entry.result.toInt() == 0);
    const bool isLoudness
        = isNull || entry.operation.contains(QLatin1String("mute"), Qt::CaseInsensitive) || entry.operation.startsWith(QLatin1String("setDucking"));
    m_isLoudnessRefused = m_isLoudnessRefused || (isLoudness && !isAccepted);
    m_isAlternativeSet = m_isAlternativeSet || (isAccepted && entry.operation == QLatin1String("setAlterTrackVolume"));
    if (entry.operation == QLatin1String("setTrackVolume"))
        m_trackVolumes.append({entry.arguments.at(0).toString(), entry.arguments.at(1).toString(), entry.arguments.at(2).toInt(), isAccepted});
}

const JournalEntry &CallReader::expect(ObjectKind kind, const char *operation, const QStringList &arguments)
{
    const auto expected = [&]() -> QString {
        return QString(simulator::objectKindName(kind)) + QLatin1Char('.') + QLatin1String(operation) + QLatin1Char('(') + arguments.join(QLatin1String(", "))
            + QLatin1Char(')');
    };
    if (!peek())
        fail(QStringLiteral("this was to reach the platform, and did not: ") + expected());
    const JournalEntry &entry = next({});
    if (entry.kind != kind || entry.operation != QLatin1String(operation) || entry.argumentTexts != arguments)
        fail(QStringLiteral("the platform was to get %1 and got %2").arg(expected(), entry.call()));
    return entry;
}

int CallReader::expectRecord(ObjectKind kind, const char *operation, const QByteArray &record)
{
    const JournalEntry &entry = next(QLatin1String(operation));
    if (entry.kind != kind || entry.operation != QLatin1String(operation) || entry.record != record)
        fail(QStringLiteral("the platform was to get %1 with another record, and got %2").arg(QLatin1String(operation), entry.call()));
    return entry.result.toInt();
}

bool CallReader::create(ObjectKind kind)
{
    const JournalEntry &entry = expect(kind, "create", {});
    return entry.number != 0;
}

void CallReader::destroy(ObjectKind kind)
{
    expect(kind, "destroy", {});
}

} // namespace lives
