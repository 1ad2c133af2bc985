#ifndef CALLREADER_H
#define CALLREADER_H

#include <journalentry.h>
#include <valuetext.h>

#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <stdexcept>

namespace lives
{

/// What is not as it has to be.
class Discrepancy : public std::runtime_error
{
public:
    explicit Discrepancy(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }
};

[[noreturn]] void fail(const QString &text);

/**
 * Reads what reached the platform during an operation, call by call, against what a model expects.
 *
 * The platform's answers are taken from the journal: what it does is not in question, and a fault that was ordered needs no model.
 */
class CallReader
{
public:
    struct TrackVolume
    {
        QString track;
        QString source;
        int volume;
        bool isAccepted;
    };

    /// Takes the journal's entries and clears it.
    void begin();
    /// Throws where calls are left that nothing expected.
    void end() const;

    const simulator::JournalEntry *peek(int further = 0) const;
    const simulator::JournalEntry &expect(simulator::ObjectKind kind, const char *operation, const QStringList &arguments);

    template<typename... Values>
    int call(simulator::ObjectKind kind, const char *operation, const Values &...values)
    {
        return expect(kind, operation, {text(values)...}).result.toInt();
    }
    template<typename Record>
    int callWithRecord(simulator::ObjectKind kind, const char *operation, const Record &record)
    {
        return expectRecord(kind, operation, simulator::recordBytes(record));
    }
    /// Whether the platform gave an object.
    bool create(simulator::ObjectKind kind);
    void destroy(simulator::ObjectKind kind);

    /// The volumes that this operation set, in order.
    const QVector<TrackVolume> &trackVolumes() const { return m_trackVolumes; }
    bool isAlternativeSet() const { return m_isAlternativeSet; }
    /// The platform gave none where one was asked for: what was to be set with it is not.
    bool isObjectMissing() const { return m_isObjectMissing; }
    /// A mute or a ducking, or the object to do it with.
    bool isLoudnessRefused() const { return m_isLoudnessRefused; }

private:
    static QString text(const char *name) { return simulator::quotedText(QString::fromLatin1(name)); }
    template<typename Value>
    static QString text(const Value &value)
    {
        return simulator::valueText(value);
    }
    int expectRecord(simulator::ObjectKind kind, const char *operation, const QByteArray &record);
    const simulator::JournalEntry &next(const QString &expected);
    void note(const simulator::JournalEntry &entry);

    QVector<simulator::JournalEntry> m_entries;
    int m_place = 0;
    QVector<TrackVolume> m_trackVolumes;
    bool m_isLoudnessRefused = false;
    bool m_isAlternativeSet = false;
    bool m_isObjectMissing = false;
};

} // namespace lives

#endif
