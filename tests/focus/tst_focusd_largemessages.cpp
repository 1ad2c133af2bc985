#include "daemontest.h"
#include "heldthread.h"

#include <program.h>

#include <QtTest/QtTest>

namespace
{

constexpr int oneMegabyte = 1024 * 1024;

} // namespace

/// Anybody on the bus may send what is far larger than any message of the interface.
class LargeMessagesTest : public DaemonTest
{
    Q_OBJECT

private Q_SLOTS:
    void whileItIsBusy_data();
    void whileItIsBusy();
};

void LargeMessagesTest::whileItIsBusy_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("megabytes");
    // The bus library stops reading while more than 63 MB wait.
    QTest::newRow("a large one") << 1 << 64;
    QTest::newRow("many") << 70 << 1;
}

void LargeMessagesTest::whileItIsBusy()
{
    QFETCH(int, count);
    QFETCH(int, megabytes);
    if (program::isEmulated())
        QSKIP("The emulator has no debugger's calls, which hold the daemon's main thread");
    startDaemon();
    FocusClientConnection client(*bus);
    FocusClientConnection sender(*bus);
    QCOMPARE(client.request(QStringLiteral("A"), 2), QStringLiteral("0"));
    const qint64 before = residentKilobytes();
    QVERIFY(before > 0);
    {
        const HeldThread busy(daemonProcess());
        if (!busy.isHeld())
            QSKIP("Threads of other processes cannot be held here");
        const QString name(megabytes * oneMegabyte, QLatin1Char('x'));
        for (int number = 0; number < count; ++number)
            sender.proxy().abandonAudioFocus(name);
        // Its other thread reads them, or as much as it may: at least so much, in the end nothing more.
        const qint64 expected = before + qint64(60) * 1024;
        QTRY_VERIFY_WITH_TIMEOUT(residentKilobytes() > expected, longestWait);
        constexpr int quietMs = 500;
        qint64 last = 0;
        QElapsedTimer quiet;
        const auto isQuiet = [&] {
            if (std::exchange(last, residentKilobytes()) != last)
                quiet.start();
            return quiet.hasExpired(quietMs);
        };
        QTRY_VERIFY_WITH_TIMEOUT(isQuiet(), longestWait);
    }
    QCOMPARE(client.result(client.proxy().getCurrentAudioFocus()), QStringLiteral("2"));
    QCOMPARE(sender.request(QStringLiteral("B"), 3), QStringLiteral("0"));
}

QTEST_GUILESS_MAIN(LargeMessagesTest)
#include "tst_focusd_largemessages.moc"
