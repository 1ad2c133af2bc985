#include "bustarget.h"

#include "corpus.h"
#include "privatebus.h"
#include "servicethread.h"

#include <logrecorder.h>
#include <program.h>

#include <QtTest/QtTest>

#include <memory>

/// Messages of any kind for the focus service: what a fuzzer found worth keeping, at the service in this process and at the daemon.
class BusTargetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void corpus_data() { corpus::addRows(QStringLiteral(CORPUS)); }
    void corpus();
    void properCallsAreAnswered();
    void anyBytesAreClients();
    void daemonDoesNotGrow();

private:
    static QByteArrayList files();

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<ServiceThread> m_service;
    std::unique_ptr<BusTarget> m_target;
    LogRecorder m_quiet;
};

void BusTargetTest::initTestCase()
{
    if (program::isEmulated())
        QSKIP("the emulator cannot be trusted with programs that are started by the test");
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY2(!m_bus->address().isEmpty(), "dbus-daemon did not start");
    m_service = std::make_unique<ServiceThread>(m_bus->address());
    m_target = std::make_unique<BusTarget>(m_bus->address());
}

void BusTargetTest::corpus()
{
    QFETCH(const QByteArray, bytes);
    m_target->play(corpus::viewOf(bytes));
}

/// Each of them on a connection of its own: kind of step, connection, kind of call.
void BusTargetTest::properCallsAreAnswered()
{
    for (int call = 0; call < 9; ++call) {
        const QByteArray bytes{"\0\0", 2};
        QCOMPARE(m_target->play(corpus::viewOf(bytes + char(call))), 1);
    }
}

void BusTargetTest::anyBytesAreClients()
{
    QCOMPARE(m_target->play({}), 0);
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    QVERIFY(m_target->play(corpus::viewOf(all)) > 0);
}

QByteArrayList BusTargetTest::files()
{
    QByteArrayList contents;
    const QDir folder(QStringLiteral(CORPUS));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            contents.append(file.readAll());
    }
    return contents;
}

/// The daemon as it is installed, with all of it again and again: it answers, it holds no more memory, and it ends when it is asked to.
void BusTargetTest::daemonDoesNotGrow()
{
    constexpr int rounds = 3;
    [[maybe_unused]] constexpr qint64 allowance = 8192; // kB, of what the first round leaves
    PrivateBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLatin1());
    MortalProcess daemon;
    QVERIFY(daemon.startAndReadLine(QStringLiteral(QZAUDIO_FOCUSD), {}).startsWith(QStringLiteral("serving ")));
    const auto residentKilobytes = [&daemon] {
        QFile status(QStringLiteral("/proc/%1/statm").arg(daemon.processId()));
        return status.open(QIODevice::ReadOnly) ? status.readAll().split(' ').value(1).toLongLong() * 4 : -1;
    };
    {
        BusTarget target(bus.address());
        qint64 first = 0;
        for (int round = 0; round < rounds; ++round) {
            const QByteArrayList all = files();
            for (const QByteArray &bytes : all)
                target.play(corpus::viewOf(bytes));
            if (round == 0)
                first = residentKilobytes();
        }
        QVERIFY(first > 0);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they keep memory of their own
        QVERIFY2(residentKilobytes() < first + allowance, qPrintable(QStringLiteral("%1 kB, then %2 kB").arg(first).arg(residentKilobytes())));
#endif
    }
    QVERIFY(daemon.stop());
    QCOMPARE(daemon.exitCode(), 0); // also what a sanitizer has to say
}

QTEST_GUILESS_MAIN(BusTargetTest)
#include "tst_bustarget.moc"
