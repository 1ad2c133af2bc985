#ifndef FOCUSSTACK_H
#define FOCUSSTACK_H

#include "focusinspector.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtQml/QQmlParserStatus>

/**
 * The stack of audio focus as a list, the client that holds focus first.
 *
 *     FocusStack { id: stack }
 *     ListView { model: stack; delegate: Text { text: model.clientId + " " + model.lossName } }
 *
 * It shows the stack of AudioManager::instance(), which it makes for that, and follows it: the stack is looked at before the thread's event
 * loop sleeps and after it woke, so that changes show which nobody is told of, too. With entries set it shows those.
 *
 * Use it from the thread that makes all requests: the stack itself knows no lock.
 */
class FocusStack : public QAbstractListModel, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(int count READ count NOTIFY entriesChanged)
    /// Maps of {clientId, streamType, hint, loss}, the bottom first, each client once. Set it to show another process's stack; undefined
    /// goes back to that of this process.
    Q_PROPERTY(QVariantList entries READ entries WRITE setEntries RESET resetEntries NOTIFY entriesChanged)

public:
    enum Role {
        ClientIdRole = Qt::UserRole,
        StreamTypeRole,
        HintRole, ///< 1 to 4
        HintNameRole, ///< "GainTransient", as scripts write it behind AudioFocus
        LossRole, ///< what the client was told last: 0 or a loss, -1 to -3
        LossNameRole, ///< "LossTransient"; "None" for 0
    };

    explicit FocusStack(QObject *parent = nullptr);

    int count() const { return m_stack.size(); }
    QVariantList entries() const { return entriesOf(m_stack); }
    /// A stack as entries has it.
    static QVariantList entriesOf(const FocusInspector::Stack &stack);
    void setEntries(const QVariantList &entries);
    void resetEntries();
    /// The bottom first, without dispatchers.
    const FocusInspector::Stack &stack() const { return m_stack; }

    /**
     * What a client's request would bring: {granted, told: [{clientId, change, changeName}, …]}, in the order in which they would be told.
     *
     * A hint beyond 1 to 4 is denied, and so is any while voice communication holds focus.
     */
    Q_INVOKABLE QVariantMap next(const QString &clientId, int hint);
    /// What a client's release would bring: {told: [{clientId, change, changeName}]}.
    Q_INVOKABLE QVariantMap afterRelease(const QString &clientId);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    void classBegin() override { }
    /// In QML the process's stack is followed from here on, unless entries were given.
    void componentComplete() override;

Q_SIGNALS:
    void entriesChanged();

private:
    Q_DISABLE_COPY(FocusStack)

    void look();
    void show(const FocusInspector::Stack &stack);

    FocusInspector::Stack m_stack;
    bool m_isGiven = false;
    bool m_isFollowing = false;
};

#endif
