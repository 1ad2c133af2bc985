#include "daemontest.h"

#include <program.h>

#include <QtTest/QtTest>

QString DaemonTest::settingsFile()
{
    return QStringLiteral("/media/flash/nvm/audioData.db");
}

void DaemonTest::init()
{
    bus = std::make_unique<PrivateBus>();
    QVERIFY2(!bus->address().isEmpty(), "dbus-daemon did not start");
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus->address().toLatin1());
    daemon = std::make_unique<MortalProcess>();
    QFile::remove(settingsFile());
}

void DaemonTest::cleanup()
{
    if (daemon && daemon->state() == QProcess::Running) {
        QVERIFY(daemon->stop());
        QCOMPARE(daemon->exitStatus(), QProcess::NormalExit);
        QCOMPARE(daemon->exitCode(), 0); // also what a sanitizer has to say
    }
    daemon.reset();
    bus.reset();
    qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

void DaemonTest::startSystemBus(uint user)
{
    QFile file(QStringLiteral(QZAUDIO_FOCUSD_POLICY));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString root = QStringLiteral("<policy user=\"root\">");
    QString policy = QString::fromUtf8(file.readAll());
    QCOMPARE(policy.count(root), 1);
    policy.replace(root, QStringLiteral("<policy user=\"%1\">").arg(user));

    bus = std::make_unique<PrivateBus>(PrivateBus::SystemBus(), policy);
    QVERIFY2(!bus->address().isEmpty(), "dbus-daemon did not start");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus->address().toLatin1());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
}

void DaemonTest::startDaemon(const QStringList &arguments)
{
    QVERIFY(daemon->startAndReadLine(QStringLiteral(QZAUDIO_FOCUSD), arguments).startsWith(QStringLiteral("serving ")));
}

int DaemonTest::runDaemon(const QStringList &arguments)
{
    daemon->setProcessChannelMode(QProcess::MergedChannels);
    daemon->startAndReadLine(QStringLiteral(QZAUDIO_FOCUSD), arguments);
    return waitForEnd();
}

int DaemonTest::waitForEnd()
{
    const bool hasEnded = QTest::qWaitFor([this] { return daemon->state() == QProcess::NotRunning; }, longestWait);
    return hasEnded && daemon->exitStatus() == QProcess::NormalExit ? daemon->exitCode() : -1;
}

qint64 DaemonTest::residentKilobytes() const
{
    QFile status(QStringLiteral("/proc/%1/status").arg(daemon->processId()));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).simplified().split(' ').first().toLongLong();
    }
    return -1;
}
