#ifndef PRIVATEBUS_H
#define PRIVATEBUS_H

#include "mortalprocess.h"

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>
#include <QtDBus/QDBusConnection>

/**
 * A dbus-daemon of the test's own, with its own address and its own rules, which dies with the test.
 */
class PrivateBus
{
public:
    struct SystemBus
    {
    };

    /**
     * As a user's session has one: everything is allowed.
     *
     * @param activationFile the text of a ".service" file for the bus to start a service with, or empty
     */
    explicit PrivateBus(const QString &activationFile = QString());
    /**
     * As the system has one: nobody may own a name or call a service, but for what the policy file allows.
     *
     * @param policyFile the text of a file as it stands in "system.d"
     */
    PrivateBus(SystemBus, const QString &policyFile);
    ~PrivateBus();

    /// Empty when the daemon did not start in time.
    QString address() const { return m_address; }
    /// A new connection, with a unique name of its own; closed with the bus or by disconnect().
    QDBusConnection connect();
    /**
     * The same as another user, which a test may do that root runs.
     *
     * A system bus lets everybody in; a session's lets in its own user only.
     */
    QDBusConnection connectAs(uint user);
    void disconnect(const QDBusConnection &connection);
    pid_t processId() const { return static_cast<pid_t>(m_daemon.processId()); }
    /// Ends the daemon.
    bool stop() { return m_daemon.stop(); }

private:
    Q_DISABLE_COPY(PrivateBus)

    void start(const QString &type, const QString &rules);

    QTemporaryDir m_folder;
    MortalProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

#endif
