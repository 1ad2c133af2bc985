#include "privatebus.h"

#include <QtCore/QFile>

#include <unistd.h>

namespace
{

const char configuration[] = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>%2</type>
  <listen>unix:path=%1/bus</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%1</servicedir>
%3
</busconfig>
)";

/// As on every session bus: what an attack needs, too.
const char allowAll[] = R"(
  <limit name="max_incoming_bytes">1000000000</limit>
  <limit name="max_outgoing_bytes">1000000000</limit>
  <limit name="max_message_size">1000000000</limit>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>)";

/// As on every system bus.
const char allowLittle[] = R"(
  <policy context="default">
    <allow user="*"/>
    <deny own="*"/>
    <deny send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="method_call"/>
    <allow receive_type="method_return"/>
    <allow receive_type="error"/>
    <allow receive_type="signal"/>
    <allow send_destination="org.freedesktop.DBus" send_interface="org.freedesktop.DBus"/>
    <allow send_destination="org.freedesktop.DBus" send_interface="org.freedesktop.DBus.Introspectable"/>
  </policy>
  <include>policy.conf</include>)";

bool write(const QString &name, const QString &text)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0;
}

int connectionCount = 0;

} // namespace

PrivateBus::PrivateBus(const QString &activationFile)
{
    if (activationFile.isEmpty() || write(m_folder.filePath(QStringLiteral("test.service")), activationFile))
        start(QStringLiteral("session"), QLatin1String(allowAll));
}

PrivateBus::PrivateBus(SystemBus, const QString &policyFile)
{
    if (write(m_folder.filePath(QStringLiteral("policy.conf")), policyFile))
        start(QStringLiteral("system"), QLatin1String(allowLittle));
}

void PrivateBus::start(const QString &type, const QString &rules)
{
    // Others than the test's own user find the socket, too.
    QFile::setPermissions(m_folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther);
    const QString configurationFile = m_folder.filePath(QStringLiteral("bus.conf"));
    if (!write(configurationFile, QString::fromLatin1(configuration).arg(m_folder.path(), type, rules)))
        return;
    m_daemon.setProcessChannelMode(QProcess::SeparateChannels);
    m_daemon.setStandardErrorFile(QProcess::nullDevice()); // complains about limits that it may not raise
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--config-file=") + configurationFile, QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    m_address = m_daemon.readNextLine();
}

PrivateBus::~PrivateBus()
{
    for (const QString &name : qAsConst(m_connections))
        QDBusConnection::disconnectFromBus(name);
}

QDBusConnection PrivateBus::connect()
{
    m_connections.append(QStringLiteral("private bus %1").arg(++connectionCount));
    return QDBusConnection::connectToBus(m_address, m_connections.last());
}

QDBusConnection PrivateBus::connectAs(uint user)
{
    // The kernel tells the bus who connected: the effective user of that moment, which all threads share.
    const uid_t ownUser = ::geteuid();
    if (::seteuid(user) != 0)
        return QDBusConnection(QString());
    const QDBusConnection connection = connect();
    const bool isBack = ::seteuid(ownUser) == 0;
    return isBack ? connection : QDBusConnection(QString());
}

void PrivateBus::disconnect(const QDBusConnection &connection)
{
    m_connections.removeOne(connection.name());
    QDBusConnection::disconnectFromBus(connection.name());
}
