#include "daemontest.h"
#include "heldthread.h"

#include <options.h>
#include <program.h>
#include <watchdog.h>

#include <QtTest/QtTest>

#include <atomic>
#include <csignal>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace std::chrono_literals;

/// The daemon ends when it hangs, so that it is started anew, and only then.
class DaemonWatchdogTest : public DaemonTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void starves();
    void isFed();
    void patientWithWork();
    void mainThreadHangs();
    void busHangs();
    void stoppedProcess();
    void switchedOff();
    void tellsTheServiceManager_data();
    void tellsTheServiceManager();
    void units_data();
    void units();

private:
    QByteArray errorsOfDaemon() { return daemon->readAllStandardError(); }
};

void DaemonWatchdogTest::cleanup()
{
    DaemonTest::cleanup();
    qunsetenv("NOTIFY_SOCKET");
    qunsetenv("WATCHDOG_USEC");
}

void DaemonWatchdogTest::starves()
{
    std::atomic<int> count{0};
    Watchdog watchdog(100ms, [&count] { ++count; });
    watchdog.feed();
    QTRY_COMPARE_WITH_TIMEOUT(count.load(), 1, longestWait);
    watchdog.feed(); // too late, and harmless
}

void DaemonWatchdogTest::isFed()
{
    std::atomic<int> count{0};
    Watchdog watchdog(1s, [&count] { ++count; });
    QElapsedTimer timer;
    timer.start();
    while (!timer.hasExpired(1500)) {
        QTest::qWait(50);
        watchdog.feed();
    }
    QCOMPARE(count.load(), 0);
}

void DaemonWatchdogTest::patientWithWork()
{
    std::atomic<int> count{0};
    Watchdog watchdog(500ms, [&count] { ++count; });
    QElapsedTimer timer;
    timer.start();
    while (!timer.hasExpired(1500)) { }
    QCOMPARE(count.load(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(count.load(), 1, longestWait);
}

void DaemonWatchdogTest::mainThreadHangs()
{
    if (program::isEmulated())
        QSKIP("The emulator has no debugger's calls, which hold the daemon's main thread");
    daemon->setProcessChannelMode(QProcess::SeparateChannels);
    startDaemon({QStringLiteral("--watchdog"), QStringLiteral("1")});
    const HeldThread held(daemonProcess());
    if (!held.isHeld())
        QSKIP("Threads of other processes cannot be held here");
    QCOMPARE(waitForEnd(), 3);
    QCOMPARE(errorsOfDaemon(), QByteArray("qzaudio-focusd: hangs, nothing from the bus came through for 1 s; ending\n"));
}

void DaemonWatchdogTest::busHangs()
{
    daemon->setProcessChannelMode(QProcess::SeparateChannels);
    startDaemon({QStringLiteral("--watchdog"), QStringLiteral("1")});
    ::kill(bus->processId(), SIGSTOP);
    const int status = waitForEnd();
    ::kill(bus->processId(), SIGCONT);
    QCOMPARE(status, 3);
    QVERIFY(errorsOfDaemon().startsWith("qzaudio-focusd: hangs"));
}

void DaemonWatchdogTest::stoppedProcess()
{
    startDaemon({QStringLiteral("--watchdog"), QStringLiteral("1")});
    FocusClientConnection client(*bus);
    ::kill(daemonProcess(), SIGSTOP);
    QTest::qWait(1500);
    ::kill(daemonProcess(), SIGCONT);
    QCOMPARE(client.result(client.proxy().getCurrentAudioFocus()), QStringLiteral("0"));
    // More than the limit further on it still runs.
    QTest::qWait(1500);
    QCOMPARE(client.result(client.proxy().getCurrentAudioFocus()), QStringLiteral("0"));
}

void DaemonWatchdogTest::switchedOff()
{
    startDaemon({QStringLiteral("--watchdog"), QStringLiteral("0")});
    FocusClientConnection client(*bus);
    ::kill(bus->processId(), SIGSTOP);
    QTest::qWait(1500);
    ::kill(bus->processId(), SIGCONT);
    QCOMPARE(client.result(client.proxy().getCurrentAudioFocus()), QStringLiteral("0"));
}

void DaemonWatchdogTest::tellsTheServiceManager_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("a file") << QByteArray();
    QTest::newRow("no file") << QByteArray("@qzaudio test ") + QByteArray::number(::getpid());
}

void DaemonWatchdogTest::tellsTheServiceManager()
{
    QFETCH(QByteArray, name);
    const QTemporaryDir folder;
    if (name.isEmpty())
        name = folder.filePath(QStringLiteral("notify")).toLocal8Bit();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    QVERIFY(name.size() < int(sizeof address.sun_path));
    std::copy(name.begin(), name.end(), address.sun_path);
    if (name.startsWith('@'))
        address.sun_path[0] = '\0';
    const int manager = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const auto close = qScopeGuard([manager] { ::close(manager); });
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path)) + static_cast<socklen_t>(name.size());
    QCOMPARE(::bind(manager, reinterpret_cast<const sockaddr *>(&address), length), 0);
    QByteArray text;
    const auto receive = [manager, &text] {
        char buffer[100];
        const ssize_t size = ::recv(manager, buffer, sizeof buffer, 0);
        text = QByteArray(buffer, static_cast<int>(qMax<ssize_t>(size, 0)));
        return !text.isEmpty();
    };
    const auto hasReceived = [&receive] { return QTest::qWaitFor(receive, longestWait); };

    qputenv("NOTIFY_SOCKET", name);
    qputenv("WATCHDOG_USEC", "400000");
    startDaemon({QStringLiteral("--watchdog"), QStringLiteral("0")});
    for (int beat = 0; beat < 3; ++beat) {
        QVERIFY(hasReceived());
        QCOMPARE(text, QByteArray("WATCHDOG=1"));
    }
    // What is told is that it gets through to the bus.
    ::kill(bus->processId(), SIGSTOP);
    QTest::qWait(200);
    while (receive()) { }
    QTest::qWait(500);
    const bool wasTold = receive();
    ::kill(bus->processId(), SIGCONT);
    QVERIFY(!wasTold);
    QVERIFY(hasReceived());
}

void DaemonWatchdogTest::units_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("session") << QStringLiteral(QZAUDIO_FOCUSD_UNITS "/session/qzaudio-focusd.service.in");
    QTest::newRow("system") << QStringLiteral(QZAUDIO_FOCUSD_UNITS "/system/qzaudio-focusd.service.in");
}

void DaemonWatchdogTest::units()
{
    QFETCH(QString, file);
    QSettings unit(file, QSettings::IniFormat);
    unit.beginGroup(QStringLiteral("Service"));
    QCOMPARE(unit.value(QStringLiteral("Restart")).toString(), QStringLiteral("on-failure"));
    QCOMPARE(unit.value(QStringLiteral("NotifyAccess")).toString(), QStringLiteral("main"));
    QStringList arguments = unit.value(QStringLiteral("ExecStart")).toString().split(QLatin1Char(' '));
    arguments.removeFirst();
    const Options options = Options::parse(arguments);
    QVERIFY(options.action == Options::Action::Serve);
    // The daemon's own comes first, and says why; with a process that computes it has ten times the patience.
    QVERIFY(unit.value(QStringLiteral("WatchdogSec")).toInt() > 10 * options.watchdogSeconds);
    QVERIFY(options.watchdogSeconds > 0);
}

QTEST_GUILESS_MAIN(DaemonWatchdogTest)
#include "tst_focusd_watchdog.moc"
