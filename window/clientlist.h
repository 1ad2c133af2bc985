#ifndef CLIENTLIST_H
#define CLIENTLIST_H

#include <QtCore/QAbstractListModel>
#include <QtCore/QString>
#include <QtCore/QVariantList>
#include <QtCore/QVector>

/// The clients of audio focus that steps have made, in the order in which they were.
class ClientList : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        ClientIdRole = Qt::UserRole,
        HintRole, ///< of the next request, 1 to 4
        StreamTypeRole,
        HeldRole, ///< whether it has focus, as far as it was told
        ToldRole, ///< what it was told so far, the last at the end: "Loss, Gain"
        ToldCountRole,
        VariableRole, ///< its name in scenarios; empty where it is not known
        ExpectedHeldRole, ///< a line that states what is shown; empty without a variable
        ExpectedChangesRole,
    };

    struct Client
    {
        QString clientId;
        int hint = 1;
        int streamType = 3;
        bool isHeld = false;
        QVector<int> changes;
        QString variable;

        bool operator==(const Client &other) const;
    };

    using QAbstractListModel::QAbstractListModel;

    int count() const { return m_clients.size(); }
    const QVector<Client> &clients() const { return m_clients; }
    /// Maps of {clientId, hint, streamType, held, changes, variable}.
    void update(const QVariantList &clients);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    Q_DISABLE_COPY(ClientList)

    QVector<Client> m_clients;
};

#endif
