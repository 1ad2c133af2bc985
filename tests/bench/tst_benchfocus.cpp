#include "benchprocess.h"

#include <QtTest/QtTest>

/// "focus": bench processes and the focus daemon on a bus of their own, which ends with the test.
class BenchFocusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void twoClientsHandFocusToAndFro();
    void deniedHint();
    void absentService();
    void serviceThatLeaves();

private:
    static constexpr int patience = 20000; // ms

    /// A running bench whose lines can be waited for.
    struct Client
    {
        Client(const BenchFocusTest &test, const QStringList &arguments) { BenchProcess::start(process, test.focus(arguments)); }
        ~Client()
        {
            process.kill();
            process.waitForFinished();
        }
        Q_DISABLE_COPY(Client)

        bool says(const QString &line)
        {
            QElapsedTimer timer;
            timer.start();
            while (!lines.contains(line) && timer.elapsed() < patience) {
                process.waitForReadyRead(50);
                lines += QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            }
            return lines.contains(line);
        }
        /// As Ctrl+D does.
        int endInput()
        {
            process.closeWriteChannel();
            return process.waitForFinished(patience) ? process.exitCode() : -1;
        }

        QProcess process;
        QStringList lines;
    };

    QStringList focus(const QStringList &arguments) const { return QStringList({QStringLiteral("focus"), QStringLiteral("--address"), address}) + arguments; }
    void startService(QProcess &service) const;

    QProcess bus;
    QString address;
};

void BenchFocusTest::initTestCase()
{
    bus.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    QVERIFY2(bus.waitForReadyRead(patience), "no dbus-daemon");
    address = QString::fromLatin1(bus.readLine().trimmed());
    QVERIFY(address.startsWith(QLatin1String("unix:")));
}

void BenchFocusTest::cleanupTestCase()
{
    bus.kill();
    bus.waitForFinished();
}

void BenchFocusTest::startService(QProcess &service) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
    service.setProcessEnvironment(environment);
    QStringList command = QString::fromLatin1(FOCUS_EMULATOR).split(QLatin1Char(' '), Qt::SkipEmptyParts) << QStringLiteral(FOCUS_DAEMON);
    const QString program = command.takeFirst();
    service.start(program, command);
    QVERIFY(service.waitForStarted(patience));
    QTRY_VERIFY_WITH_TIMEOUT(BenchProcess(focus({QStringLiteral("current")})).exitCode == 0, patience);
}

void BenchFocusTest::twoClientsHandFocusToAndFro()
{
    QProcess service;
    startService(service);
    if (QTest::currentTestFailed()) {
        return;
    }
    QCOMPARE(BenchProcess(focus({QStringLiteral("current")})).output, QStringLiteral("0 nobody holds focus\n"));

    Client monitor(*this, {QStringLiteral("monitor")});
    QVERIFY(monitor.says(QStringLiteral("0 nobody holds focus")));
    Client music(*this, {QStringLiteral("request"), QStringLiteral("music")});
    QVERIFY(music.says(QStringLiteral("granted")));
    for (int round = 0; round < 3; ++round) {
        music.lines.clear();
        Client prompt(*this, {QStringLiteral("request"), QStringLiteral("prompt"), QStringLiteral("--hint"), QStringLiteral("may-duck")});
        QVERIFY(prompt.says(QStringLiteral("granted")));
        QVERIFY(music.says(QStringLiteral("music -3 LOSS_TRANSIENT_CAN_DUCK")));
        QCOMPARE(BenchProcess(focus({QStringLiteral("current")})).output, QStringLiteral("3 GAIN_TRANSIENT_MAY_DUCK\n"));
        QCOMPARE(prompt.endInput(), 0);
        QVERIFY(music.says(QStringLiteral("music 1 GAIN")));
    }
    QVERIFY(monitor.says(QStringLiteral("music 1 GAIN")));
    QCOMPARE(monitor.lines.count(QStringLiteral("music -3 LOSS_TRANSIENT_CAN_DUCK")), 3);
    QCOMPARE(music.endInput(), 0);
    QCOMPARE(BenchProcess(focus({QStringLiteral("current")})).output, QStringLiteral("0 nobody holds focus\n"));
    service.terminate();
    service.waitForFinished();
}

void BenchFocusTest::deniedHint()
{
    QProcess service;
    startService(service);
    if (QTest::currentTestFailed()) {
        return;
    }
    const BenchProcess bench(focus({QStringLiteral("request"), QStringLiteral("me"), QStringLiteral("--hint"), QStringLiteral("9")}));
    QCOMPARE(bench.output, QStringLiteral("denied\n"));
    QCOMPARE(bench.exitCode, 1);
    service.terminate();
    service.waitForFinished();
}

void BenchFocusTest::absentService()
{
    for (const char *action : {"request", "abandon", "current", "monitor"}) {
        QStringList arguments(QString::fromLatin1(action));
        if (arguments.first() == QLatin1String("request") || arguments.first() == QLatin1String("abandon")) {
            arguments += QStringLiteral("me");
        }
        const BenchProcess bench(focus(arguments));
        QCOMPARE(bench.exitCode, 3);
        QVERIFY2(bench.errors.startsWith(QLatin1String("qzaudio-bench: the audio service does not answer: ")), qPrintable(bench.errors));
    }
}

void BenchFocusTest::serviceThatLeaves()
{
    QProcess service;
    startService(service);
    if (QTest::currentTestFailed()) {
        return;
    }
    Client music(*this, {QStringLiteral("request"), QStringLiteral("music")});
    QVERIFY(music.says(QStringLiteral("granted")));
    service.kill();
    service.waitForFinished();
    QVERIFY(music.process.waitForFinished(patience));
    QCOMPARE(music.process.exitCode(), 3);
    QVERIFY(music.process.readAllStandardError().contains("the audio service has left the bus"));
}

QTEST_GUILESS_MAIN(BenchFocusTest)

#include "tst_benchfocus.moc"
