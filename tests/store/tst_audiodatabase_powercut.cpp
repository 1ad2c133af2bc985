#include "flash.h"
#include "powercut.h"
#include "settingsprocess.h"
#include "storelife.h"
#include "storetest.h"

#include <qzaudio/audiodatabase.h>

#include <QtTest/QtTest>

using audio::AudioDataBase;

namespace
{

/// Far less than the 30 seconds that a dead process's lock file would cost.
constexpr int promptlyMs = 10000;

void setTimeOf(const QString &path, const QDateTime &time)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
}

/// What earlier deaths left, so that cleaning it up is interrupted as well.
void leaveDeadLocks()
{
    flash::setContent("", QStringLiteral("audioData.db.lock"));
    flash::setContent("", QStringLiteral("audioData.db.lock.rmlock"));
    flash::setContent("[Volume]\n", QStringLiteral("audioData.db.new-1"));
}

} // namespace

class PowerCutTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void dyingAtEachSystemCall_data();
    void dyingAtEachSystemCall();
    void dyingAgainAndAgain();
};

void PowerCutTest::initTestCase()
{
    if (program::isEmulated())
        QTest::qSkip("the emulator does not let a process trace another", __FILE__, __LINE__);
}

void PowerCutTest::dyingAtEachSystemCall_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<bool>("hasFile");
    QTest::addColumn<bool>("clockWentBack");
    QTest::addColumn<bool>("hasLeftovers");
    const QString usual = QStringLiteral("save-between-stops");
    const QString named = QStringLiteral("save-named");
    QTest::newRow("a save") << usual << true << false << false;
    QTest::newRow("on a file system without unnamed files") << named << true << false << false;
    QTest::newRow("the first save, there too") << named << false << false << false;
    QTest::newRow("after the clock went back") << usual << true << true << false;
    QTest::newRow("after earlier deaths") << named << true << false << true;
}

void PowerCutTest::dyingAtEachSystemCall()
{
    QFETCH(QString, command);
    QFETCH(bool, hasFile);
    QFETCH(bool, clockWentBack);
    QFETCH(bool, hasLeftovers);
    const flash::Entries before = hasFile ? flash::parse(flash::fullSettings()) : flash::Entries();
    flash::Entries after = before;
    after.insert("Volume/0", "1234");
    const QStringList victim = settingsprocess::commandLine({command, QStringLiteral("0"), QStringLiteral("1234")});
    const QStringList nextProcess{QStringLiteral("read-then-save"), QStringLiteral("2"), QStringLiteral("4321")};
    QMap<QString, int> leftovers;
    int oldValues = 0;
    int newValues = 0;
    int systemCalls = 0;
    for (int last = 1; last > systemCalls; ++last) {
        flash::clean();
        if (hasFile)
            flash::setContent(flash::fullSettings());
        if (clockWentBack)
            setTimeOf(flash::settingsFile(), QDateTime::currentDateTime().addSecs(3600));
        systemCalls = powercut::runAndKillAt(last, victim, hasLeftovers ? leaveDeadLocks : nullptr);
        QVERIFY(systemCalls >= 0);

        const flash::Entries left = flash::entries();
        QVERIFY2(left == before || left == after, flash::content().constData());
        (left == after ? newValues : oldValues)++;
        const QStringList names = flash::names();
        for (const QString &name : names)
            leftovers[storelife::kindOfName(name)]++;

        const program::Run next = settingsprocess::run(nextProcess);
        QCOMPARE(next.exitCode, 0);
        QVERIFY2(next.milliseconds < promptlyMs, qPrintable(QStringLiteral("%1 ms after call %2").arg(next.milliseconds).arg(last)));
        const QString volume = left == after ? QStringLiteral("volume0 1234") : hasFile ? QStringLiteral("volume0 1") : QStringLiteral("volume0 20");
        QCOMPARE(next.output.section(QLatin1Char('\n'), 0, 0), volume);
        flash::Entries expected = left;
        expected.insert("Volume/2", "4321");
        QCOMPARE(flash::entries(), expected);
        QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
        if (systemCalls < last)
            break; // this time it lived
    }
    QVERIFY(oldValues > 0);
    QVERIFY(newValues > 1); // also by a death after the replacement, not only by surviving
    log.reset();
    qInfo("%d system calls; killed at each: %d times the old value, %d times the new one, 0 torn files, 0 keys lost", systemCalls, oldValues, newValues - 1);
    for (auto leftover = leftovers.begin(); leftover != leftovers.end(); ++leftover)
        qInfo("  %3d deaths left %s", leftover.value(), qPrintable(leftover.key()));
}

/// Nobody starts the store anew here: the saves themselves clean up behind the dead.
void PowerCutTest::dyingAgainAndAgain()
{
    AudioDataBase store;
    store.setEqType(1);
    const QStringList victim = settingsprocess::commandLine({QStringLiteral("save-named"), QStringLiteral("0"), QStringLiteral("1234")});
    const int systemCalls = powercut::runAndKillAt(powercut::never, victim);
    QVERIFY(systemCalls > 10);
    for (int death = 0; death < 40; ++death) {
        QVERIFY(powercut::runAndKillAt(systemCalls / 3 + death % (systemCalls / 2), victim) > 0);
        store.setEqType(death);
        QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
        QCOMPARE(flash::entries().value("EQ/Type"), QByteArray::number(death));
    }
}

QTEST_GUILESS_MAIN(PowerCutTest)

#include "tst_audiodatabase_powercut.moc"
