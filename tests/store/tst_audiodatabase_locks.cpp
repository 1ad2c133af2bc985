#include "flash.h"
#include "settingsprocess.h"
#include "storetest.h"

#include <qzaudio/audiodatabase.h>

#include <QtTest/QtTest>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using audio::AudioDataBase;

namespace
{

constexpr int holdingMs = 400;

/// Far less than the 30 seconds that a lock file takes to become stale.
constexpr int promptlyMs = 10000;

const QString lockName = QStringLiteral("audioData.db.lock");

QByteArray signedBy(qint64 process)
{
    return QByteArray::number(process) + "\nsettingsclient\n" + QSysInfo::machineHostName().toUtf8() + '\n' + QSysInfo::machineUniqueId() + '\n'
        + QSysInfo::bootUniqueId() + '\n';
}

bool hasOutputs()
{
    return fcntl(STDOUT_FILENO, F_GETFD) >= 0 && fcntl(STDERR_FILENO, F_GETFD) >= 0;
}

bool endsWell(pid_t process)
{
    int status = -1;
    return waitpid(process, &status, 0) == process && status == 0;
}

} // namespace

/// Lock files and temporary files of others, dead and living.
class LocksTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void lockOfDeadProcess_data();
    void lockOfDeadProcess();
    void lockOfKilledProcess();
    void lockOfLivingProcess();
    void lockThatComesAndGoes();
    void lockOfHangingProcess();
    void sweep_data();
    void sweep();
    void sweepLeavesLinksAndFolders();
    void noSweepWhileSomebodyWrites();
    void temporaryFilesOfDeadWriters();
    void childrenKeepTheirFiles();
};

void LocksTest::lockOfDeadProcess_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("not signed") << QByteArray();
    QTest::newRow("signed") << signedBy(4000000); // beyond the largest process number in use
    QTest::newRow("signed by a process that is another one by now") << signedBy(QCoreApplication::applicationPid());
    QTest::newRow("signed in part") << QByteArray("12");
    QTest::newRow("zeros") << QByteArray(100, '\0');
}

void LocksTest::lockOfDeadProcess()
{
    QFETCH(QByteArray, content);
    AudioDataBase store;
    flash::setContent(content, lockName);
    flash::setContent(content, lockName + QStringLiteral(".rmlock"));
    QElapsedTimer timer;
    timer.start();
    store.setEqType(3);
    QVERIFY2(timer.elapsed() < promptlyMs, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(flash::entries(), (flash::Entries{{"EQ/Type", "3"}}));
    const AudioDataBase later;
    QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
}

void LocksTest::lockOfKilledProcess()
{
    const auto holder = settingsprocess::start({QStringLiteral("hang")});
    QVERIFY(flash::names().contains(lockName));
    holder->kill();
    QVERIFY(holder->waitForFinished());
    QVERIFY(flash::names().contains(lockName));
    AudioDataBase store;
    QElapsedTimer timer;
    timer.start();
    store.setEqType(3);
    QVERIFY2(timer.elapsed() < promptlyMs, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(flash::entries(), (flash::Entries{{"EQ/Type", "3"}}));
    QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
}

/// A save waits for it and a start does not.
void LocksTest::lockOfLivingProcess()
{
    flash::setContent(flash::fullSettings());
    const auto holder = settingsprocess::start({QStringLiteral("hold-lock"), QString::number(holdingMs)});
    AudioDataBase store;
    QCOMPARE(store.eqType(), 4);
    QCOMPARE(holder->state(), QProcess::Running);
    QVERIFY(!holder->waitForFinished(0)); // still held: reading did not wait
    store.setEqType(3);
    QVERIFY(holder->waitForFinished(1000)); // let go before the save ended
    flash::Entries expected = flash::parse(flash::fullSettings());
    expected.insert("EQ/Type", "3");
    QCOMPARE(flash::entries(), expected);
    QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
}

/// Other programs' QSettings take the lock file without asking for the folder, and may remove it at any moment. No save is lost.
void LocksTest::lockThatComesAndGoes()
{
    const auto other = settingsprocess::start({QStringLiteral("come-and-go")});
    AudioDataBase store;
    for (int type = 0; type < 1000; ++type) {
        store.setEqType(type);
        QCOMPARE(flash::entries().value("EQ/Type"), QByteArray::number(type));
    }
    QCOMPARE(other->state(), QProcess::Running);
    other->kill();
    other->waitForFinished();
}

/// A lock file that is 30 seconds old, made older here than it is, stops nobody any more, though its holder lives.
void LocksTest::lockOfHangingProcess()
{
    flash::setContent(flash::fullSettings());
    const auto holder = settingsprocess::start({QStringLiteral("hold-lock"), QStringLiteral("60000")});
    QFile lock(flash::folder() + QLatin1Char('/') + lockName);
    QVERIFY(lock.open(QIODevice::ReadWrite));
    QVERIFY(lock.setFileTime(QDateTime::currentDateTime().addSecs(-31), QFileDevice::FileModificationTime));
    AudioDataBase store;
    QElapsedTimer timer;
    timer.start();
    store.setEqType(3);
    QVERIFY2(timer.elapsed() < promptlyMs, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(flash::entries().value("EQ/Type"), QByteArray("3"));
    QCOMPARE(holder->state(), QProcess::Running);
    holder->kill();
    holder->waitForFinished();
}

void LocksTest::sweep_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isSwept");
    const auto row = [](const char *name, const char *content, bool isSwept) {
        QTest::addRow("%s%s", name, *content ? "" : ", empty") << QString::fromLatin1(name) << QByteArray(content) << isSwept;
    };
    row("audioData.db.new-1", "[Volume]\n0=1\n", true);
    row("audioData.db.new-18446744073709551615", "", true);
    row("audioData.db.lock", "", true);
    row("audioData.db.lock.rmlock", "", true);
    for (const char *kept : {"audioData.db.preOTA",
                             "audioData.db.MyCopy",
                             "audioData.db.saveMe",
                             "audioData.db.aBcDeF",
                             "audioData.db.new",
                             "audioData.db.new-",
                             "audioData.db.new-copy",
                             "audioData.db.new-1x",
                             "audioData.db.damaged",
                             "audioData.db.backup",
                             "audioData.db.Backup",
                             "audioData.db.BACKUP",
                             "audioData.db.old",
                             "audioData.db.bak2024",
                             "audioData.db.aBcDe",
                             "audioData.db.aBcDeFg",
                             "audioData.db.aBcDe1",
                             "audioData.db-aBcDeF",
                             "audioDataXdb.aBcDeF",
                             "other.db.aBcDeF",
                             "audioData.db.aBcDeF.txt",
                             "xaudioData.db.aBcDeF",
                             ".audioData.db.aBcDeF",
                             "aBcDeF",
                             "lock",
                             "other.db.lock"})
        row(kept, "mine", false);
}

void LocksTest::sweep()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(bool, isSwept);
    flash::setContent(flash::fullSettings());
    flash::setContent(content, name);
    const AudioDataBase store;
    QCOMPARE(flash::names().contains(name), !isSwept);
    if (!isSwept)
        QCOMPARE(flash::content(name), content);
    QCOMPARE(flash::content(), flash::fullSettings());
}

void LocksTest::sweepLeavesLinksAndFolders()
{
    QVERIFY(QDir(flash::folder()).mkpath(QStringLiteral("audioData.db.new-1")));
    QVERIFY(QFile::link(QStringLiteral("/etc/hostname"), flash::folder() + QStringLiteral("/audioData.db.new-2")));
    const QStringList before = flash::names();
    QCOMPARE(before.size(), 2);
    const AudioDataBase store;
    QCOMPARE(flash::names(), before);
}

void LocksTest::noSweepWhileSomebodyWrites()
{
    flash::setContent("[Volume]\n", QStringLiteral("audioData.db.new-1"));
    const auto holder = settingsprocess::start({QStringLiteral("hold-lock"), QString::number(60000)});
    const QStringList before = flash::names();
    const AudioDataBase store;
    QCOMPARE(flash::names(), before);
    holder->kill();
    QVERIFY(holder->waitForFinished());
    const AudioDataBase later;
    QCOMPARE(flash::names(), QStringList());
}

/// A start removes them, and so does a save that finds a dead writer's lock.
void LocksTest::temporaryFilesOfDeadWriters()
{
    const QString temporary = QStringLiteral("audioData.db.new-1234");
    flash::setContent("[Volume]\n", temporary);
    AudioDataBase store;
    QCOMPARE(flash::names(), QStringList());
    flash::setContent("[Volume]\n", temporary);
    flash::setContent("", lockName);
    store.setEqType(3);
    QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
}

/// A child lets go of a lock that was held when it was forked, and of nothing else.
void LocksTest::childrenKeepTheirFiles()
{
    AudioDataBase store;
    store.setEqType(3);
    const pid_t child = fork();
    if (child == 0) {
        const bool isComplete = hasOutputs();
        const pid_t grandchild = fork();
        if (grandchild == 0)
            _exit(hasOutputs() ? 0 : 1);
        _exit(isComplete && endsWell(grandchild) ? 0 : 1);
    }
    QVERIFY(endsWell(child));
}

QTEST_GUILESS_MAIN(LocksTest)

#include "tst_audiodatabase_locks.moc"
