#include "clientlist.h"

#include "focusinspector.h"

#include <QtCore/QStringList>
#include <QtCore/QVariantMap>

namespace
{

/// A client that is told of every prompt of a long drive would fill the room.
constexpr int longestStory = 12;

QString storyOf(const QVector<int> &changes)
{
    QStringList names;
    const QVector<int> latest = changes.mid(qMax(0, changes.size() - longestStory));
    for (const int change : latest)
        names.append(FocusInspector::changeName(change));
    if (changes.size() > longestStory)
        names.prepend(QStringLiteral("…"));
    return names.join(QStringLiteral(", "));
}

QString expectedHeld(const ClientList::Client &client)
{
    if (client.variable.isEmpty())
        return {};
    return QStringLiteral("expect(%1.held).toBe(%2);").arg(client.variable, client.isHeld ? QLatin1String("true") : QLatin1String("false"));
}

QString expectedChanges(const ClientList::Client &client)
{
    if (client.variable.isEmpty())
        return {};
    QStringList names;
    for (const int change : client.changes)
        names.append(FocusInspector::changeScript(change));
    return QStringLiteral("expect(%1.changes).toEqual([%2]);").arg(client.variable, names.join(QStringLiteral(", ")));
}

ClientList::Client clientOf(const QVariantMap &map)
{
    ClientList::Client client;
    client.clientId = map.value(QStringLiteral("clientId")).toString();
    client.hint = map.value(QStringLiteral("hint")).toInt();
    client.streamType = map.value(QStringLiteral("streamType")).toInt();
    client.isHeld = map.value(QStringLiteral("held")).toBool();
    client.variable = map.value(QStringLiteral("variable")).toString();
    const QVariantList changes = map.value(QStringLiteral("changes")).toList();
    for (const QVariant &change : changes)
        client.changes.append(change.toInt());
    return client;
}

} // namespace

bool ClientList::Client::operator==(const Client &other) const
{
    return clientId == other.clientId && hint == other.hint && streamType == other.streamType && isHeld == other.isHeld && changes == other.changes
        && variable == other.variable;
}

void ClientList::update(const QVariantList &clients)
{
    const int countBefore = count();
    // Clients are added at the end, and go from there when time goes back.
    if (clients.size() < countBefore) {
        beginRemoveRows({}, clients.size(), countBefore - 1);
        m_clients.resize(clients.size());
        endRemoveRows();
    }
    for (int row = 0; row < clients.size(); ++row) {
        const Client client = clientOf(clients.at(row).toMap());
        if (row >= count()) {
            beginInsertRows({}, row, row);
            m_clients.append(client);
            endInsertRows();
        } else if (!(client == m_clients.at(row))) {
            m_clients[row] = client;
            Q_EMIT dataChanged(index(row), index(row));
        }
    }
    if (count() != countBefore)
        Q_EMIT countChanged();
}

int ClientList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ClientList::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Client &client = m_clients.at(index.row());
    switch (role) {
    case ClientIdRole:
    case Qt::DisplayRole:
        return client.clientId;
    case HintRole:
        return client.hint;
    case StreamTypeRole:
        return client.streamType;
    case HeldRole:
        return client.isHeld;
    case ToldRole:
        return storyOf(client.changes);
    case ToldCountRole:
        return client.changes.size();
    case VariableRole:
        return client.variable;
    case ExpectedHeldRole:
        return expectedHeld(client);
    case ExpectedChangesRole:
        return expectedChanges(client);
    default:
        return {};
    }
}

QHash<int, QByteArray> ClientList::roleNames() const
{
    return {
        {ClientIdRole, "clientId"},
        {HintRole, "hint"},
        {StreamTypeRole, "streamType"},
        {HeldRole, "held"},
        {ToldRole, "told"},
        {ToldCountRole, "toldCount"},
        {VariableRole, "variable"},
        {ExpectedHeldRole, "expectedHeld"},
        {ExpectedChangesRole, "expectedChanges"},
    };
}
