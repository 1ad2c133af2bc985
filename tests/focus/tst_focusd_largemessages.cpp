#include "daemontest.h"
#include "heldthread.h"

#include <program.h>

#include <QtDBus/QDBusMessage>
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
    void memoryComesBack_data();
    void memoryComesBack();
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
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("Sanitizers keep memory of their own, by which what was read cannot be told");
#endif
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

void LargeMessagesTest::memoryComesBack_data()
{
    using Arguments = QVariantList;
    QTest::addColumn<QString>("member");
    QTest::addColumn<Arguments>("arguments");
    QTest::addColumn<QString>("error");
    const QString large(31 * oneMegabyte, QLatin1Char('x'));
    const QString small(20, QLatin1Char('x'));
    QStringList many;
    for (int number = 0; number < 400000; ++number)
        many.append(small);
    QTest::newRow("a name") << QStringLiteral("abandonAudioFocus") << Arguments{large} << QStringLiteral("InvalidArgs");
    QTest::newRow("a name to request with") << QStringLiteral("requestAudioFocus") << Arguments{3, 1, large} << QStringLiteral("InvalidArgs");
    QTest::newRow("other arguments") << QStringLiteral("abandonAudioFocus") << Arguments{many} << QStringLiteral("UnknownMethod");
    QTest::newRow("another method") << QStringLiteral("playAudio") << Arguments{large} << QStringLiteral("UnknownMethod");
}

void LargeMessagesTest::memoryComesBack()
{
    QFETCH(QString, member);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, error);
    // It looks after its memory as often as the watchdog asks for, which sanitizers slow down so that it would take long work for a hang.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    startDaemon({QStringLiteral("--watchdog"), QStringLiteral("60")});
#else
    startDaemon({QStringLiteral("--watchdog"), QStringLiteral("8")});
#endif
    FocusClientConnection client(*bus);
    QCOMPARE(client.request(QStringLiteral("A"), 2), QStringLiteral("0"));
    const qint64 before = residentKilobytes();
    QVERIFY(before > 0);
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("tavi.AudioService"), QStringLiteral("/tavi/AudioService"), QStringLiteral("tavi.AudioService"), member);
    message.setArguments(arguments);
    for (int repetition = 0; repetition < 3; ++repetition)
        QCOMPARE(client.result(QDBusPendingReply<>(client.connection().asyncCall(message))), error);
    QCOMPARE(client.result(client.proxy().getCurrentAudioFocus()), QStringLiteral("2"));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they keep memory of their own
    if (program::isEmulated())
        QSKIP("What the emulator keeps of memory says nothing about the daemon");
    constexpr int slack = 30 * 1024; // KiB
    constexpr int soon = 10000; // ms
    const bool isBack = QTest::qWaitFor([&] { return residentKilobytes() - before < slack; }, soon);
    QVERIFY2(isBack, QByteArray::number(residentKilobytes() - before).constData());
#endif
}

QTEST_GUILESS_MAIN(LargeMessagesTest)
#include "tst_focusd_largemessages.moc"
