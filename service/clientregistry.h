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
 */
class ClientRegistry
{
public:
    static constexpr int maximumIdLength = 255; ///< characters (UTF-16 units)
    static constexpr int maximumClientsOfConnection = 16;
    static constexpr int maximumClients = 256;
    static constexpr int maximumConnections = 128;

    enum class Answer {
        Yes,
        IdTooLong,
        OfAnotherConnection,
        TooManyOfConnection,
        TooMany,
    };

    /// Whether the connection may put the client into the stack, or change its entry there.
    Answer mayRequest(const QString &connection, const QString &clientId) const;
    /// Whether the connection may take the client out. Anybody may take out who is not in.
    Answer mayRemove(const QString &connection, const QString &clientId) const;

    /// The client is now on top of the stack. To be called after mayRequest() said yes.
    void add(const QString &connection, const QString &clientId);
    /// The client has left the stack.
    void remove(const QString &clientId);
    /// Forgets a connection; gives its clients, those that asked last at the end.
    QStringList takeConnection(const QString &connection);

    bool hasConnection(const QString &connection) const { return m_clients.contains(connection); }
    bool isFull() const { return m_clients.size() >= maximumConnections; }
    /// A connection without clients, or an empty text. Known ones stay known until they are taken.
    QString idleConnection() const;

private:
    QHash<QString, QStringList> m_clients; // connection to its clients, in the order of their last request
    QHash<QString, QString> m_owners; // client to connection
};

#endif
