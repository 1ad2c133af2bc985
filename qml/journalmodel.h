#ifndef JOURNALMODEL_H
#define JOURNALMODEL_H

#include <QtCore/QAbstractListModel>
#include <QtCore/QMetaObject>
#include <QtCore/QString>
#include <QtCore/QVariantList>

#include <deque>
#include <vector>

namespace simulator
{
struct JournalEntry;
} // namespace simulator

/**
 * The calls that reached a platform, for lists: the latest of them, and of these the ones that a filter lets through.
 *
 * Roles: time (ms), object ("Volume#3"), operation ("Volume.setTrackVolume"), call (the whole line, without the object's number), cause (the
 * request or timer that it came from; empty where nobody says), note (why it was refused, or that a fault was injected), refused.
 *
 * It follows the simulated platform of this process, or is given rows by whoever shows another one. New rows cost the same however many
 * there are. After a change of the filter the latest rows are there at once, the older ones of a long drive come in the next turns of the
 * event loop. Use it from the thread that calls the platform.
 */
class JournalModel : public QAbstractListModel
{
    Q_OBJECT
    /// Whether it follows the journal of this process: all that it has, and what comes. Rows that were given are gone then.
    Q_PROPERTY(bool live READ isLive WRITE setLive NOTIFY liveChanged)
    /// The most rows that are kept, shown or not. The oldest go.
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY limitChanged)
    /// Only rows with this text in object, call, cause or note are shown; capitals count as small letters. Empty: all.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    /// Only rows of calls that were refused, or that a fault made fail, are shown.
    Q_PROPERTY(bool refusedOnly READ isRefusedOnly WRITE setRefusedOnly NOTIFY refusedOnlyChanged)
    /// Only rows of this operation are shown: "Volume.setTrackVolume". Empty: all.
    Q_PROPERTY(QString operation READ operation WRITE setOperation NOTIFY operationChanged)
    /// Rows that are shown.
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /// Rows that are kept.
    Q_PROPERTY(int total READ total NOTIFY totalChanged)

public:
    enum Role {
        TimeRole = Qt::UserRole,
        ObjectRole,
        OperationRole,
        CallRole,
        CauseRole,
        NoteRole,
        RefusedRole,
    };

    explicit JournalModel(QObject *parent = nullptr);
    ~JournalModel() override;

    bool isLive() const { return m_live; }
    void setLive(bool live);
    int limit() const { return m_limit; }
    void setLimit(int limit);
    QString text() const { return m_text; }
    void setText(const QString &text);
    bool isRefusedOnly() const { return m_refusedOnly; }
    void setRefusedOnly(bool refusedOnly);
    QString operation() const { return m_operation; }
    void setOperation(const QString &operation);
    int count() const { return int(m_shown.size()); }
    int total() const { return int(m_rows.size()); }

    /// Adds rows at the end: maps with the roles' names.
    Q_INVOKABLE void append(const QVariantList &rows);
    /// Forgets all rows.
    Q_INVOKABLE void clear();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void liveChanged();
    void limitChanged();
    void textChanged();
    void refusedOnlyChanged();
    void operationChanged();
    void countChanged();
    void totalChanged();

private:
    Q_DISABLE_COPY(JournalModel)

    struct Row
    {
        qint64 time;
        QString object;
        QString operation;
        QString call;
        QString cause;
        QString note;
        bool isRefused;
    };

    static Row rowOf(const simulator::JournalEntry &entry);
    bool isShown(const Row &row) const;
    const Row &shownRow(int index) const;
    void add(std::vector<Row> &&rows);
    void dropOldest(int count);
    void load();
    void filter();
    void filterOn();
    std::deque<quint64> takeUnfiltered();
    void goOnLater();

    std::deque<Row> m_rows;
    std::deque<quint64> m_shown; // numbers of rows, ascending
    quint64 m_firstNumber = 0; // of m_rows
    quint64 m_firstFiltered = 0; // row from which on m_shown says which are shown
    bool m_isFilterOnPosted = false;
    bool m_live = false;
    int m_limit = 100000;
    QString m_text;
    bool m_refusedOnly = false;
    QString m_operation;
    QMetaObject::Connection m_appended;
    QMetaObject::Connection m_cleared;
};

#endif
