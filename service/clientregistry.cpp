#include "clientregistry.h"

ClientRegistry::Answer ClientRegistry::mayRequest(const QString &connection, const QString &clientId) const
{
    if (clientId.size() > maximumIdLength)
        return Answer::IdTooLong;
    const auto owner = m_owners.constFind(clientId);
    if (owner != m_owners.constEnd())
        return *owner == connection ? Answer::Yes : Answer::OfAnotherConnection;
    if (m_clients.value(connection).size() >= maximumClientsOfConnection)
        return Answer::TooManyOfConnection;
    const bool hasNoRoom = !hasConnection(connection) && isFull() && idleConnection().isEmpty();
    return hasNoRoom || m_owners.size() >= maximumClients ? Answer::TooMany : Answer::Yes;
}

ClientRegistry::Answer ClientRegistry::mayRemove(const QString &connection, const QString &clientId) const
{
    if (clientId.size() > maximumIdLength)
        return Answer::IdTooLong;
    const auto owner = m_owners.constFind(clientId);
    return owner == m_owners.constEnd() || *owner == connection ? Answer::Yes : Answer::OfAnotherConnection;
}

void ClientRegistry::add(const QString &connection, const QString &clientId)
{
    QStringList &clients = m_clients[connection];
    clients.removeOne(clientId);
    clients.append(clientId);
    m_owners.insert(clientId, connection);
}

void ClientRegistry::remove(const QString &clientId)
{
    const auto clients = m_clients.find(m_owners.take(clientId));
    if (clients != m_clients.end())
        clients->removeOne(clientId);
}

QStringList ClientRegistry::takeConnection(const QString &connection)
{
    QStringList clients = m_clients.take(connection);
    for (const QString &client : qAsConst(clients))
        m_owners.remove(client);
    return clients;
}

QString ClientRegistry::idleConnection() const
{
    for (auto connection = m_clients.cbegin(); connection != m_clients.cend(); ++connection) {
        if (connection->isEmpty())
            return connection.key();
    }
    return {};
}
