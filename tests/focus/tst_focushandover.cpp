#include "mortalprocess.h"
#include "privatebus.h"

#include <QtTest/QtTest>

#include <memory>

/// Programs as a user starts them: qzaudio-focusd and several qzaudio-bench focus, on a bus of their own.
class FocusHandoverTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void toAndFro();
    void holderIsKilled();
    void deniedByACall();
    void deniedHint();
    void othersClient();
    void tooLongId();
    void monitor();
    void absentService_data();
    void absentService();
    void daemonIsKilled();

private:
    /// Starts "qzaudio-bench focus" and gives its first line.
    QString bench(MortalProcess &process, const QStringList &arguments);
    /// Runs one to its end and gives the first line it said, be it an answer or a complaint.
    QString benchOnce(const QStringList &arguments, int expectedStatus = 0);
    static bool hasEnded(MortalProcess &process, int status);

    std::unique_ptr<PrivateBus> bus;
    std::unique_ptr<MortalProcess> daemon;
};

void FocusHandoverTest::init()
{
    bus = std::make_unique<PrivateBus>();
    QVERIFY2(!bus->address().isEmpty(), "dbus-daemon did not start");
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus->address().toLatin1());
    daemon = std::make_unique<MortalProcess>();
    QVERIFY(daemon->startAndReadLine(QStringLiteral(QZAUDIO_FOCUSD), {}).startsWith(QStringLiteral("serving ")));
}

void FocusHandoverTest::cleanup()
{
    daemon.reset();
    bus.reset();
}

QString FocusHandoverTest::bench(MortalProcess &process, const QStringList &arguments)
{
    return process.startAndReadLine(QStringLiteral(QZAUDIO_BENCH), QStringList(QStringLiteral("focus")) + arguments);
}

QString FocusHandoverTest::benchOnce(const QStringList &arguments, int expectedStatus)
{
    MortalProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    const QString line = bench(process, arguments);
    return hasEnded(process, expectedStatus) ? line : QStringLiteral("it ended with the status %1").arg(process.exitCode());
}

bool FocusHandoverTest::hasEnded(MortalProcess &process, int status)
{
    constexpr int longestWait = 20000; // ms
    return QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, longestWait) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == status;
}

void FocusHandoverTest::toAndFro()
{
    MortalProcess music;
    QCOMPARE(bench(music, {QStringLiteral("request"), QStringLiteral("music")}), QStringLiteral("granted"));
    for (int round = 0; round < 3; ++round) {
        MortalProcess prompt;
        QCOMPARE(bench(prompt, {QStringLiteral("request"), QStringLiteral("prompt"), QStringLiteral("--hint"), QStringLiteral("may-duck")}),
                 QStringLiteral("granted"));
        QCOMPARE(music.readNextLine(), QStringLiteral("music -3 LOSS_TRANSIENT_CAN_DUCK"));
        QCOMPARE(benchOnce({QStringLiteral("current")}), QStringLiteral("3 GAIN_TRANSIENT_MAY_DUCK"));
        prompt.closeWriteChannel(); // the user presses Ctrl+D
        QCOMPARE(prompt.readNextLine(), QStringLiteral("abandoned"));
        QVERIFY(hasEnded(prompt, 0));
        QCOMPARE(music.readNextLine(), QStringLiteral("music 1 GAIN"));
        QVERIFY(benchOnce({QStringLiteral("current")}).startsWith(QLatin1Char('1')));
    }
    music.closeWriteChannel();
    QCOMPARE(music.readNextLine(), QStringLiteral("abandoned"));
    QVERIFY(hasEnded(music, 0));
    QCOMPARE(benchOnce({QStringLiteral("current")}), QStringLiteral("0 nobody holds focus"));
}

void FocusHandoverTest::holderIsKilled()
{
    MortalProcess music;
    QCOMPARE(bench(music, {QStringLiteral("request"), QStringLiteral("music")}), QStringLiteral("granted"));
    MortalProcess call;
    QCOMPARE(bench(call, {QStringLiteral("request"), QStringLiteral("call"), QStringLiteral("--hint"), QStringLiteral("transient")}),
             QStringLiteral("granted"));
    QCOMPARE(music.readNextLine(), QStringLiteral("music -2 LOSS_TRANSIENT"));
    call.kill();
    QCOMPARE(music.readNextLine(), QStringLiteral("music 1 GAIN"));
}

void FocusHandoverTest::deniedByACall()
{
    MortalProcess voice;
    QCOMPARE(bench(voice, {QStringLiteral("request"), QStringLiteral("IN_VOICE_COMM_FOCUS_ID"), QStringLiteral("--hint"), QStringLiteral("transient")}),
             QStringLiteral("granted"));
    QCOMPARE(benchOnce({QStringLiteral("request"), QStringLiteral("music")}, 1), QStringLiteral("denied"));
    voice.closeWriteChannel();
    QCOMPARE(voice.readNextLine(), QStringLiteral("abandoned"));
    MortalProcess music;
    QCOMPARE(bench(music, {QStringLiteral("request"), QStringLiteral("music")}), QStringLiteral("granted"));
}

void FocusHandoverTest::deniedHint()
{
    QCOMPARE(benchOnce({QStringLiteral("request"), QStringLiteral("me"), QStringLiteral("--hint"), QStringLiteral("9")}, 1), QStringLiteral("denied"));
}

void FocusHandoverTest::othersClient()
{
    MortalProcess music;
    QCOMPARE(bench(music, {QStringLiteral("request"), QStringLiteral("music")}), QStringLiteral("granted"));
    QCOMPARE(benchOnce({QStringLiteral("abandon"), QStringLiteral("music")}, 1),
             QStringLiteral("qzaudio-bench: refused: The client belongs to another connection"));
    QVERIFY(benchOnce({QStringLiteral("current")}).startsWith(QLatin1Char('1')));
    QCOMPARE(benchOnce({QStringLiteral("abandon"), QStringLiteral("nobody")}), QStringLiteral("abandoned"));
}

void FocusHandoverTest::tooLongId()
{
    QCOMPARE(benchOnce({QStringLiteral("request"), QString(256, QLatin1Char('x'))}, 1),
             QStringLiteral("qzaudio-bench: refused: A client id has at most 255 characters"));
}

void FocusHandoverTest::monitor()
{
    MortalProcess watching;
    QVERIFY(bench(watching, {QStringLiteral("monitor")}).startsWith(QLatin1Char('0')));
    MortalProcess music;
    MortalProcess radio;
    QCOMPARE(bench(music, {QStringLiteral("request"), QStringLiteral("music")}), QStringLiteral("granted"));
    QCOMPARE(bench(radio, {QStringLiteral("request"), QStringLiteral("radio")}), QStringLiteral("granted"));
    QCOMPARE(watching.readNextLine(), QStringLiteral("music -1 LOSS"));
    radio.kill();
    QCOMPARE(watching.readNextLine(), QStringLiteral("music 1 GAIN"));
}

void FocusHandoverTest::absentService_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("request") << QStringList{QStringLiteral("request"), QStringLiteral("me")};
    QTest::newRow("abandon") << QStringList{QStringLiteral("abandon"), QStringLiteral("me")};
    QTest::newRow("current") << QStringList{QStringLiteral("current")};
    QTest::newRow("monitor") << QStringList{QStringLiteral("monitor")};
}

void FocusHandoverTest::absentService()
{
    QFETCH(QStringList, arguments);
    QVERIFY(daemon->stop());
    const QString complaint = benchOnce(arguments, 3);
    QVERIFY2(complaint.startsWith(QLatin1String("qzaudio-bench: the audio service does not answer: ")), qPrintable(complaint));
}

void FocusHandoverTest::daemonIsKilled()
{
    MortalProcess music;
    music.setProcessChannelMode(QProcess::MergedChannels);
    QCOMPARE(bench(music, {QStringLiteral("request"), QStringLiteral("music")}), QStringLiteral("granted"));
    daemon->kill();
    QCOMPARE(music.readNextLine(), QStringLiteral("qzaudio-bench: the audio service has left the bus"));
    QVERIFY(hasEnded(music, 3));
}

QTEST_GUILESS_MAIN(FocusHandoverTest)
#include "tst_focushandover.moc"
