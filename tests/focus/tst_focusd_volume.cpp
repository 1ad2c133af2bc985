#include "daemontest.h"
#include "hangingwriter.h"

#include <logrecorder.h>
#include <qzaudio/audiodatabase.h>

#include <QtDBus/QDBusPendingReply>
#include <QtTest/QtTest>

#include <sys/stat.h>

namespace
{

constexpr int promptlyMs = 3000;

} // namespace

/// The volume is in a file that other processes use, and what they do there must not hold up focus.
class DaemonVolumeTest : public DaemonTest
{
    Q_OBJECT

private Q_SLOTS:
    void hangingWriter();
    void manyQuestions();
    void stopsBehindAHangingWriter();
    void fileThatIsNone();
    void changesAndAnswers();
    void logOfTheLibrary_data();
    void logOfTheLibrary();
};

void DaemonVolumeTest::hangingWriter()
{
    startDaemon();
    FocusClientConnection client(*bus);
    FocusClientConnection other(*bus);
    QDBusPendingReply<int> level;
    QDBusPendingReply<bool> mute;
    {
        const HangingWriter writer;
        QVERIFY(writer.isHeld());
        level = client.proxy().volumeLevel();
        mute = client.proxy().isVolumeMute();
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(client.request(QStringLiteral("A"), 1), QStringLiteral("0"));
        QCOMPARE(other.request(QStringLiteral("B"), 2), QStringLiteral("0"));
        QCOMPARE(other.result(other.proxy().getCurrentAudioFocus()), QStringLiteral("2"));
        QVERIFY(timer.elapsed() < promptlyMs);
        QVERIFY(!level.isFinished());
        QVERIFY(!mute.isFinished());
    }
    QCOMPARE(client.result(level), QStringLiteral("20"));
    QCOMPARE(client.result(mute), QStringLiteral("false"));
}

void DaemonVolumeTest::manyQuestions()
{
    startDaemon();
    FocusClientConnection client(*bus);
    FocusClientConnection other(*bus);
    QVector<QDBusPendingReply<int>> replies;
    QDBusPendingReply<int> reply;
    {
        const HangingWriter writer;
        QVERIFY(writer.isHeld());
        for (int number = 0; number < 100; ++number)
            replies.append(client.proxy().volumeLevel());
        QCOMPARE(client.result(replies.constLast()), QStringLiteral("LimitsExceeded"));
        reply = other.proxy().volumeLevel();
        QCOMPARE(other.result(other.proxy().getCurrentAudioFocus()), QStringLiteral("0"));
        QVERIFY(!reply.isFinished());
    }
    QCOMPARE(other.result(reply), QStringLiteral("20"));
    QStringList results;
    for (const auto &answer : qAsConst(replies))
        results.append(client.result(answer));
    QCOMPARE(results.mid(0, 16).count(QStringLiteral("20")), 16);
    QCOMPARE(results.count(QStringLiteral("LimitsExceeded")), 84);
    QCOMPARE(client.result(client.proxy().volumeLevel()), QStringLiteral("20"));
}

void DaemonVolumeTest::stopsBehindAHangingWriter()
{
    startDaemon();
    FocusClientConnection client(*bus);
    const HangingWriter writer;
    QVERIFY(writer.isHeld());
    client.proxy().volumeLevel();
    QCOMPARE(client.request(QStringLiteral("A"), 1), QStringLiteral("0"));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(daemon->stop());
    QVERIFY2(timer.elapsed() < promptlyMs, QByteArray::number(timer.elapsed()).constData());
    QCOMPARE(daemon->exitStatus(), QProcess::NormalExit);
    QCOMPARE(daemon->exitCode(), 0);
}

void DaemonVolumeTest::fileThatIsNone()
{
    QCOMPARE(::mkfifo(settingsFile().toLatin1().constData(), 0600), 0); // nobody ever writes to it
    const auto remove = qScopeGuard([] { QFile::remove(settingsFile()); });
    startDaemon();
    FocusClientConnection client(*bus);
    client.proxy().volumeLevel();
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(client.request(QStringLiteral("A"), 1), QStringLiteral("0"));
    QVERIFY(daemon->stop());
    QVERIFY2(timer.elapsed() < promptlyMs, QByteArray::number(timer.elapsed()).constData());
    QCOMPARE(daemon->exitCode(), 0);
}

void DaemonVolumeTest::changesAndAnswers()
{
    const LogRecorder log; // keeps the lines of the store away
    startDaemon();
    FocusClientConnection client(*bus);
    QSignalSpy changes(&client.proxy(), &TaviAudioServiceInterface::volumeChanged);
    QCOMPARE(client.result(client.proxy().volumeLevel()), QStringLiteral("20"));
    audio::AudioDataBase store;
    for (const int level : {3, 17, 20}) {
        store.setVolume(ZelAudioTypeMedia, level, true);
        QTRY_COMPARE_WITH_TIMEOUT(changes.size(), 1, longestWait);
        QCOMPARE(changes.takeFirst(), (QVariantList{false, level}));
        // Whoever heard of the change is given no older level.
        QCOMPARE(client.result(client.proxy().volumeLevel()), QString::number(level));
    }
}

void DaemonVolumeTest::logOfTheLibrary_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("isLogged");
    QTest::newRow("quiet") << QStringList() << false;
    QTest::newRow("with --log") << QStringList(QStringLiteral("--log")) << true;
}

void DaemonVolumeTest::logOfTheLibrary()
{
    QFETCH(QStringList, arguments);
    daemon->setProcessChannelMode(QProcess::SeparateChannels);
    startDaemon(arguments);
    FocusClientConnection client(*bus);
    QCOMPARE(client.result(client.proxy().volumeLevel()), QStringLiteral("20"));
    QVERIFY(daemon->stop());
    QTEST(daemon->readAllStandardError().contains("[DBG]"), "isLogged");
}

QTEST_GUILESS_MAIN(DaemonVolumeTest)
#include "tst_focusd_volume.moc"
