#include "clientregistry.h"

#include <algorithm>

ClientRegistry::Answer ClientRegistry::mayRequest(const Caller &caller, const QString &clientId) const
{
    if (clientId.size() > maximumIdLength)
        return Answer::IdTooLong;
    const auto owner = m_owners.constFind(clientId);
    if (owner != m_owners.constEnd())
        return *owner == caller.connection ? Answer::Yes : Answer::OfAnotherConnection;
    const int clients = m_connections.value(caller.connection).clients.size();
    if (clients >= maximumClientsOfConnection)
        return Answer::TooManyOfConnection;

    Usage limit{maximumClients, maximumConnections};
    if (caller.user != m_ownUser) {
        const Usage own = usage([&caller](uint user) { return user == caller.user; });
        if (own.clients >= maximumClientsOfUser || (clients == 0 && own.connections >= maximumConnectionsOfUser))
            return Answer::TooManyOfUser;
        if (own.clients >= fewClients)
            limit.clients -= reservedClients;
        if (own.connections >= fewConnections)
            limit.connections -= reservedConnections;
    }
    const Usage together = usage([this, &caller](uint user) { return sharesWith(user, caller.user); });
    const bool hasRoom = together.clients < limit.clients && (clients > 0 || together.connections < limit.connections);
    return hasRoom ? Answer::Yes : Answer::TooMany;
}

ClientRegistry::Answer ClientRegistry::mayRemove(const QString &connection, const QString &clientId) const
{
    if (clientId.size() > maximumIdLength)
        return Answer::IdTooLong;
    const auto owner = m_owners.constFind(clientId);
    return owner == m_owners.constEnd() || *owner == connection ? Answer::Yes : Answer::OfAnotherConnection;
}

void ClientRegistry::add(const Caller &caller, const QString &clientId)
{
    Connection &connection = m_connections[caller.connection];
    connection.user = caller.user;
    connection.clients.removeOne(clientId);
    connection.clients.append(clientId);
    m_owners.insert(clientId, caller.connection);
}

void ClientRegistry::remove(const QString &clientId)
{
    const auto connection = m_connections.find(m_owners.take(clientId));
    if (connection != m_connections.end())
        connection->clients.removeOne(clientId);
}

QStringList ClientRegistry::takeConnection(const QString &connection)
{
    QStringList clients = m_connections.take(connection).clients;
    for (const QString &client : qAsConst(clients))
        m_owners.remove(client);
    return clients;
}

bool ClientRegistry::isFull(uint user) const
{
    const auto isCounted = [this, user](const Connection &connection) { return sharesWith(connection.user, user); };
    return std::count_if(m_connections.cbegin(), m_connections.cend(), isCounted) >= maximumConnections;
}

QString ClientRegistry::idleConnection(uint user) const
{
    for (auto connection = m_connections.cbegin(); connection != m_connections.cend(); ++connection) {
        if (connection->clients.isEmpty() && sharesWith(connection->user, user))
            return connection.key();
    }
    return {};
}

template<typename Condition>
ClientRegistry::Usage ClientRegistry::usage(Condition isCounted) const
{
    Usage usage;
    for (const Connection &connection : m_connections) {
        if (connection.clients.isEmpty() || !isCounted(connection.user))
            continue;
        usage.clients += connection.clients.size();
        ++usage.connections;
    }
    return usage;
}
