#ifndef PLATFORMMODEL_H
#define PLATFORMMODEL_H

#include "journalmodel.h"
#include "roommodel.h"
#include "rowlistmodel.h"

#include <QtCore/QStringList>
#include <QtCore/QVariantList>

/// The platform of the car: its operations with the faults that were ordered, its books, the chip's state and the journal.
class PlatformModel : public RoomModel
{
    Q_OBJECT
    /// Rows {operation ("Volume.setTrackVolume"), calls, refused, writes (whether it can fail after writing), fault (how it fails, "" not)}.
    Q_PROPERTY(RowListModel *operations READ operations CONSTANT)
    /// What the list of operations to choose from shows: all, and each.
    Q_PROPERTY(QStringList operationNames READ operationNames CONSTANT)
    /// The faults that are ordered, in words.
    Q_PROPERTY(QStringList faults READ faults NOTIFY faultsChanged)
    /// Kinds of objects whose factory gives null.
    Q_PROPERTY(QStringList failingFactories READ failingFactories NOTIFY faultsChanged)
    /// ms that each call takes.
    Q_PROPERTY(int callDuration READ callDuration NOTIFY callDurationChanged)
    /// Rows {kind, alive, made}.
    Q_PROPERTY(QVariantList books READ books NOTIFY booksChanged)
    /// Objects that exist, oldest first.
    Q_PROPERTY(QStringList living READ living NOTIFY booksChanged)
    /// Double destroys and the like, in words.
    Q_PROPERTY(QStringList problems READ problems NOTIFY booksChanged)
    /// Rows {group, name, value, expectation (a line, or empty)}.
    Q_PROPERTY(RowListModel *state READ state CONSTANT)
    Q_PROPERTY(JournalModel *journal READ journal CONSTANT)

public:
    /// When a fault that is ordered comes.
    enum Occasion {
        Always,
        NextCall,
        AfterWriting, ///< always, with the work done and the outputs filled
    };
    Q_ENUM(Occasion)

    explicit PlatformModel(QObject *parent = nullptr);

    RowListModel *operations() { return &m_operations; }
    static QStringList operationNames();
    QStringList faults() const { return m_faults; }
    QStringList failingFactories() const;
    int callDuration() const { return m_callDuration; }
    QVariantList books() const { return m_books; }
    QStringList living() const { return m_living; }
    QStringList problems() const { return m_problems; }
    RowListModel *state() { return &m_state; }
    JournalModel *journal() { return &m_journal; }

    /// Orders a fault as a step.
    Q_INVOKABLE void fail(const QString &operation, int code, PlatformModel::Occasion occasion);
    Q_INVOKABLE void failFactory(const QString &kind);
    /// Takes one of the faults back, and leaves the others.
    Q_INVOKABLE void takeBack(int fault);
    /// Takes all faults of an operation, or of the factory "Volume.create", back.
    Q_INVOKABLE void takeBackAllOf(const QString &operation);
    Q_INVOKABLE void clearFaults();
    Q_INVOKABLE void setCallDuration(int milliseconds);

    /// Lines that expect what a table shows; empty where it shows too little of it.
    Q_INVOKABLE static QString expectationOfCall(const QString &operation, const QString &call, const QString &note);
    static QString expectationOfState(const QString &group, const QString &name, const QString &value);

Q_SIGNALS:
    void faultsChanged();
    void callDurationChanged();
    void booksChanged();

protected:
    void update(const QVariantMap &snapshot) override;

private:
    void follow();
    void showMissed();
    void perform(const QString &line);
    void replaceFaults(const QStringList &faults);
    void updateOperations(const QVariantMap &counts);

    RowListModel m_operations;
    RowListModel m_state;
    JournalModel m_journal;
    QVariantList m_missed; // rows of the journal that came while nobody looked
    QVariantMap m_given;
    QStringList m_faults;
    int m_callDuration = 0;
    QVariantList m_books;
    QStringList m_living;
    QStringList m_problems;
};

#endif
