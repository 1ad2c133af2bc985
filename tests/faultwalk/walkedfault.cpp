#include "walkedfault.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

using simulator::JournalEntry;

namespace
{

constexpr int firstCode = 73; // none that the chip gives by itself

/// More often than an operation makes one call. A fault "from then on" is one for each call that may come.
constexpr int oftenEnough = 120;

struct WayInfo
{
    WalkedFault::Way way;
    const char *text;
    int callDuration;
};

constexpr WayInfo ways[] = {
    {WalkedFault::None, "nothing goes wrong", 0},
    {WalkedFault::RefusedOnce, "refused once", 0},
    {WalkedFault::RefusedFromThenOn, "refused from then on", 0},
    {WalkedFault::RefusedAfterWriting, "refused after writing", 0},
    {WalkedFault::NullOnce, "null once", 0},
    {WalkedFault::NullFromThenOn, "null from then on", 0},
    {WalkedFault::KeptNull, "kept object null", 0},
    {WalkedFault::Slow, "slow", 3},
    {WalkedFault::VerySlow, "very slow", 600},
};

} // namespace

QVector<WalkedFault> WalkedFault::all(const PlatformRun &run)
{
    QVector<WalkedFault> faults;
    QHash<QString, int> counts;
    QSet<QString> made;
    QStringList kept;
    for (const JournalEntry &entry : run.entries) {
        const QString name = nameOf(entry);
        const int occurrence = ++counts[name];
        const auto add = [&](Way added) { faults.append({added, name, occurrence, entry.call()}); };
        if (entry.isCreate()) {
            made.insert(entry.object());
            add(NullOnce);
            add(NullFromThenOn);
        } else if (!entry.isDestroy()) {
            add(RefusedOnce);
            add(RefusedFromThenOn);
            if (!entry.outputs.isEmpty())
                add(RefusedAfterWriting);
            if (!made.contains(entry.object()) && !kept.contains(objectKindName(entry.kind)))
                kept += objectKindName(entry.kind);
        }
    }
    for (const QString &kind : qAsConst(kept))
        faults.append({KeptNull, kind, 1, QString()});
    if (!run.entries.isEmpty()) {
        faults.append({Slow, QString(), 0, QString()});
        faults.append({VerySlow, QString(), 0, QString()});
    }
    return faults;
}

void WalkedFault::order(simulator::Faults &faults) const
{
    const int last = way == RefusedFromThenOn || way == NullFromThenOn ? occurrence + oftenEnough : occurrence;
    for (int n = occurrence; n <= last; ++n) {
        if (way == RefusedOnce || way == RefusedFromThenOn)
            faults.fail(call, code(n), n);
        else if (way == RefusedAfterWriting)
            faults.failAfterWriting(call, code(n), n);
        else if (way == NullOnce || way == NullFromThenOn)
            faults.failFactory(call.section(QLatin1Char('.'), 0, 0), n);
    }
}

int WalkedFault::callDuration() const
{
    return ways[way].callDuration;
}

bool WalkedFault::hits(const QString &name, int n) const
{
    const bool isOfTheCall = way != None && way != KeptNull && name == call;
    return isOfTheCall && (way == RefusedFromThenOn || way == NullFromThenOn ? n >= occurrence : n == occurrence);
}

int WalkedFault::code(int n) const
{
    return firstCode + n - occurrence;
}

QString WalkedFault::describe() const
{
    QString described = QLatin1String(ways[way].text);
    if (way == KeptNull)
        described += QLatin1String(": ") + call;
    else if (occurrence > 0)
        described = QStringLiteral("%1 (number %2 of its name) %3").arg(text).arg(occurrence).arg(described);
    return described;
}

int countFaults(const QStringList &journal)
{
    int count = journal.isEmpty() ? 0 : 2; // slow and very slow
    QSet<QString> kept;
    for (const QString &line : journal) { // [kept] Volume.setMasterVolume(100) -> 0
        const QString call = line.section(QLatin1String("] "), 1);
        if (call.contains(QLatin1String(".destroy()")))
            continue;
        count += 2;
        if (call.contains(QLatin1String(") -> 0, ")))
            count += 1;
        if (line.startsWith(QLatin1String("[kept] ")))
            kept.insert(call.section(QLatin1Char('.'), 0, 0));
    }
    return count + kept.size();
}
