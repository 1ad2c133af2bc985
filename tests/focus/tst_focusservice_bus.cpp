#include "privatebus.h"

#include <callers.h>
#include <focusservice.h>
#include <heartbeat.h>
#include <receivelimits.h>

#include <platform.h>
#include <qzaudio/focusrequester.h>

#include <QtTest/QtTest>

#include <unistd.h>

namespace
{

constexpr int longestWait = 20000; // ms

QString callId()
{
    return QStringLiteral("IN_VOICE_COMM_FOCUS_ID");
}

} // namespace

/// The parts of the daemon that need a bus, in the test's own process.
class FocusServiceBusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { bus.reset(); }

    void callers();
    void callersThatAreNotThere_data();
    void callersThatAreNotThere();
    void receiveLimits();
    void heartbeat();
    void heartbeatWithoutBus();

    void callsFromWithin();
    void refusedFromWithin_data();
    void refusedFromWithin();
    void volumeFromWithin();

private:
    std::unique_ptr<PrivateBus> bus;
};

void FocusServiceBusTest::init()
{
    bus = std::make_unique<PrivateBus>();
    QVERIFY2(!bus->address().isEmpty(), "dbus-daemon did not start");
    simulator::Platform::instance()->reset();
}

void FocusServiceBusTest::callers()
{
    Callers callers(bus->connect());
    const QDBusConnection client = bus->connect();
    const QString name = client.baseService();
    const QString description = QStringLiteral("%1 (user %2, process %3)").arg(name).arg(::geteuid()).arg(::getpid());
    QCOMPARE(callers.credentials(name).user, ::geteuid());
    QCOMPARE(callers.credentials(name).process, static_cast<uint>(::getpid()));
    QCOMPARE(callers.description(name), description);
    // Who it was is told when it has gone, too.
    bus->disconnect(client);
    QCOMPARE(callers.description(name), description);
}

void FocusServiceBusTest::callersThatAreNotThere_data()
{
    QTest::addColumn<QString>("connection");
    QTest::newRow("not there any more, or yet") << QStringLiteral(":1.4711");
    QTest::newRow("no name") << QString();
    QTest::newRow("a name with blanks") << QStringLiteral("no name at all");
}

void FocusServiceBusTest::callersThatAreNotThere()
{
    QFETCH(QString, connection);
    Callers callers(bus->connect());
    QCOMPARE(callers.credentials(connection).user, Callers::unknownUser);
    QCOMPARE(callers.credentials(connection).process, 0U);
    QCOMPARE(callers.description(connection), connection + QStringLiteral(" (unknown user, unknown process)"));
}

void FocusServiceBusTest::receiveLimits()
{
    QVERIFY(liftReceiveLimits(bus->connect()));
    QVERIFY(!liftReceiveLimits(QDBusConnection(QStringLiteral("never connected"))));
}

void FocusServiceBusTest::heartbeat()
{
    const Heartbeat heartbeat(bus->connect(), 1);
    QSignalSpy beats(&heartbeat, &Heartbeat::beat);
    QTRY_VERIFY_WITH_TIMEOUT(beats.count() >= 3, longestWait);
}

/// An answer that is an error is no sign of life.
void FocusServiceBusTest::heartbeatWithoutBus()
{
    const QDBusConnection connection = bus->connect();
    const Heartbeat heartbeat(connection, 1);
    QSignalSpy beats(&heartbeat, &Heartbeat::beat);
    QTRY_VERIFY_WITH_TIMEOUT(beats.count() >= 1, longestWait);
    QVERIFY(bus->stop());
    QTRY_VERIFY_WITH_TIMEOUT(!connection.isConnected(), longestWait);
    QCoreApplication::processEvents(); // an answer that came before
    beats.clear();
    QTimer timer;
    QSignalSpy rounds(&timer, &QTimer::timeout);
    timer.start(1);
    QTRY_VERIFY_WITH_TIMEOUT(rounds.count() >= 20, longestWait);
    QCOMPARE(beats.count(), 0);
}

/// Nobody's calls: the process's own, whose user no bus tells.
void FocusServiceBusTest::callsFromWithin()
{
    Options options;
    options.volume = false;
    FocusService service(bus->connect(), options);
    QCOMPARE(service.requestAudioFocus(3, AUDIOFOCUS_GAIN_TRANSIENT, QStringLiteral("music")), 0);
    QCOMPARE(service.getCurrentAudioFocus(), int(AUDIOFOCUS_GAIN_TRANSIENT));
    QCOMPARE(service.requestAudioFocus(3, AUDIOFOCUS_GAIN, callId()), 0); // on the session bus everybody may
    QCOMPARE(service.requestAudioFocus(3, AUDIOFOCUS_GAIN, QStringLiteral("radio")), 1);
    service.unregisterAudioFocusClient(callId());
    QCOMPARE(service.abandonAudioFocus(QStringLiteral("music")), 0);
    QCOMPARE(service.getCurrentAudioFocus(), int(AUDIOFOCUS_NONE));
}

void FocusServiceBusTest::refusedFromWithin_data()
{
    QTest::addColumn<QString>("clientId");
    QTest::newRow("the id is too long") << QString(256, QLatin1Char('x'));
    QTest::newRow("a call, which only root may make") << callId();
}

/// With a result, where a caller on the bus would get an error.
void FocusServiceBusTest::refusedFromWithin()
{
    QFETCH(QString, clientId);
    Options options;
    options.volume = false;
    options.callUsers = {0};
    FocusService service(bus->connect(), options);
    QCOMPARE(service.requestAudioFocus(3, AUDIOFOCUS_GAIN_TRANSIENT, QStringLiteral("music")), 0);
    QCOMPARE(service.requestAudioFocus(3, AUDIOFOCUS_GAIN, clientId), 1);
    QCOMPARE(service.getCurrentAudioFocus(), int(AUDIOFOCUS_GAIN_TRANSIENT));
}

/// The answer would have nobody to go to, so the audio is not started up for it.
void FocusServiceBusTest::volumeFromWithin()
{
    FocusService service(bus->connect(), Options());
    QVERIFY(service.isVolumeAvailable());
    QCOMPARE(service.volumeLevel(), 0);
    QVERIFY(!service.isVolumeMute());
    QVERIFY(service.stop());
    QCOMPARE(simulator::Platform::instance()->journal()->calls(), QStringList());
}

QTEST_GUILESS_MAIN(FocusServiceBusTest)
#include "tst_focusservice_bus.moc"
