#ifndef JOURNAL_H
#define JOURNAL_H

#include "journalentry.h"

#include <QtCore/QObject>
#include <QtCore/QVector>

namespace simulator
{

/**
 * Every call that reached the platform, in order.
 *
 * Form of a line, fixed, since tests compare it whole:
 *
 *     Volume#3.setTrackVolume("main", "S+FilePlayer", 80) -> 0
 *     Volume#3.getTrackVolume("main", "S+FilePlayer") -> 0, 80
 *     Volume#3.setFadeBalance({channel: 1, gain: 67}) -> 0
 *     Source#1.getActiveSource("main") -> "S+FilePlayer"
 *     Volume#4.create() -> ok
 *     Volume.create() -> null
 *     Volume#4.destroy()
 *
 * - Arguments in the order of the signature. Pointers to results are left out; what was written through them follows the code
 *   after a comma: on success, and where a fault was ordered that comes after writing.
 * - Names in double quotes, a null name as null; true and false; integers in decimal.
 * - Floating-point numbers with the fewest digits that read back the same: 80, 4.8, -0.5, nan, inf.
 * - Records field by field in the order of their declaration, arrays in []. Reserved fields appear only where one is not 0, and
 *   the bands of the extended equalizer record after the last one that is not all 0 are left out.
 *
 * Threads: use it from the thread that calls the platform.
 */
class Journal : public QObject
{
    Q_OBJECT

public:
    enum class Lifetimes { Omit, Include };

    explicit Journal(QObject *parent = nullptr);

    QVector<JournalEntry> entries() const;

    /// Lines without object numbers; "create" and "destroy" only with Lifetimes::Include.
    QStringList calls(Lifetimes lifetimes = Lifetimes::Omit) const;

    /// The entries of one operation, named as in Faults ("Volume.setTrackVolume"); "Volume.create" and "Volume.destroy" too.
    QVector<JournalEntry> entriesOf(const QString &operation) const;

    /// For people: one line per entry with its time in ms, its object's number and its note.
    QString toText() const;

    int count() const;
    void clear();

    /// While false nothing is recorded or formatted. For benchmarks and long soaks; true until set.
    void setEnabled(bool enabled);
    bool isEnabled() const;

    /// For the simulator itself.
    void append(const JournalEntry &entry);

Q_SIGNALS:
    void appended(const simulator::JournalEntry &entry);
    void cleared();

private:
    QVector<JournalEntry> m_entries;
    bool m_enabled = true;
};

} // namespace simulator

#endif
