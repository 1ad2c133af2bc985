#include "flash.h"
#include "settingsprocess.h"
#include "storetest.h"

#include <qzaudio/audiodatabase.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtTest/QtTest>

#include <array>
#include <ctime>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

using audio::AudioDataBase;

namespace
{

const QString lockName = QStringLiteral("audioData.db.lock");

QString pathOf(const QString &name)
{
    return flash::folder() + QLatin1Char('/') + name;
}

/// One second is what a save waits at most; the rest is for a machine that has other things to do.
int longestSaveMs()
{
    return program::isEmulated() ? 5000 : 1800;
}

/// Far from any waiting.
int promptlyMs()
{
    return program::isEmulated() ? 900 : 500;
}

/// Ends the holder and has everything written, so that nothing waits for the next test.
void letGo(QProcess &holder, AudioDataBase &store)
{
    holder.kill();
    holder.waitForFinished();
    store.save(QStringLiteral("Volume"), QStringLiteral("end"), 1);
}

} // namespace

/// Values that cannot be written now, because somebody else writes or hangs while he does.
class WaitingTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void readsAfterOneThatFailed(); // first: within a second of a wait nobody else is waited for
    void hangingWriter();
    void startOfTheManager();
    void givesWayToANewerValue();
    void aReadWritesNothing();
    void theEndOfTheStoreWrites();
    void unreadableWhileAValueWaits();
    void strangersDoNotStopIt_data();
    void strangersDoNotStopIt();
    void strangersCannotOpenTheLock();
    void unreadableLock();
    void thingsInTheLocksPlace_data();
    void thingsInTheLocksPlace();
    void thingsInTheLocksLocksPlace_data() { thingsInTheLocksPlace_data(); }
    void thingsInTheLocksLocksPlace();
    void thingsInTheFilesPlace_data();
    void thingsInTheFilesPlace();
    void childrenKeepNoLock();
    void childrenMadeWhileLocking_data();
    void childrenMadeWhileLocking();
};

void WaitingTest::hangingWriter()
{
    flash::setContent(flash::fullSettings());
    const auto holder = settingsprocess::start({QStringLiteral("hold-lock")});
    QElapsedTimer timer;
    timer.start();
    AudioDataBase store;
    QVERIFY2(timer.restart() < promptlyMs(), "a start does not wait");
    log->take();

    store.setVolume(ZelAudioTypeMedia, 17, true);
    const qint64 first = timer.restart();
    QVERIFY2(first >= 900 && first < longestSaveMs(), qPrintable(QString::number(first)));
    QCOMPARE(log->takeTexts(),
             QStringList(QStringLiteral("[ERR] THREAD void audio::AudioDataBase::save(QString, QString, QVariant) LINE -- /media/flash/nvm/audioData.db "
                                        "cannot be written: somebody else holds the lock file; waiting: Volume/0")));
    timer.restart();
    store.savevolume(); // six saves
    QVERIFY2(timer.restart() < promptlyMs(), "a holder is waited for once");
    QTest::qWait(1100); // the other process waits in real time, and so does the kernel
    timer.restart();
    store.setEqType(5);
    QVERIFY2(timer.restart() < promptlyMs(), "also later");
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 0).toInt(), 17);
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("VolumeMic"), 0).toInt(), 91);
    QVERIFY2(timer.elapsed() < promptlyMs(), "a read does not wait");
    QCOMPARE(log->takeTexts(), QStringList()); // told already
    QCOMPARE(flash::content(), flash::fullSettings());

    holder->kill();
    QVERIFY(holder->waitForFinished());
    store.setLoudNess(true);
    flash::Entries expected = flash::parse(flash::fullSettings());
    expected.insert("Volume/0", "17");
    expected.insert("EQ/Type", "5");
    expected.insert("Volume/Loudness", "true");
    QCOMPARE(flash::entries(), expected);
    const QStringList lines = log->takeTexts();
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.constFirst().contains(QLatin1String("is written again, with what waited: Volume/0 ")));
}

/// It saves four settings, and the volume key that follows saves another one.
void WaitingTest::startOfTheManager()
{
    flash::setContent(flash::fullSettings());
    const auto holder = settingsprocess::start({QStringLiteral("hold-lock")});
    QElapsedTimer timer;
    timer.start();
    ZelAudioManager manager;
    QVERIFY2(timer.elapsed() < (program::isEmulated() ? 6000 : 3000), qPrintable(QString::number(timer.elapsed())));
    timer.restart();
    manager.setVolume(ZelAudioTypeMedia, 9, true);
    QVERIFY2(timer.elapsed() < longestSaveMs(), qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(flash::content(), flash::fullSettings());
    holder->kill();
    QVERIFY(holder->waitForFinished());
    manager.setMicInputValue(33);
    QCOMPARE(flash::entries().value("Volume/0"), QByteArray("9"));
    QCOMPARE(flash::entries().value("Volume/VolumeMic"), QByteArray("33"));
}

/// Whoever wrote the key after this process had wanted to, wrote what the user wants now.
void WaitingTest::givesWayToANewerValue()
{
    flash::setContent("[Volume]\n0=20\n1=20\n");
    const auto holder = settingsprocess::start({QStringLiteral("hold-lock")});
    AudioDataBase store;
    store.setVolume(ZelAudioTypeMedia, 34, true);
    store.setVolume(ZelAudioTypePrompt, 35, true);
    holder->kill();
    QVERIFY(holder->waitForFinished());
    QCOMPARE(
        settingsprocess::run({QStringLiteral("save"), QStringLiteral("Volume"), QStringLiteral("0"), QStringLiteral("int"), QStringLiteral("50")}).exitCode, 0);
    log->take();
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 0).toInt(), 50);
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("1"), 0).toInt(), 35);
    store.setEqType(1);
    QCOMPARE(flash::entries(), (flash::Entries{{"Volume/0", "50"}, {"Volume/1", "35"}, {"EQ/Type", "1"}}));
    const QStringList lines = log->takeTexts();
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(0).endsWith(QLatin1String("has newer values of another process; given up: Volume/0")));
    QVERIFY(lines.at(1).endsWith(QLatin1String("is written again, with what waited: Volume/1")));
}

void WaitingTest::aReadWritesNothing()
{
    flash::setContent("[Volume]\n0=20\n");
    const auto holder = settingsprocess::start({QStringLiteral("hold-lock")});
    AudioDataBase store;
    store.setVolume(ZelAudioTypeMedia, 34, true);
    holder->kill();
    QVERIFY(holder->waitForFinished());
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 0).toInt(), 34);
    store.getAutoMicGain();
    QCOMPARE(flash::content(), QByteArray("[Volume]\n0=20\n"));
    letGo(*holder, store);
    QCOMPARE(flash::entries().value("Volume/0"), QByteArray("34"));
}

void WaitingTest::theEndOfTheStoreWrites()
{
    flash::setContent("[Volume]\n0=20\n");
    {
        const auto holder = settingsprocess::start({QStringLiteral("hold-lock")});
        AudioDataBase store;
        store.setVolume(ZelAudioTypeMedia, 34, true);
        holder->kill();
        QVERIFY(holder->waitForFinished());
    }
    QCOMPARE(flash::content(), QByteArray("[Volume]\n0=34\n"));
}

/// The process goes on with what it wanted to save, whatever happens to the file.
void WaitingTest::unreadableWhileAValueWaits()
{
    flash::setContent("[Volume]\n0=20\n");
    const auto holder = settingsprocess::start({QStringLiteral("hold-lock")});
    AudioDataBase store;
    store.setVolume(ZelAudioTypeMedia, 34, true);
    QVERIFY(QFile::remove(flash::settingsFile()));
    QVERIFY(QDir().mkdir(flash::settingsFile()));
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 1).toInt(), 34);
    QVERIFY(QDir().rmdir(flash::settingsFile()));
    flash::setContent("[Volume]\n0=20\n");
    letGo(*holder, store);
    QCOMPARE(flash::entries().value("Volume/0"), QByteArray("34"));
}

/// A read that fails leaves nothing behind that the next one would wait for, also where the lock is in somebody's hand.
void WaitingTest::readsAfterOneThatFailed()
{
    QVERIFY(QDir().mkdir(flash::settingsFile())); // nothing that can be read
    const auto holder = settingsprocess::start({QStringLiteral("hold-lock")});
    QElapsedTimer timer;
    timer.start();
    AudioDataBase store;
    for (int read = 0; read < 3; ++read)
        QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 11).toInt(), 11);
    QVERIFY(QDir().rmdir(flash::settingsFile()));
    flash::setContent("[Volume]\n0=20\n");
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 11).toInt(), 20);
    QVERIFY2(timer.elapsed() < promptlyMs(), "no read waits");
    log->take();
    letGo(*holder, store);
}

void WaitingTest::strangersDoNotStopIt_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a lock on the folder") << flash::folder();
    QTest::newRow("a lock on the file") << flash::settingsFile();
}

/// Anybody may open these, and hold a kernel lock on them for as long as he likes.
void WaitingTest::strangersDoNotStopIt()
{
    QFETCH(QString, name);
    flash::setContent(flash::fullSettings());
    const int stranger = open(QFile::encodeName(name).constData(), O_RDONLY | O_CLOEXEC);
    QCOMPARE(flock(stranger, LOCK_EX | LOCK_NB), 0);
    AudioDataBase store;
    QElapsedTimer timer;
    timer.start();
    store.setEqType(2);
    QVERIFY(timer.elapsed() < promptlyMs());
    QCOMPARE(flash::entries().value("EQ/Type"), QByteArray("2"));
    close(stranger);
}

void WaitingTest::strangersCannotOpenTheLock()
{
    struct Row
    {
        mode_t folder;
        mode_t lock;
    };
    // Who may write into the folder may be one of those who save.
    for (const Row row : {Row{0755, 0600}, Row{0700, 0600}, Row{0775, 0660}, Row{0777, 0666}}) {
        flash::clean();
        QCOMPARE(chmod(QFile::encodeName(flash::folder()).constData(), row.folder), 0);
        mode_t found = 0;
        const auto counter = settingsprocess::start({QStringLiteral("count"), QStringLiteral("key"), QStringLiteral("100000")});
        for (int look = 0; look < 1000000 && found == 0; ++look) {
            struct stat64 status = {};
            // Right after it was made it is its maker's alone.
            if (stat64(QFile::encodeName(pathOf(lockName)).constData(), &status) == 0 && (row.lock == 0600 || (status.st_mode & 0777) != 0600))
                found = status.st_mode & 0777;
        }
        counter->kill();
        counter->waitForFinished();
        QCOMPARE(found, row.lock);
    }
    chmod(QFile::encodeName(flash::folder()).constData(), 0755);
}

/// A writer of another user, whose lock cannot be opened, is waited for like one that hangs. After 30 seconds it is a dead one's.
void WaitingTest::unreadableLock()
{
    const QString reason = settingsprocess::whyNobodyCannotRun();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
    const QByteArray flash = QFile::encodeName(flash::folder());
    QCOMPARE(chmod(flash.constData(), 0777), 0);
    for (const bool isOld : {false, true}) {
        flash::clean();
        flash::setContent("", lockName);
        const QByteArray lock = QFile::encodeName(pathOf(lockName));
        QCOMPARE(chmod(lock.constData(), 0), 0);
        if (!isOld)
            QCOMPARE(utimensat(AT_FDCWD, lock.constData(), nullptr, 0), 0);
        const program::Run run = settingsprocess::run(
            {QStringLiteral("steps"), QStringLiteral("Volume/0=17"), QStringLiteral("Volume/0"), QStringLiteral("show")}, program::asNobody());
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QVERIFY(run.milliseconds < 2 * longestSaveMs());
        QCOMPARE(run.output.simplified(), isOld ? QStringLiteral("17 [Volume] 0=17") : QStringLiteral("17 no file"));
        QCOMPARE(run.errors.contains(QLatin1String("was never written with: Volume/0")), !isOld);
    }
    flash::clean();
    chmod(flash.constData(), 0755);
}

void WaitingTest::thingsInTheLocksPlace_data()
{
    QTest::addColumn<QString>("thing");
    QTest::addColumn<bool>("isRemoved");
    QTest::newRow("a link to nowhere") << QStringLiteral("dangling link") << true;
    QTest::newRow("a link to a file") << QStringLiteral("link") << true;
    QTest::newRow("a socket") << QStringLiteral("socket") << true;
    QTest::newRow("a pipe") << QStringLiteral("pipe") << true;
    QTest::newRow("a device") << QStringLiteral("device") << true;
    QTest::newRow("a folder") << QStringLiteral("folder") << false;
}

namespace
{

bool makeThing(const QString &thing, const QString &name)
{
    const QByteArray path = QFile::encodeName(pathOf(name));
    if (thing == QLatin1String("dangling link"))
        return symlink("/nowhere/at/all", path.constData()) == 0;
    if (thing == QLatin1String("link"))
        return symlink("/etc/passwd", path.constData()) == 0;
    if (thing == QLatin1String("pipe"))
        return mkfifo(path.constData(), 0600) == 0;
    if (thing == QLatin1String("device"))
        return mknod(path.constData(), S_IFCHR | 0600, makedev(1, 3)) == 0; // /dev/null
    if (thing == QLatin1String("folder"))
        return mkdir(path.constData(), 0700) == 0;
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(&address.sun_path[0], path.constData(), sizeof address.sun_path);
    const bool isBound = bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    close(descriptor);
    return isBound;
}

} // namespace

/// None of them is anybody's lock.
void WaitingTest::thingsInTheLocksPlace()
{
    QFETCH(QString, thing);
    QFETCH(bool, isRemoved);
    flash::setContent("[Volume]\n0=20\n");
    if (!makeThing(thing, lockName))
        QSKIP("this user cannot make one");
    QElapsedTimer timer;
    timer.start();
    AudioDataBase store;
    store.setVolume(ZelAudioTypeMedia, 17, true);
    QVERIFY(timer.elapsed() < longestSaveMs());
    QCOMPARE(flash::entries().value("Volume/0"), isRemoved ? QByteArray("17") : QByteArray("20"));
    QCOMPARE(flash::names().contains(lockName), !isRemoved);
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 0).toInt(), 17);
    if (!isRemoved) {
        QVERIFY(log->takeTexts().filter(QLatin1String("blocked by a lock file that cannot be removed")).size() == 1);
        QDir(flash::folder()).rmdir(lockName);
        store.setEqType(1);
        QCOMPARE(flash::entries().value("Volume/0"), QByteArray("17"));
    }
}

/// QSettings makes a second file where it removes a lock. Whatever is called so: nobody waits for it.
void WaitingTest::thingsInTheLocksLocksPlace()
{
    QFETCH(QString, thing);
    const QString name = lockName + QStringLiteral(".rmlock");
    flash::setContent("signed\n", lockName);
    if (!makeThing(thing, name))
        QSKIP("this user cannot make one");
    const program::Run run = settingsprocess::run({QStringLiteral("steps"), QStringLiteral("Volume/0=17"), QStringLiteral("show")});
    QVERIFY(run.milliseconds < 2 * longestSaveMs());
    QCOMPARE(run.output.simplified(), QStringLiteral("[Volume] 0=17"));
    QVERIFY(!flash::names().contains(lockName));
}

void WaitingTest::thingsInTheFilesPlace_data()
{
    QTest::addColumn<QString>("thing");
    for (const char *thing : {"socket", "pipe", "device", "folder"})
        QTest::newRow(thing) << QString::fromLatin1(thing);
}

/// It is no file that could be read, so it is not replaced; but nobody waits for it either.
void WaitingTest::thingsInTheFilesPlace()
{
    QFETCH(QString, thing);
    if (!makeThing(thing, QStringLiteral("audioData.db")))
        QSKIP("this user cannot make one");
    const program::Run run = settingsprocess::run({QStringLiteral("steps"), QStringLiteral("Volume/0=17"), QStringLiteral("Volume/0")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.milliseconds < 2 * longestSaveMs());
    QCOMPARE(run.output.trimmed(), QStringLiteral("17"));
    QCOMPARE(run.errors.count(QLatin1String("cannot be read")), 1);
    QCOMPARE(run.errors.count(QLatin1String("cannot be written")), 1);
    QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
}

/// Children live on, and their parent dies while it saves.
void WaitingTest::childrenKeepNoLock()
{
    if (program::isEmulated())
        QSKIP("the emulator has threads of its own, which a child does not get");
    // Most of the time it is in a save, so that it dies with the lock in its hand in one of the rounds at least.
    for (int round = 1; round <= 4; ++round) {
        const auto parent = settingsprocess::start({QStringLiteral("fork-while-saving")});
        parent->kill();
        QVERIFY(parent->waitForFinished());
        AudioDataBase store;
        QElapsedTimer timer;
        timer.start();
        store.setEqType(-round);
        QVERIFY(timer.elapsed() < promptlyMs());
        QCOMPARE(flash::entries().value("EQ/Type"), QByteArray::number(-round));
    }
}

void WaitingTest::childrenMadeWhileLocking_data()
{
    QTest::addColumn<QStringList>("leftovers");
    QTest::addColumn<QString>("moment");
    const QString lockOfLock = lockName + QStringLiteral(".rmlock");
    QTest::newRow("the lock file is open") << QStringList() << QStringLiteral("before-1");
    QTest::newRow("the lock is taken") << QStringList() << QStringLiteral("after-1");
    QTest::newRow("a dead writer's lock file is open") << QStringList(lockName) << QStringLiteral("before-1");
    QTest::newRow("a dead writer's lock is taken") << QStringList(lockName) << QStringLiteral("after-1");
    QTest::newRow("the lock's lock is taken") << QStringList{lockName, lockOfLock} << QStringLiteral("after-3");
}

/// The child is made at the worst moment, lives on, and the parent dies at once.
void WaitingTest::childrenMadeWhileLocking()
{
    if (program::isEmulated())
        QSKIP("the emulator has threads of its own, which a child does not get");
    QFETCH(QStringList, leftovers);
    QFETCH(QString, moment);
    flash::clean();
    for (const QString &leftover : leftovers) {
        flash::setContent("", leftover);
        const QByteArray path = QFile::encodeName(pathOf(leftover));
        const timespec before{time(nullptr) - 5, 0}; // not being made any more, and not stale yet
        const std::array<timespec, 2> times{before, before};
        QCOMPARE(utimensat(AT_FDCWD, path.constData(), times.data(), 0), 0);
    }
    const program::Run run = settingsprocess::run({QStringLiteral("fork-at-lock"), moment});
    QCOMPARE(run.exitStatus, QProcess::CrashExit);
    AudioDataBase store;
    QElapsedTimer timer;
    timer.start();
    store.setEqType(-1);
    QVERIFY(timer.elapsed() < promptlyMs());
    QCOMPARE(flash::entries().value("EQ/Type"), QByteArray("-1"));
    QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
}

QTEST_GUILESS_MAIN(WaitingTest)

#include "tst_audiodatabase_waiting.moc"
