#ifndef CARNEWS_H
#define CARNEWS_H

#include <QtCore/QObject>
#include <QtCore/QVariantList>

class Timeline;
struct TimelineEvent;

namespace simulator
{
struct JournalEntry;
}

/// What has happened in the car since the window was told last: rows of the platform's journal, and entries of the timeline.
class CarNews : public QObject
{
    Q_OBJECT

public:
    /// @param followed is told of each platform call before this is
    explicit CarNews(const Timeline &followed);

    bool isEmpty() const { return m_rows.isEmpty() && m_entries.isEmpty(); }
    /// {time, object, operation, call, cause, note, refused}
    QVariantList takeRows();
    /// {time, kind, text, result, cause, calls, passed}
    QVariantList takeEntries();

private:
    Q_DISABLE_COPY(CarNews)

    void addRow(const simulator::JournalEntry &entry);
    void addEntry(const TimelineEvent &event, const QString &cause);

    const Timeline &m_timeline;
    QVariantList m_rows;
    QVariantList m_entries;
};

#endif
