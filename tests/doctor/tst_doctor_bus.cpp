#include "doctortest.h"

#include <mortalprocess.h>
#include <privatebus.h>

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtTest/QtTest>

#include <csignal>

namespace
{

constexpr int busStatus = 14;
const QString name = QStringLiteral("tavi.AudioService");

} // namespace

/// What the doctor says of the buses, and of the daemon on them.
class BusDoctorTest : public DoctorTest
{
    Q_OBJECT

private Q_SLOTS:
    void noBus_data();
    void noBus();
    void noDaemon();
    void startedByTheBus();
    void daemon_data();
    void daemon();
    void system();
    void policyThatLetsNobodyCall();
    void daemonThatHangs();
    void busThatHangs();

private:
    Unit unit(const PrivateBus &bus, const char *variable = "DBUS_SESSION_BUS_ADDRESS") const
    {
        return {withFlash(), {{QLatin1String(variable), bus.address()}}, false};
    }
    static QStringList impatient() { return {QStringLiteral("--patience"), QStringLiteral("1")}; }
    static Expected busIsWrong(const char *subject, const QString &text, const QJsonObject &facts = {})
    {
        return wrong(busStatus, "bus", subject, text, facts);
    }
};

void BusDoctorTest::noBus_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<Expected>("expected");
    const auto noted = [](const char *text) {
        Expected expected = note("bus", "bus", QLatin1String(text));
        expected.exitStatus = busStatus;
        return expected;
    };
    const QString nowhere = QStringLiteral("unix:path=/nowhere");
    QTest::newRow("nobody serves") << nowhere << busIsWrong("focus", QStringLiteral("no bus has a daemon for audio focus"));
    QTest::newRow("session") << nowhere << noted("session: there is none: Failed to connect to socket /nowhere");
    QTest::newRow("system") << nowhere << noted("system: there is none: Failed to connect to socket /nowhere");
    QTest::newRow("not named") << QString() << noted("session: there is none: DBUS_SESSION_BUS_ADDRESS names none");
    // Would be started where there is a display.
    QTest::newRow("to be started") << QStringLiteral("autolaunch:") << noted("session: there is none: DBUS_SESSION_BUS_ADDRESS names none");
}

void BusDoctorTest::noBus()
{
    QFETCH(QString, address);
    QFETCH(Expected, expected);
    finds({withFlash(), {{QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address}, {QStringLiteral("XDG_RUNTIME_DIR"), folder()}}, false}, {}, expected);
}

void BusDoctorTest::noDaemon()
{
    const PrivateBus bus;
    Expected expected = note("bus", "service", QStringLiteral("session: nobody has the name tavi.AudioService, and the bus cannot start a daemon"));
    expected.exitStatus = busStatus;
    finds(unit(bus), {}, expected);
}

void BusDoctorTest::startedByTheBus()
{
    const QString started = pathOf(QStringLiteral("started"));
    PrivateBus bus(QStringLiteral("[D-BUS Service]\nName=tavi.AudioService\nExec=/usr/bin/touch \"%1\"\n").arg(started));
    finds(unit(bus),
          {},
          good("bus", "service", QStringLiteral("the first call makes the bus start the daemon"), {{QStringLiteral("bus"), QStringLiteral("session")}}));
    QVERIFY2(!QFile::exists(started), "the doctor made the bus start the daemon");
    // That it would have been seen.
    QDBusConnection connection = bus.connect();
    connection.send(QDBusMessage::createMethodCall(name, QStringLiteral("/"), name, QStringLiteral("anything")));
    QTRY_VERIFY(QFile::exists(started));
}

void BusDoctorTest::daemon_data()
{
#ifdef FOCUSD
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<Expected>("expected");
    QTest::newRow("for focus alone") << QStringList(QStringLiteral("--no-volume"))
                                     << good("bus", "service", QStringLiteral("session: tavi.AudioService is process "));
    QTest::newRow("with the volume") << QStringList()
                                     << note("bus", "service", QStringLiteral(", without --no-volume: the first question for the volume starts up the audio"));
#endif
}

void BusDoctorTest::daemon()
{
#ifdef FOCUSD
    QFETCH(QStringList, options);
    QFETCH(Expected, expected);
    const PrivateBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLatin1());
    MortalProcess daemon;
    QVERIFY(daemon.startAndReadLine(QStringLiteral(FOCUSD), options).startsWith(QStringLiteral("serving ")));
    expected.facts.insert(QStringLiteral("process"), static_cast<int>(daemon.processId()));
    finds(unit(bus), {}, expected);
    QVERIFY(daemon.stop());
#else
    QSKIP("The focus daemon is not built");
#endif
}

/// As installed: the policy's file is of the machine, the bus is not.
void BusDoctorTest::system()
{
    const PrivateBus bus(PrivateBus::SystemBus(), QStringLiteral("<busconfig/>"));
    Expected expected
        = note("bus", "service", QStringLiteral("system: nobody has the name tavi.AudioService"), {{QStringLiteral("bus"), QStringLiteral("system")}});
    expected.exitStatus = busStatus;
    const Unit withSystemBus = unit(bus, "DBUS_SYSTEM_BUS_ADDRESS");
    finds(withSystemBus, {}, expected);
    const bool isInstalled = QFile::exists(QStringLiteral("/usr/share/dbus-1/system.d/tavi.AudioService.conf"))
        || QFile::exists(QStringLiteral("/etc/dbus-1/system.d/tavi.AudioService.conf"));
    Expected policy = isInstalled ? good("bus", "policy", QStringLiteral("/dbus-1/system.d/tavi.AudioService.conf"))
                                  : note("bus", "policy", QStringLiteral("system: without /etc/dbus-1/system.d/tavi.AudioService.conf or "));
    policy.exitStatus = busStatus;
    finds(withSystemBus, {}, policy);
}

void BusDoctorTest::policyThatLetsNobodyCall()
{
    PrivateBus bus(PrivateBus::SystemBus(), QStringLiteral("<busconfig><policy context=\"default\"><allow own=\"tavi.AudioService\"/></policy></busconfig>"));
    QDBusConnection owner = bus.connect();
    QVERIFY(owner.registerService(name));
    finds(unit(bus, "DBUS_SYSTEM_BUS_ADDRESS"), {}, busIsWrong("service", QStringLiteral("), and the bus's policy does not let this user call it")));
}

void BusDoctorTest::daemonThatHangs()
{
    PrivateBus bus;
    QDBusConnection owner = bus.connect();
    // This process does nothing while it waits for the doctor, and its thread of D-Bus answers for no path.
    QVERIFY(owner.registerService(name));
    QVERIFY(owner.registerObject(QStringLiteral("/tavi/AudioService"), this));
    finds(unit(bus), impatient(), busIsWrong("service", QStringLiteral("session: tavi.AudioService is process %1 (").arg(QCoreApplication::applicationPid())));
}

void BusDoctorTest::busThatHangs()
{
    const PrivateBus bus;
    QCOMPARE(::kill(bus.processId(), SIGSTOP), 0);
    finds(unit(bus),
          impatient(),
          busIsWrong("bus", QStringLiteral("session: it does not come back within 2000 ms"), {{QStringLiteral("bus"), QStringLiteral("session")}}));
    QCOMPARE(::kill(bus.processId(), SIGCONT), 0);
}

QTEST_GUILESS_MAIN(BusDoctorTest)
#include "tst_doctor_bus.moc"
