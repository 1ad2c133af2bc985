#include "journal.h"

namespace simulator
{

Journal::Journal(QObject *parent)
    : QObject(parent)
{
    qRegisterMetaType<JournalEntry>();
}

QVector<JournalEntry> Journal::entries() const
{
    return m_entries;
}

QStringList Journal::calls(Lifetimes lifetimes) const
{
    QStringList lines;
    for (const JournalEntry &entry : m_entries) {
        if (lifetimes == Lifetimes::Include || !(entry.isCreate() || entry.isDestroy()))
            lines += entry.call();
    }
    return lines;
}

QVector<JournalEntry> Journal::entriesOf(const QString &operation) const
{
    QVector<JournalEntry> found;
    for (const JournalEntry &entry : m_entries) {
        if (objectKindName(entry.kind) + QLatin1Char('.') + entry.operation == operation)
            found += entry;
    }
    return found;
}

QString Journal::toText() const
{
    QString text;
    for (const JournalEntry &entry : m_entries) {
        text += QString::number(entry.time).rightJustified(8) + QLatin1String(" ms  ") + entry.line();
        if (!entry.note.isEmpty())
            text += QLatin1String("  (") + entry.note + QLatin1Char(')');
        text += QLatin1Char('\n');
    }
    return text;
}

int Journal::count() const
{
    return m_entries.count();
}

void Journal::clear()
{
    if (m_entries.isEmpty())
        return;
    m_entries.clear();
    Q_EMIT cleared();
}

void Journal::setEnabled(bool enabled)
{
    m_enabled = enabled;
}

bool Journal::isEnabled() const
{
    return m_enabled;
}

void Journal::append(const JournalEntry &entry)
{
    if (!m_enabled)
        return;
    m_entries += entry;
    Q_EMIT appended(entry);
}

} // namespace simulator
