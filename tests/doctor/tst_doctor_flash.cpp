#include "doctortest.h"

#include <QtTest/QtTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int flashStatus = 12;
constexpr int settingsStatus = 13;
constexpr int noBusStatus = 14; // when nothing else is wrong: here is no bus

const QString lockName = QStringLiteral("audioData.db.lock");
const QString lockPath = QStringLiteral("/media/flash/nvm/audioData.db.lock");

/// The kernel's lock of a process that saves; here the test is that process.
class SavingProcess
{
public:
    explicit SavingProcess(const QString &lock)
        : m_file(::open(QFile::encodeName(lock).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
        , m_isSaving(::flock(m_file, LOCK_EX | LOCK_NB) == 0)
    {
    }
    ~SavingProcess() { ::close(m_file); }

    bool isSaving() const { return m_isSaving; }

private:
    Q_DISABLE_COPY(SavingProcess)

    int m_file;
    bool m_isSaving;
};

QStringList writeTest(int patience = 60)
{
    return {QStringLiteral("--write-test"), QStringLiteral("--patience"), QString::number(patience)};
}

/// How long a disk takes for fsync() is its own affair.
Expected inMemory(Expected expected)
{
    expected.exitStatus = flashStatus;
    return expected;
}

Unit sickFlash(const QStringList &before, const QString &way)
{
    return {before, {{QStringLiteral("SICK_CALL"), QStringLiteral("fsync")}, {QStringLiteral("SICK_WAY"), way}}, true};
}

} // namespace

/// What the doctor says of the flash, the settings file and its lock.
class FlashDoctorTest : public DoctorTest
{
    Q_OBJECT

private Q_SLOTS:
    void flash_data();
    void flash();
    void ordinaryUser_data();
    void ordinaryUser();
    void folderThatMayNotBeEntered();
    void settings_data();
    void settings();
    void heldLock_data();
    void heldLock();
    void heldByAnotherUser();
    void heldBySomebodyUnknown();
    void deadProcessOfAnotherUser_data();
    void deadProcessOfAnotherUser();

private:
    static Expected butForTheBus(Expected expected);
};

Expected FlashDoctorTest::butForTheBus(Expected expected)
{
    if (expected.exitStatus == 0)
        expected.exitStatus = noBusStatus;
    return expected;
}

void FlashDoctorTest::flash_data()
{
    QTest::addColumn<Unit>("unit"); // %1 is the test's folder
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<Expected>("expected");
    const QStringList noArguments;
    const auto row = [](const char *name, const Unit &unit, const QStringList &arguments, const Expected &expected) {
        QTest::newRow(name) << unit << arguments << expected;
    };
    const auto words = [](const char *text) { return QString::fromLatin1(text).split(QLatin1Char(' ')); };
    const QString withFlash = QStringLiteral(WITH_FLASH);
    const QStringList onDisk{withFlash, QStringLiteral("--dir"), QStringLiteral("%1")};
    const QStringList full = QStringList{withFlash, QStringLiteral("--size"), QStringLiteral("4096")}
        + QStringList{
            QStringLiteral("sh"), QStringLiteral("-c"), QStringLiteral("printf %04096d 0 >/media/flash/nvm/full && exec \"$@\""), QStringLiteral("sh")};
    const QStringList noFlash = words("bwrap --dev-bind / / --tmpfs /media --remount-ro /media");
    const QStringList noFolder = words("bwrap --dev-bind / / --tmpfs /media --bind %1 /media/flash");
    const QStringList notAFolder = words("bwrap --dev-bind / / --tmpfs /media --ro-bind /dev/null /media/flash");
    const QString there = QStringLiteral("/media/flash/nvm");

    row("on disk", {onDisk, {}, false}, noArguments, good("flash", "folder", QStringLiteral("/media/flash/nvm is there"), {{QStringLiteral("folder"), there}}));
    row("on disk, writable",
        {onDisk, {}, false},
        noArguments,
        good("flash", "writable", QStringLiteral(" may write there"), {{QStringLiteral("writable"), true}}));
    row("on disk, room", {onDisk, {}, false}, noArguments, good("flash", "room", QStringLiteral("B are free")));
    row("not written to", {onDisk, {}, false}, noArguments, note("flash", "sync", QStringLiteral("not tried; --write-test")));
    row("written to", {{withFlash}, {}, false}, writeTest(), inMemory(good("flash", "sync", QStringLiteral("written, synchronized and replaced within "))));
    row("in memory",
        {{withFlash}, {}, false},
        noArguments,
        wrong(flashStatus,
              "flash",
              "lasting",
              QStringLiteral("tmpfs of tmpfs, mounted at /media/flash/nvm: in memory, gone with the power"),
              {{QStringLiteral("fileSystem"), QStringLiteral("tmpfs")}}));
    row("read-only",
        {QStringList(onDisk) << QStringLiteral("--read-only"), {}, false},
        writeTest(),
        wrong(flashStatus, "flash", "writable", QStringLiteral("/media/flash/nvm is mounted read-only"), {{QStringLiteral("writable"), false}}));
    row("read-only, not written to",
        {QStringList(onDisk) << QStringLiteral("--read-only"), {}, false},
        writeTest(),
        inMemory(note("flash", "sync", QStringLiteral("not tried: nothing can be written there"))));
    row("mounted nobody knows where",
        {words("bwrap --dev-bind / / --tmpfs /media --bind %1 /media/flash/nvm --ro-bind /dev/null /proc/self/mountinfo"), {}, false},
        noArguments,
        note("flash", "lasting", QStringLiteral("the kernel does not tell what is mounted there")));
    row("nearly full",
        {{withFlash, QStringLiteral("--size"), QStringLiteral("8192")}, {}, false},
        noArguments,
        wrong(flashStatus, "flash", "room", QStringLiteral("8 kB are free, and saves want 64 kB"), {{QStringLiteral("freeBytes"), 8192}}));
    row("full", {full, {}, false}, noArguments, wrong(flashStatus, "flash", "room", QStringLiteral("0 kB are free")));
    row("full, written to",
        {full, {}, false},
        writeTest(),
        wrong(flashStatus, "flash", "sync", QStringLiteral("write: No space left on device"), {{QStringLiteral("lastStep"), QStringLiteral("write")}}));
    row("none", {noFlash, {}, false}, noArguments, wrong(flashStatus, "flash", "folder", QStringLiteral("/media/flash/nvm is not there, and ")));
    row("none yet",
        {noFolder, {}, false},
        noArguments,
        note("flash", "folder", QStringLiteral("/media/flash/nvm is not there; the first save makes it in /media/flash")));
    row("none yet, not written to", {noFolder, {}, false}, writeTest(), note("flash", "sync", QStringLiteral("not tried: the folder is not there")));
    row("none yet, and no settings",
        {noFolder, {}, false},
        noArguments,
        note("settings", "file", QStringLiteral("there is none that this user can reach: all settings have their defaults")));
    row("something else in its place",
        {notAFolder, {}, false},
        noArguments,
        wrong(flashStatus, "flash", "folder", QStringLiteral("/media/flash is no folder")));
    row("fsync does not come back",
        sickFlash(onDisk, QStringLiteral("hangs")),
        writeTest(1),
        wrong(
            flashStatus, "flash", "sync", QStringLiteral("fsync does not come back within 1000 ms"), {{QStringLiteral("lastStep"), QStringLiteral("fsync")}}));
    row("fsync fails",
        sickFlash(onDisk, QStringLiteral("refuses")),
        writeTest(),
        wrong(flashStatus, "flash", "sync", QStringLiteral("fsync: Input/output error")));
    row("fsync is well",
        sickFlash({withFlash}, {}),
        writeTest(),
        inMemory(good("flash", "sync", QStringLiteral("written, synchronized and replaced within "))));
}

void FlashDoctorTest::flash()
{
    QFETCH(Unit, unit);
    QFETCH(QStringList, arguments);
    QFETCH(Expected, expected);
    unit.before.replaceInStrings(QStringLiteral("%1"), folder());
    finds(unit, arguments, butForTheBus(expected));
    // Whatever the flash did.
    QCOMPARE(QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
}

void FlashDoctorTest::ordinaryUser_data()
{
    QTest::addColumn<uint>("mode"); // of the folder
    QTest::addColumn<Expected>("expected");
    QTest::newRow("may write") << 0777U
                               << good("flash", "writable", QStringLiteral("nobody may write there"), {{QStringLiteral("user"), QStringLiteral("nobody")}});
    QTest::newRow("may not write") << 0755U << wrong(flashStatus, "flash", "writable", QStringLiteral("nobody may not write there"));
    QTest::newRow("may write, with the sticky bit")
        << 01777U << note("flash", "writable", QStringLiteral("only a file's owner can replace it"), {{QStringLiteral("sticky"), true}});
}

void FlashDoctorTest::ordinaryUser()
{
    const QString reason = whyNoOrdinaryUser();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
    QFETCH(uint, mode);
    QFETCH(Expected, expected);
    QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), mode), 0);
    finds({asOrdinaryUser(), {}, false}, {}, butForTheBus(expected));
}

void FlashDoctorTest::folderThatMayNotBeEntered()
{
    const QString reason = whyNoOrdinaryUser();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
    finds({withFlash() + program::asNobody(), {}, false}, {}, wrong(flashStatus, "flash", "folder", QStringLiteral("nobody may not enter /media/flash")));
    QVERIFY(write(QStringLiteral("audioData.db"), "[Volume]\n0=20\n"));
    QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 0700), 0);
    Expected settings = note("settings", "file", QStringLiteral("there is none that this user can reach"));
    settings.exitStatus = flashStatus;
    finds({asOrdinaryUser(), {}, false}, {}, settings);
}

void FlashDoctorTest::settings_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<Expected>("expected");
    const QString file = QStringLiteral("audioData.db");
    const QByteArray settings = "[Volume]\n0=20\n1=30\n";
    QTest::newRow("settings") << file << settings
                              << good("settings",
                                      "file",
                                      QStringLiteral("/media/flash/nvm/audioData.db has 2 settings in 19 bytes"),
                                      {{QStringLiteral("settings"), 2}});
    QTest::newRow("no settings") << QStringLiteral("of somebody else") << QByteArray()
                                 << note("settings", "file", QStringLiteral("there is none yet: all settings have their defaults"));
    const Expected damaged = wrong(settingsStatus, "settings", "file", QStringLiteral("/media/flash/nvm/audioData.db has lines that are no settings"));
    QTest::newRow("damaged") << file << QByteArray("[Volume]\n0=20\nno setting\n") << damaged;
    QTest::newRow("last line without its end") << file << QByteArray("[Volume]\n0=20\n1=30") << damaged;
    QTest::newRow("open quotation mark") << file << QByteArray("[Volume]\n0=\"20\n1=30\n2=22\n") << damaged;
    QTest::newRow("backslash at an end") << file << QByteArray("[Volume]\n0=20\\\n1=30\n") << damaged;
    QTest::newRow("what is no damage") << file << QByteArray("[Volume]\r\n0=20 ; \"\r\n1=\"3\\\"0\"\r\n; by hand\\")
                                       << good("settings", "file", QStringLiteral("has 2 settings in "));
    QTest::newRow("object that no memory holds") << file << QByteArray("[Volume]\n0=20\n1=@Variant(\\0\\0\\0\\x9\\x7f\\xff\\xff\\xff)\n") << damaged;
    QTest::newRow("object of a program") << file << QByteArray("[Volume]\n0=@Variant(\\0\\0\\0\\x7f\\0\\0\\0\\x2x\\0)\n") << damaged;
    QTest::newRow("numbers as objects") << file << QByteArray("[Volume]\n0=@Variant(\\0\\0\\0\\x87\\x41\\xa0\\0\\0)\n1=@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x14)\n")
                                        << good("settings", "file", QStringLiteral("has 2 settings in "));
    QTest::newRow("too large") << file << QByteArray(1024 * 1024 + 1, '\n')
                               << wrong(settingsStatus, "settings", "file", QStringLiteral("has 1048577 bytes: taken for damaged, the first 1048576 count"));
    QTest::newRow("not too large") << file << QByteArray(1024 * 1024, '\n') << good("settings", "file", QStringLiteral("0 settings in 1048576 bytes"));
    QTest::newRow("a folder") << QStringLiteral("audioData.db/") << QByteArray()
                              << wrong(settingsStatus, "settings", "file", QStringLiteral("/media/flash/nvm/audioData.db is no file"));
    QTest::newRow("a pipe") << QStringLiteral("audioData.db|") << QByteArray()
                            << wrong(settingsStatus, "settings", "file", QStringLiteral("/media/flash/nvm/audioData.db is no file"));
    QTest::newRow("lock of a dead process") << lockName << QByteArray()
                                            << note("settings",
                                                    "lock",
                                                    lockPath + QStringLiteral(" is of a dead process; the next save removes it"),
                                                    {{QStringLiteral("process"), 0}});
    QTest::newRow("next version") << QStringLiteral("audioData.db.new-17") << settings
                                  << note("settings", "leftovers", QStringLiteral("audioData.db.new-17: of a save that goes on or did not end"));
    QTest::newRow("lock of a lock") << QStringLiteral("audioData.db.lock.rmlock") << QByteArray()
                                    << note("settings", "leftovers", QStringLiteral("audioData.db.lock.rmlock: of a save"));
    QTest::newRow("damaged, kept") << QStringLiteral("audioData.db.damaged") << settings
                                   << note("settings", "damaged", QStringLiteral("/media/flash/nvm/audioData.db.damaged, of 20"));
}

void FlashDoctorTest::settings()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(Expected, expected);
    if (name.endsWith(QLatin1Char('/')))
        QVERIFY(QDir().mkdir(pathOf(name)));
    else if (name.endsWith(QLatin1Char('|')))
        QCOMPARE(::mkfifo(QFile::encodeName(pathOf(name.chopped(1))).constData(), 0600), 0);
    else
        QVERIFY(write(name, content));
    finds({withFlash(), {}, false}, {}, butForTheBus(expected));
}

void FlashDoctorTest::heldLock_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<Expected>("expected");
    const QJsonObject facts{{QStringLiteral("process"), static_cast<int>(::getpid())}};
    const QString who = QStringLiteral("process %1 (").arg(::getpid());
    QTest::newRow("just now") << -20 << note("settings", "lock", QStringLiteral(") is saving"), facts); // some seconds later: the machine may be busy
    QTest::newRow("for a while") << 10 << wrong(settingsStatus, "settings", "lock", QStringLiteral(" has been saving for 1"), facts);
    QTest::newRow("too long") << 3600 << wrong(settingsStatus, "settings", "lock", QStringLiteral(" hangs in a save, for 36"), facts);
    QTest::newRow("in the future") << -3600 << wrong(settingsStatus, "settings", "lock", QStringLiteral(" hangs in a save, for 35"), facts);
    QTest::newRow("by whom") << 3600 << wrong(settingsStatus, "settings", "lock", who, facts);
}

void FlashDoctorTest::heldLock()
{
    QFETCH(int, seconds);
    QFETCH(Expected, expected);
    const SavingProcess process(pathOf(lockName));
    QVERIFY(process.isSaving());
    QVERIFY(setAge(lockName, seconds));
    finds({withFlash(), {}, false}, {}, butForTheBus(expected));
}

void FlashDoctorTest::heldByAnotherUser()
{
    const QString reason = whyNoOrdinaryUser();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
    QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 0777), 0);
    const SavingProcess process(pathOf(lockName));
    QVERIFY(process.isSaving());
    QVERIFY(setAge(lockName, 10));
    finds({asOrdinaryUser(), {}, false},
          {},
          wrong(settingsStatus,
                "settings",
                "lock",
                QStringLiteral(", lock file of root) has been saving for 1"),
                {{QStringLiteral("process"), static_cast<int>(::getpid())}, {QStringLiteral("owner"), QStringLiteral("root")}}));
}

/// As where a user may not see other users' processes.
void FlashDoctorTest::heldBySomebodyUnknown()
{
    const SavingProcess process(pathOf(lockName));
    QVERIFY(process.isSaving());
    QVERIFY(setAge(lockName, 3600));
    const QStringList nameless{QStringLiteral("bwrap"),
                               QStringLiteral("--dev-bind"),
                               QStringLiteral("/"),
                               QStringLiteral("/"),
                               QStringLiteral("--ro-bind"),
                               QStringLiteral("/dev/null"),
                               QStringLiteral("/proc/%1/comm").arg(::getpid())};
    finds({withFlash() + nameless, {}, false}, {}, wrong(settingsStatus, "settings", "lock", QStringLiteral("process %1 (?, lock file of ").arg(::getpid())));
}

void FlashDoctorTest::deadProcessOfAnotherUser_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<Expected>("expected");
    QTest::newRow("just now")
        << 0
        << wrong(settingsStatus,
                 "settings",
                 "lock",
                 lockPath + QStringLiteral(" is of a dead process of root, and this user may not open it: saves are refused until it is 30 s old"));
    QTest::newRow("long ago") << 60 << note("settings", "lock", lockPath + QStringLiteral(" is of a dead process; the next save removes it"));
}

void FlashDoctorTest::deadProcessOfAnotherUser()
{
    const QString reason = whyNoOrdinaryUser();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
    QFETCH(int, seconds);
    QFETCH(Expected, expected);
    QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 0777), 0);
    QVERIFY(write(lockName, {}));
    QCOMPARE(::chmod(QFile::encodeName(pathOf(lockName)).constData(), 0600), 0);
    QVERIFY(setAge(lockName, seconds));
    finds({asOrdinaryUser(), {}, false}, {}, butForTheBus(expected));
}

QTEST_GUILESS_MAIN(FlashDoctorTest)
#include "tst_doctor_flash.moc"
