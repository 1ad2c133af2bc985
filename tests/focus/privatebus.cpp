#include "privatebus.h"

#include <QtCore/QFile>

namespace
{

const char configuration[] = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1/bus</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%1</servicedir>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

bool write(const QString &name, const QString &text)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0;
}

int connectionCount = 0;

} // namespace

PrivateBus::PrivateBus(const QString &activationFile)
{
    const QString configurationFile = m_folder.filePath(QStringLiteral("bus.conf"));
    if (!write(configurationFile, QString::fromLatin1(configuration).arg(m_folder.path())))
        return;
    if (!activationFile.isEmpty() && !write(m_folder.filePath(QStringLiteral("test.service")), activationFile))
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

void PrivateBus::disconnect(const QDBusConnection &connection)
{
    m_connections.removeOne(connection.name());
    QDBusConnection::disconnectFromBus(connection.name());
}
