#include "flash.h"
#include "storetest.h"
#include "systemcalls.h"

#include <qzaudio/audiodatabase.h>

#include <QtTest/QtTest>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using audio::AudioDataBase;
using systemcalls::Plan;
using Names = QStringList;

Q_DECLARE_METATYPE(systemcalls::Plan)

namespace
{

const QByteArray before = QByteArrayLiteral("[Volume]\n0=20\n");
const QString settings = QStringLiteral("audioData.db");
const QString lock = QStringLiteral("audioData.db.lock");
const QString lockOfLock = QStringLiteral("audioData.db.lock.rmlock");
const QString damaged = QStringLiteral("audioData.db.damaged");

QByteArray pathOf(const QString &name)
{
    return QFile::encodeName(flash::folder() + QLatin1Char('/') + name);
}

void removeLock()
{
    ::unlink(pathOf(lock).constData());
}

/// The next version of the settings file, while it is written.
QByteArray temporaryFile()
{
    const QStringList found = flash::names().filter(QStringLiteral("audioData.db.new-"));
    return found.isEmpty() ? QByteArray() : pathOf(found.constFirst());
}

/// A lock file that somebody has made just now, and let go.
void makeFreshLock()
{
    flash::setContent("4711\n", lock);
    ::utimensat(AT_FDCWD, pathOf(lock).constData(), nullptr, 0);
}

QString notWritten(const char *cause)
{
    return QStringLiteral("/media/flash/nvm/audioData.db cannot be written: %1; waiting: Volume/0").arg(QLatin1String(cause));
}

/// A file that is too large to be read whole.
QByteArray largeFile()
{
    return before + QByteArray(2 * 1024 * 1024, ';') + '\n';
}

} // namespace

/// Answers of the system that a sound flash gives seldom or never, one at a time: all settings are kept, and what went wrong is told.
class SystemCallsTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void saveIsRefused_data();
    void saveIsRefused();
    void saveIsMadeAllTheSame_data();
    void saveIsMadeAllTheSame();
    void lockHasNoState();
    void lockOfAnotherOne_data();
    void lockOfAnotherOne();
    void lockOfAnotherOneHidden();
    void noLockAfterAnotherOne();
    void startGivesUp();
    void givesWayAtTheEnd();
    void temporaryNameIsTaken_data();
    void temporaryNameIsTaken();
    void chainOfLinks_data();
    void chainOfLinks();
    void readIsRefused_data();
    void readIsRefused();
    void fileShrinksWhileItIsRead();
    void largeFileIsKept_data();
    void largeFileIsKept();
    void largeFileCannotBeKept();
    void damageOfTheSameSize();
    void damageCannotBeKept();
    void folderCannotBeListed_data();
    void folderCannotBeListed();
    void lockOfALockInUse();

private:
    QStringList takeErrors();
};

void SystemCallsTest::cleanup()
{
    systemcalls::forget();
    if (::chmod(pathOf(QString()).constData(), 0755) != 0)
        qFatal("the flash is not as it was");
    log.reset();
}

/// What was told, without what stands before the values.
QStringList SystemCallsTest::takeErrors()
{
    QStringList texts;
    const QStringList lines = log->takeTexts().filter(QStringLiteral("[ERR]"));
    for (const QString &line : lines)
        texts.append(line.section(QStringLiteral(" -- "), 1));
    return texts;
}

void SystemCallsTest::saveIsRefused_data()
{
    QTest::addColumn<QByteArray>("function");
    QTest::addColumn<Plan>("plan");
    QTest::addColumn<QString>("cause");
    const auto row = [](const char *name, const char *function, const Plan &plan, const char *cause) {
        QTest::newRow(name) << QByteArray(function) << plan << notWritten(cause);
    };
    row("the new file has no state", "fstat64", {EIO, 2}, "fstat: Input/output error");
    row("the old file's permissions are refused", "fchmod", {EPERM}, "fchmod: Operation not permitted");
    row("a later time is refused", "futimens", {EPERM}, "futimens: Operation not permitted");
    row("the new file does not reach the flash", "fsync", {EIO}, "fsync: Input/output error");
    row("it cannot be read back", "pread", {EIO}, "pread: Input/output error");
    row("it was interrupted again and again", "pread", {EINTR, 0, 1000}, "pread: Interrupted system call");
    row("it is shorter than it was written",
        "pread",
        {0, 0, 1, [] { QVERIFY(::truncate(temporaryFile().constData(), 3) == 0); }},
        "what was written reads back otherwise");
    row("a bit has turned",
        "pread",
        {0,
         0,
         1,
         [] {
             QFile file(QFile::decodeName(temporaryFile()));
             QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(10) && file.putChar('1'));
         }},
        "what was written reads back otherwise");
    row("it has become longer",
        "pread",
        {0,
         0,
         1,
         [] {
             QFile file(QFile::decodeName(temporaryFile()));
             QVERIFY(file.open(QIODevice::Append) && file.putChar('\n'));
         }},
        "what was written reads back otherwise");
    row("it cannot take the name", "rename", {EROFS}, "rename: Read-only file system");
    row("somebody takes the lock again and again", "fsync", {0, 0, 3, removeLock}, "somebody else took the lock");
    row("the folder comes and goes", "open", {ENOENT, 0, 2}, "open the lock file: No such file or directory");
}

void SystemCallsTest::saveIsRefused()
{
    QFETCH(QByteArray, function);
    QFETCH(Plan, plan);
    flash::setContent(before);
    // So that the new file has something to take over.
    QCOMPARE(::chmod(pathOf(settings).constData(), 0640), 0);
    const QDateTime tomorrow = QDateTime::currentDateTime().addDays(1);
    {
        QFile file(flash::settingsFile());
        QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(tomorrow, QFileDevice::FileModificationTime));
    }
    AudioDataBase store;
    systemcalls::plan(function, plan);
    store.setVolume(ZelAudioTypeMedia, 17, true);
    const int followed = systemcalls::followed(function);
    systemcalls::forget();
    QVERIFY(followed >= 1);
    QFETCH(QString, cause);
    QCOMPARE(takeErrors(), QStringList(cause));
    QCOMPARE(flash::content(), before);
    QCOMPARE(flash::names(), Names(settings));
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 0).toInt(), 17);
    store.setEqType(2);
    QCOMPARE(flash::entries(), (flash::Entries{{"Volume/0", "17"}, {"EQ/Type", "2"}}));
    QCOMPARE(QFileInfo(flash::settingsFile()).permissions() & 0xfff, QFile::Permissions(0x6640) & 0xfff);
    QVERIFY(QFileInfo(flash::settingsFile()).lastModified() > tomorrow);
}

void SystemCallsTest::saveIsMadeAllTheSame_data()
{
    QTest::addColumn<QByteArray>("function");
    QTest::addColumn<Plan>("plan");
    QTest::addColumn<QStringList>("errors");
    const QString told = QStringLiteral("/media/flash/nvm/audioData.db may not outlive a power cut: ");
    QTest::newRow("the folder's group is refused for the lock") << QByteArray("fchown") << Plan{EPERM} << QStringList();
    QTest::newRow("the others' rights are refused for the lock") << QByteArray("fchmod") << Plan{EPERM} << QStringList();
    QTest::newRow("no kernel locks") << QByteArray("flock") << Plan{ENOLCK} << QStringList();
    QTest::newRow("somebody takes the lock for a dead one's") << QByteArray("flock") << Plan{EWOULDBLOCK} << QStringList();
    QTest::newRow("somebody has removed the lock for a dead one's") << QByteArray("flock") << Plan{0, 0, 1, removeLock} << QStringList();
    QTest::newRow("somebody takes the lock twice") << QByteArray("fsync") << Plan{0, 0, 2, removeLock} << QStringList();
    QTest::newRow("the lock's state is lost at the end") << QByteArray("fstat64") << Plan{EIO, 3} << QStringList();
    QTest::newRow("a folder that cannot be synchronized") << QByteArray("fsync") << Plan{EINVAL, 1} << QStringList();
    QTest::newRow("a folder whose synchronization fails")
        << QByteArray("fsync") << Plan{EIO, 1} << QStringList(told + QStringLiteral("fsync the folder: Input/output error"));
    QTest::newRow("a folder that cannot be opened") << QByteArray("open") << Plan{EMFILE, 3}
                                                    << QStringList(told + QStringLiteral("open the folder: Too many open files"));
    QTest::newRow("only signals in between") << QByteArray("fsync") << Plan{EINTR, 0, 99} << QStringList();
}

void SystemCallsTest::saveIsMadeAllTheSame()
{
    QFETCH(QByteArray, function);
    QFETCH(Plan, plan);
    if (::geteuid() != 0 && function == "fchown")
        QSKIP("only root can give the folder to another group");
    flash::setContent(before);
    QCOMPARE(::chmod(pathOf(QString()).constData(), 0777), 0);
    if (::geteuid() == 0)
        QCOMPARE(::chown(pathOf(QString()).constData(), 0, 1), 0);
    AudioDataBase store;
    systemcalls::plan(function, plan);
    store.setVolume(ZelAudioTypeMedia, 17, true);
    const int followed = systemcalls::followed(function);
    systemcalls::forget();
    QVERIFY(followed >= 1);
    QTEST(takeErrors(), "errors");
    QCOMPARE(flash::content(), QByteArray("[Volume]\n0=17\n"));
    QCOMPARE(flash::names(), Names(settings));
}

/// The lock file stays, and is a dead one's for the next save.
void SystemCallsTest::lockHasNoState()
{
    flash::setContent(before);
    AudioDataBase store;
    systemcalls::plan("fstat64", {EIO});
    store.setVolume(ZelAudioTypeMedia, 17, true);
    QCOMPARE(systemcalls::followed("fstat64"), 1);
    systemcalls::forget();
    QCOMPARE(takeErrors(), QStringList(notWritten("fstat: Input/output error")));
    QCOMPARE(flash::content(), before);
    QCOMPARE(flash::names(), Names({settings, lock}));
    store.setEqType(2);
    QCOMPARE(flash::entries(), (flash::Entries{{"Volume/0", "17"}, {"EQ/Type", "2"}}));
    QCOMPARE(flash::names(), Names(settings));
}

void SystemCallsTest::lockOfAnotherOne_data()
{
    QTest::addColumn<QByteArray>("function");
    QTest::addColumn<Plan>("plan");
    QTest::addColumn<QStringList>("errors");
    const QStringList saved;
    QTest::newRow("is a dead one's") << QByteArray() << Plan() << saved;
    QTest::newRow("has gone before it is looked at") << QByteArray("open") << Plan{0, 1, 1, removeLock} << saved;
    QTest::newRow("cannot be opened") << QByteArray("open") << Plan{EIO, 1} << QStringList(notWritten("open the lock file: Input/output error"));
    QTest::newRow("cannot be opened, and has gone then") << QByteArray("open") << Plan{EIO, 1, 1, removeLock} << saved;
    QTest::newRow("has no state") << QByteArray("fstat64") << Plan{EIO} << QStringList(notWritten("fstat: Input/output error"));
    QTest::newRow("goes while it is looked at") << QByteArray("flock") << Plan{0, 0, 1, removeLock} << saved;
    QTest::newRow("has no state any more") << QByteArray("fstat64") << Plan{EIO, 1} << saved;
    QTest::newRow("goes at the last moment") << QByteArray("fstat64") << Plan{0, 2, 1, removeLock} << saved;
    QTest::newRow("has no state at the last moment") << QByteArray("fstat64") << Plan{EIO, 2} << saved;
    QTest::newRow("is removed by another one, too") << QByteArray("unlink") << Plan{0, 0, 1, removeLock} << saved;
    QTest::newRow("cannot be removed") << QByteArray("unlink") << Plan{EROFS} << QStringList(notWritten("it is blocked by a lock file that cannot be removed"));
}

/// A lock file that nobody holds comes to light in a save.
void SystemCallsTest::lockOfAnotherOne()
{
    QFETCH(QByteArray, function);
    QFETCH(Plan, plan);
    QFETCH(QStringList, errors);
    flash::setContent(before);
    AudioDataBase store;
    makeFreshLock();
    if (!function.isEmpty())
        systemcalls::plan(function, plan);
    store.setVolume(ZelAudioTypeMedia, 17, true);
    const int followed = systemcalls::followed(function);
    systemcalls::forget();
    QCOMPARE(followed, function.isEmpty() ? 0 : 1);
    QCOMPARE(takeErrors(), errors);
    QCOMPARE(flash::content(), errors.isEmpty() ? QByteArray("[Volume]\n0=17\n") : before);
    QCOMPARE(flash::names(), errors.isEmpty() ? Names(settings) : Names({settings, lock}));
    store.setEqType(2);
    QCOMPARE(flash::entries(), (flash::Entries{{"Volume/0", "17"}, {"EQ/Type", "2"}}));
    QCOMPARE(flash::names(), Names(settings));
}

void SystemCallsTest::lockOfAnotherOneHidden()
{
    flash::setContent(before);
    AudioDataBase store;
    makeFreshLock();
    systemcalls::plan("open", {EIO, 1});
    systemcalls::plan("lstat64", {EACCES});
    store.setVolume(ZelAudioTypeMedia, 17, true);
    QCOMPARE(systemcalls::followed("lstat64"), 1);
    systemcalls::forget();
    QCOMPARE(takeErrors(), QStringList(notWritten("lstat: Permission denied")));
    QCOMPARE(flash::content(), before);
    store.setEqType(2);
    QCOMPARE(flash::entries(), (flash::Entries{{"Volume/0", "17"}, {"EQ/Type", "2"}}));
}

/// What a dead writer left is removed, and still there is no lock of one's own.
void SystemCallsTest::noLockAfterAnotherOne()
{
    flash::setContent(before);
    AudioDataBase store;
    makeFreshLock();
    systemcalls::plan("open", {EMFILE, 2});
    store.setVolume(ZelAudioTypeMedia, 17, true);
    QCOMPARE(systemcalls::followed("open"), 1);
    systemcalls::forget();
    QCOMPARE(takeErrors(), QStringList(notWritten("open the lock file: Too many open files")));
    QCOMPARE(flash::content(), before);
    QCOMPARE(flash::names(), Names(settings));
    store.setEqType(2);
    QCOMPARE(flash::entries(), (flash::Entries{{"Volume/0", "17"}, {"EQ/Type", "2"}}));
}

/// A start does not wait for those who write all the time; they clean up.
void SystemCallsTest::startGivesUp()
{
    const QString left = QStringLiteral("audioData.db.new-7");
    flash::setContent(before);
    flash::setContent("left by a dead writer", left);
    systemcalls::plan("flock", {0, 0, 1000, removeLock});
    const AudioDataBase store;
    QCOMPARE(systemcalls::followed("flock"), 101);
    systemcalls::forget();
    QCOMPARE(takeErrors(), QStringList());
    QCOMPARE(flash::names(), Names({settings, left}));
}

/// The only value that waits is another one's by now: there is nothing to write at the end.
void SystemCallsTest::givesWayAtTheEnd()
{
    flash::setContent(before);
    const QByteArray newer = "[Volume]\n0=50\n";
    {
        AudioDataBase store;
        systemcalls::plan("rename", {EROFS});
        store.setVolume(ZelAudioTypeMedia, 17, true);
        systemcalls::forget();
        flash::setContent(newer);
        log->take();
        systemcalls::plan("rename", {EROFS});
    }
    QCOMPARE(systemcalls::followed("rename"), 0);
    QCOMPARE(takeErrors(), QStringList(QStringLiteral("/media/flash/nvm/audioData.db has newer values of another process; given up: Volume/0")));
    QCOMPARE(flash::content(), newer);
    QCOMPARE(flash::names(), Names(settings));
}

void SystemCallsTest::temporaryNameIsTaken_data()
{
    QTest::addColumn<bool>("isRemovable");
    QTest::newRow("and is given free") << true;
    QTest::newRow("and cannot be given free") << false;
}

/// A dead writer's file has the very name that the next one gets, from the number of its lock file.
void SystemCallsTest::temporaryNameIsTaken()
{
    QFETCH(bool, isRemovable);
    flash::setContent(before);
    AudioDataBase store;
    // Names of one file, which a link does not count up; a lock file made next has the next number.
    flash::setContent("left by a dead writer", QStringLiteral("x"));
    struct stat64 status = {};
    QCOMPARE(::stat64(pathOf(QStringLiteral("x")).constData(), &status), 0);
    constexpr int names = 20;
    for (int further = 1; further <= names; ++further) {
        const QString name = QStringLiteral("audioData.db.new-%1").arg(status.st_ino + static_cast<unsigned int>(further));
        QCOMPARE(::link(pathOf(QStringLiteral("x")).constData(), pathOf(name).constData()), 0);
    }
    if (!isRemovable)
        systemcalls::plan("unlink", {EPERM});
    store.setVolume(ZelAudioTypeMedia, 17, true);
    systemcalls::forget();
    if (flash::names().size() == names + 2)
        QSKIP("the file system here does not number its files one after the other");
    QCOMPARE(takeErrors(), isRemovable ? QStringList() : QStringList(notWritten("open: Operation not permitted")));
    QCOMPARE(flash::content(), isRemovable ? QByteArray("[Volume]\n0=17\n") : before);
    QCOMPARE(flash::names().size(), names + 1);
    QCOMPARE(flash::content(QStringLiteral("x")), QByteArray("left by a dead writer"));
    store.setEqType(2);
    QCOMPARE(flash::entries(), (flash::Entries{{"Volume/0", "17"}, {"EQ/Type", "2"}}));
}

void SystemCallsTest::chainOfLinks_data()
{
    QTest::addColumn<int>("links");
    QTest::addColumn<int>("followed"); // the next one is replaced by the file
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("eight") << 8 << 8;
    QTest::newRow("nine") << 9 << 8;
}

/// Links of an integrator are left alone as far as they are followed.
void SystemCallsTest::chainOfLinks()
{
    QFETCH(int, links);
    QFETCH(int, followed);
    const auto name = [](int number) { return number == 0 ? settings : QStringLiteral("link%1").arg(number); };
    for (int number = 0; number < links; ++number)
        QCOMPARE(::symlink(pathOf(name(number + 1)).constData(), pathOf(name(number)).constData()), 0);
    flash::setContent(before, name(links));
    AudioDataBase store;
    store.setVolume(ZelAudioTypeMedia, 17, true);
    QCOMPARE(takeErrors(), QStringList());
    QCOMPARE(flash::content(), QByteArray("[Volume]\n0=17\n"));
    for (int number = 0; number <= links; ++number)
        QCOMPARE(QFileInfo(QFile::decodeName(pathOf(name(number)))).isSymLink(), number < followed);
    QCOMPARE(flash::content(name(links)), followed == links ? QByteArray("[Volume]\n0=17\n") : before);
}

void SystemCallsTest::readIsRefused_data()
{
    QTest::addColumn<QByteArray>("function");
    QTest::addColumn<QString>("cause");
    QTest::newRow("it cannot be opened") << QByteArray("open") << QStringLiteral("open: Input/output error");
    QTest::newRow("it has no state") << QByteArray("fstat64") << QStringLiteral("fstat: Input/output error");
    QTest::newRow("it has no bytes") << QByteArray("read") << QStringLiteral("read: Input/output error");
}

/// Then the default counts, and it is told why.
void SystemCallsTest::readIsRefused()
{
    QFETCH(QByteArray, function);
    QFETCH(QString, cause);
    flash::setContent(before);
    AudioDataBase store;
    systemcalls::plan(function, {EIO});
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 7).toInt(), 7);
    QCOMPARE(systemcalls::followed(function), 1);
    QCOMPARE(takeErrors(), QStringList(QStringLiteral("/media/flash/nvm/audioData.db cannot be read: %1; defaults count").arg(cause)));
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 7).toInt(), 20);
}

/// What is there counts, as far as it goes.
void SystemCallsTest::fileShrinksWhileItIsRead()
{
    flash::setContent("[Volume]\n0=20\n1=19\n");
    AudioDataBase store;
    systemcalls::plan("read", {0, 0, 1, [] { QCOMPARE(::truncate(pathOf(settings).constData(), before.size()), 0); }});
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 7).toInt(), 20);
    QCOMPARE(systemcalls::followed("read"), 1);
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("1"), 7).toInt(), 7);
    QCOMPARE(takeErrors(), QStringList());
}

void SystemCallsTest::largeFileIsKept_data()
{
    QTest::addColumn<QByteArray>("function");
    QTest::addColumn<bool>("isWhole");
    QTest::newRow("by a second name") << QByteArray() << true;
    QTest::newRow("its beginning, without links") << QByteArray("link") << false;
    QTest::newRow("its beginning, where the name is refused") << QByteArray("rename") << false;
}

void SystemCallsTest::largeFileIsKept()
{
    QFETCH(QByteArray, function);
    QFETCH(bool, isWhole);
    flash::setContent(largeFile());
    if (!function.isEmpty())
        systemcalls::plan(function, {EPERM});
    AudioDataBase store;
    const int followed = systemcalls::followed(function);
    systemcalls::forget();
    QCOMPARE(followed, function.isEmpty() ? 0 : 1);
    const QString told = QStringLiteral("/media/flash/nvm/audioData.db is damaged, more than 1048576 bytes; kept as /media/flash/nvm/audioData.db.damaged");
    QCOMPARE(takeErrors(), QStringList(told));
    QCOMPARE(flash::names(), Names({settings, damaged}));
    QVERIFY(flash::content(damaged) == (isWhole ? largeFile() : largeFile().left(1024 * 1024)));
    QVERIFY(flash::content() == largeFile());
    QCOMPARE(store.getVolume(ZelAudioTypeMedia), 20);
    store.setEqType(2); // before which all of it is kept
    QCOMPARE(flash::entries().value("EQ/Type"), QByteArray("2"));
    QVERIFY(flash::content(damaged) == largeFile());
}

/// Before the only copy is lost nothing is saved.
void SystemCallsTest::largeFileCannotBeKept()
{
    flash::setContent(largeFile());
    AudioDataBase store;
    QVERIFY(QFile::remove(QFile::decodeName(pathOf(damaged))));
    log->take();
    systemcalls::plan("link", {EPERM});
    systemcalls::plan("rename", {EIO});
    store.setVolume(ZelAudioTypeMedia, 17, true);
    QCOMPARE(systemcalls::followed("rename"), 1);
    systemcalls::forget();
    const QString cause = QStringLiteral("cannot be kept: link: Operation not permitted");
    const QStringList told{
        QLatin1String("/media/flash/nvm/audioData.db is damaged, more than 1048576 bytes; ") + cause,
        QStringLiteral("/media/flash/nvm/audioData.db cannot be written: the damaged file %1; waiting: Volume/0").arg(cause),
    };
    QCOMPARE(takeErrors(), told);
    QVERIFY(flash::content() == largeFile());
    QCOMPARE(flash::names(), Names(settings));
    store.setEqType(2);
    QCOMPARE(flash::names(), Names({settings, damaged}));
    QVERIFY(flash::content(damaged) == largeFile());
    QCOMPARE(flash::entries().value("Volume/0"), QByteArray("17"));
}

/// The latest damage is what is kept.
void SystemCallsTest::damageOfTheSameSize()
{
    for (const QByteArray &content : {QByteArray(before + "first\n"), QByteArray(before + "other\n")}) {
        flash::setContent(content);
        const AudioDataBase store;
        QCOMPARE(flash::content(damaged), content);
        QCOMPARE(flash::content(), content);
    }
    AudioDataBase().setEqType(2); // all is well again
}

/// Neither a copy nor a second name.
void SystemCallsTest::damageCannotBeKept()
{
    const QByteArray content = before + "half a li\n";
    flash::setContent(content);
    systemcalls::plan("fsync", {EIO});
    systemcalls::plan("link", {EPERM});
    AudioDataBase store;
    QCOMPARE(systemcalls::followed("link"), 1);
    systemcalls::forget();
    const QString told = QStringLiteral("/media/flash/nvm/audioData.db is damaged, 1 lines; cannot be kept: fsync: Input/output error");
    QCOMPARE(takeErrors(), QStringList(told));
    QCOMPARE(flash::content(), content);
    QCOMPARE(flash::names(), Names(settings));
    QCOMPARE(store.getVolume(ZelAudioTypeMedia), 20);
    store.setEqType(2);
    QCOMPARE(flash::content(damaged), content);
}

void SystemCallsTest::folderCannotBeListed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isSwept");
    QTest::newRow("a dead writer's lock") << lock << true;
    QTest::newRow("a dead one's lock of a lock") << lockOfLock << true;
    QTest::newRow("a temporary file, which nobody sees") << QStringLiteral("audioData.db.new-7") << false;
}

/// The names that are known are looked for all the same.
void SystemCallsTest::folderCannotBeListed()
{
    QFETCH(QString, name);
    QFETCH(bool, isSwept);
    flash::setContent(before);
    flash::setContent("4711\n", name);
    systemcalls::plan("opendir", {EACCES, 0, 10});
    const AudioDataBase store;
    QVERIFY(systemcalls::followed("opendir") >= 1);
    systemcalls::forget();
    QCOMPARE(flash::names().contains(name), !isSwept);
    QCOMPARE(takeErrors(), QStringList());
}

/// Who removes a stale lock with QSettings holds another one, which stays while he lives.
void SystemCallsTest::lockOfALockInUse()
{
    flash::setContent(before);
    flash::setContent("4711\n", lockOfLock);
    const int other = ::open(pathOf(lockOfLock).constData(), O_RDONLY | O_CLOEXEC);
    QCOMPARE(::flock(other, LOCK_EX | LOCK_NB), 0);
    {
        const AudioDataBase store;
    }
    QCOMPARE(flash::names(), Names({settings, lockOfLock}));
    ::close(other);
    const AudioDataBase store;
    QCOMPARE(flash::names(), Names(settings));
}

QTEST_GUILESS_MAIN(SystemCallsTest)

#include "tst_audiodatabase_systemcalls.moc"
