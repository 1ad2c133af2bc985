#ifndef CLIENTREGISTRY_H
#define CLIENTREGISTRY_H

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>

/**
 * Which bus connection which client in the focus stack belongs to, and how many there may be.
 *
 * The owner of a client id is the connection that requested with it first, until the client leaves the stack. Nothing here
 * grows beyond the limits, whatever the connections do.
 *
 * The limits are there twice, for the service's own user and for all others together, so that neither can shut the other out. Of
 * the others each has its share, and the last places are kept for those who have few: no user alone denies a place to another one.
 */
class ClientRegistry
{
public:
    static constexpr int maximumIdLength = 255; ///< characters (UTF-16 units)
    static constexpr int maximumClientsOfConnection = 16;
    static constexpr int maximumClients = 256;
    static constexpr int maximumConnections = 128;
    static constexpr int maximumClientsOfUser = 64;
    static constexpr int maximumConnectionsOfUser = 32;
    /// The last places, for users who have fewer than the next two.
    static constexpr int reservedClients = 64;
    static constexpr int reservedConnections = 32;
    static constexpr int fewClients = 4;
    static constexpr int fewConnections = 2;

    enum class Answer {
        Yes,
        IdTooLong,
        OfAnotherConnection,
        TooManyOfConnection,
        TooManyOfUser,
        TooMany,
    };

    /// A connection and the number of the user at its other end.
    struct Caller
    {
        QString connection;
        uint user;
    };

    explicit ClientRegistry(uint ownUser)
        : m_ownUser(ownUser)
    {
    }

    /// Whether the connection may put the client into the stack, or change its entry there.
    Answer mayRequest(const Caller &caller, const QString &clientId) const;
    /// Whether the connection may take the client out. Anybody may take out who is not in.
    Answer mayRemove(const QString &connection, const QString &clientId) const;

    /// The client is now on top of the stack. To be called after mayRequest() said yes.
    void add(const Caller &caller, const QString &clientId);
    /// The client has left the stack.
    void remove(const QString &clientId);
    /// Forgets a connection; gives its clients, those that asked last at the end.
    QStringList takeConnection(const QString &connection);

    /// The connection that the client belongs to, or an empty text.
    QString owner(const QString &clientId) const { return m_owners.value(clientId); }
    bool hasConnection(const QString &connection) const { return m_connections.contains(connection); }
    /// Whether one more connection of this user can be known only in the place of an idle one.
    bool isFull(uint user) const;
    /// A connection without clients that could make room for one of this user, or an empty text. Known ones stay known until they
    /// are taken.
    QString idleConnection(uint user) const;

private:
    struct Connection
    {
        uint user = 0;
        QStringList clients; // in the order of their last request
    };
    struct Usage
    {
        int clients = 0;
        int connections = 0; // those with clients
    };

    bool sharesWith(uint user, uint other) const { return (user == m_ownUser) == (other == m_ownUser); }
    template<typename Condition>
    Usage usage(Condition isCounted) const;

    uint m_ownUser;
    QHash<QString, Connection> m_connections;
    QHash<QString, QString> m_owners; // client to connection
};

#endif
