#ifndef CALLERS_H
#define CALLERS_H

#include <QtCore/QCache>
#include <QtCore/QString>
#include <QtDBus/QDBusConnection>

/**
 * Who is at the other end of a connection, as the bus knows it; each connection is asked for once.
 *
 * Threads: use the object from the thread that made it.
 */
class Callers
{
public:
    static constexpr uint unknownUser = ~0U; // which the kernel gives to nobody

    struct Credentials
    {
        uint user = unknownUser;
        uint process = 0; ///< 0: not known
    };

    explicit Callers(const QDBusConnection &bus)
        : m_bus(bus)
    {
    }

    /// @param connection its unique name. One that has left the bus, and any other text, is of the unknown user.
    Credentials credentials(const QString &connection);
    /// For people: the connection, the user's number and the process's.
    QString description(const QString &connection);

private:
    Q_DISABLE_COPY(Callers)

    QDBusConnection m_bus;
    // The bus never gives a unique name twice, so nothing here ever gets wrong. As many as may have clients, twice over.
    QCache<QString, Credentials> m_known{512};
};

#endif
