#include "flash.h"
#include "powercut.h"
#include "settingsprocess.h"
#include "storetest.h"

#include <QtTest/QtTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using powercut::Call;
using powercut::Moment;

Q_DECLARE_METATYPE(powercut::Call)

namespace
{

const QString lockName = QStringLiteral("audioData.db.lock");

QString lockPath()
{
    return flash::folder() + QLatin1Char('/') + lockName;
}

void removeLock()
{
    QVERIFY(QFile::remove(lockPath()));
}

/// Somebody alive, who takes the lock as the library does: a lock file, and a kernel lock on it.
class Neighbour
{
public:
    ~Neighbour()
    {
        if (m_file >= 0)
            close(m_file);
    }

    /// Whether the file is there already or not.
    void takeLock()
    {
        m_file = open(QFile::encodeName(lockPath()).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        QVERIFY(m_file >= 0);
        QCOMPARE(flock(m_file, LOCK_EX | LOCK_NB), 0);
    }

    /// Nobody has removed its file, not even to make another one.
    bool stillHoldsLock() const
    {
        struct stat held = {};
        struct stat standing = {};
        return m_file >= 0 && fstat(m_file, &held) == 0 && stat(QFile::encodeName(lockPath()).constData(), &standing) == 0 && held.st_ino == standing.st_ino;
    }

private:
    int m_file = -1;
};

} // namespace

/// What others do to the lock file between two system calls of a save, which only chance would bring otherwise.
class RacesTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void lockThatGoes_data();
    void lockThatGoes();
    void lockThatIsTaken_data();
    void lockThatIsTaken();
    void transferInPieces_data();
    void transferInPieces();
    void tellsWhatFailed_data();
    void tellsWhatFailed();
    void orderOfASave();

private:
    static QStringList saver() { return settingsprocess::commandLine({QStringLiteral("save-between-stops"), QStringLiteral("0"), QStringLiteral("1234")}); }
};

void RacesTest::initTestCase()
{
    if (program::isEmulated())
        QTest::qSkip("the emulator does not let a process trace another", __FILE__, __LINE__);
}

void RacesTest::lockThatGoes_data()
{
    QTest::addColumn<bool>("isLink");
    QTest::addColumn<Call>("call");
    QTest::addColumn<int>("count");
    QTest::newRow("before it is opened") << false << Call::Open << 2;
    QTest::newRow("a link, before somebody looks what it is") << true << Call::Status << 1;
    QTest::newRow("when it is opened") << false << Call::KernelLock << 1;
    QTest::newRow("before it is removed as a dead writer's") << false << Call::Sleep << 1;
}

/// The save gets the lock, at its first try.
void RacesTest::lockThatGoes()
{
    QFETCH(bool, isLink);
    QFETCH(Call, call);
    QFETCH(int, count);
    const bool isAboutPath = call == Call::Open || call == Call::Status;
    int removals = 0;
    const auto leave = [isLink] {
        if (isLink)
            QVERIFY(QFile::link(QStringLiteral("nowhere"), lockPath()));
        else
            flash::setContent("", lockName);
    };
    const Moment leaving{call, isAboutPath ? lockPath() : QString(), count, [&removals] {
                             ++removals;
                             removeLock();
                         }};
    // Somebody is quick to make the next one, if it is asked for once more where it was not found.
    const Moment returning{Call::Status, lockPath(), 1, [&] {
                               if (!isLink)
                                   flash::setContent("", lockName);
                           }};
    const auto begin = Moment{Call::Open, lockPath(), 1, leave};
    flash::Entries saved;
    QStringList names;
    const powercut::FaultyRun run = powercut::runWithMoments({begin, leaving, returning}, saver(), [&] {
        saved = flash::entries();
        names = flash::names();
    });
    QVERIFY(run.hasEndedWell);
    QCOMPARE(removals, 1);
    QCOMPARE(saved, (flash::Entries{{"Volume/0", "1234"}}));
    QCOMPARE(names, QStringList(QStringLiteral("audioData.db")));
}

void RacesTest::lockThatIsTaken_data()
{
    QTest::addColumn<bool>("isDeadLockThere");
    QTest::addColumn<Call>("call");
    QTest::addColumn<bool>("isRemovedBefore");
    QTest::newRow("in the place of a dead writer's that is about to be removed") << true << Call::Sleep << true;
    QTest::newRow("in the place of the one that was just made") << false << Call::KernelLock << true;
    QTest::newRow("the one that was just made") << false << Call::KernelLock << false;
}

/// It stays its holder's, and nothing is written.
void RacesTest::lockThatIsTaken()
{
    QFETCH(bool, isDeadLockThere);
    QFETCH(Call, call);
    QFETCH(bool, isRemovedBefore);
    flash::setContent("[Volume]\n0=7\n");
    Neighbour neighbour;
    const Moment begin{Call::Open, lockPath(), 1, [isDeadLockThere] {
                           if (isDeadLockThere)
                               flash::setContent("", lockName);
                       }};
    const Moment taking{call, QString(), 1, [&] {
                            if (isRemovedBefore)
                                removeLock();
                            neighbour.takeLock();
                        }};
    QVERIFY(powercut::runWithMoments({begin, taking}, saver(), [] {}).hasEndedWell);
    QVERIFY(neighbour.stillHoldsLock());
    QCOMPARE(flash::entries(), (flash::Entries{{"Volume/0", "7"}}));
    QCOMPARE(flash::names(), (QStringList{QStringLiteral("audioData.db"), lockName}));
}

void RacesTest::transferInPieces_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QString>("name");
    QTest::newRow("reading") << Call::Read << QStringLiteral("audioData.db");
    QTest::newRow("writing") << Call::Write << QStringLiteral("audioData.db.new-");
    QTest::newRow("reading back") << Call::Read << QStringLiteral("audioData.db.new-");
}

/// The system may take or give fewer bytes than it was asked to: the rest goes in the next call.
void RacesTest::transferInPieces()
{
    QFETCH(Call, call);
    QFETCH(QString, name);
    flash::setContent(flash::fullSettings());
    flash::Entries expected = flash::entries();
    expected.insert("Volume/0", "1234");
    int pieces = 0;
    const auto count = [&pieces] { ++pieces; };
    const QString path = flash::folder() + QLatin1Char('/') + name;
    flash::Entries saved;
    const std::vector<Moment> moments{{call, path, 1, count, 0, 7}, {call, path, 2, count, 0, 100}};
    QVERIFY(powercut::runWithMoments(moments, saver(), [&saved] { saved = flash::entries(); }).hasEndedWell);
    QCOMPARE(pieces, 2);
    QCOMPARE(saved, expected);
    QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
}

void RacesTest::tellsWhatFailed_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("failure");
    const QString next = QStringLiteral("audioData.db.new-");
    QTest::newRow("opening the lock in the way") << Call::Open << lockName << 2 << QStringLiteral("open the lock file");
    QTest::newRow("reading") << Call::Read << QStringLiteral("audioData.db") << 1 << QStringLiteral("read");
    QTest::newRow("making the next version") << Call::Open << next << 1 << QStringLiteral("open");
    QTest::newRow("writing") << Call::Write << next << 1 << QStringLiteral("write");
    QTest::newRow("reading back") << Call::Read << next << 1 << QStringLiteral("pread");
}

/// The system call, and the system's reason. The value is written by the last try, when the store ends.
void RacesTest::tellsWhatFailed()
{
    QFETCH(Call, call);
    QFETCH(QString, name);
    QFETCH(int, count);
    QFETCH(QString, failure);
    flash::setContent(flash::fullSettings());
    const Moment begin{Call::Open, lockPath(), 1, [&] {
                           QFile fresh(lockPath()); // an old one would be removed unopened
                           if (name == lockName)
                               QVERIFY(fresh.open(QIODevice::WriteOnly));
                       }};
    const Moment failing{call, flash::folder() + QLatin1Char('/') + name, count, [] {}, EIO};
    const powercut::FaultyRun run = powercut::runWithMoments({begin, failing}, saver(), [] {});
    QVERIFY(run.hasEndedWell);
    const QString line = QStringLiteral("cannot be written: %1: Input/output error; waiting: Volume/0").arg(failure);
    QVERIFY2(run.output.contains(line), qPrintable(run.output));
    QCOMPARE(flash::entries().value("Volume/0"), QByteArray("1234"));
}

/// On the flash comes first what a name stands for, then the name, and only then the next writer's turn.
void RacesTest::orderOfASave()
{
    flash::setContent(flash::fullSettings());
    QStringList changes = powercut::changesBelow(flash::folder(), saver());
    changes.replaceInStrings(QRegularExpression(QStringLiteral("\\.new-[0-9]+\\z")), QStringLiteral(".new-N"));
    QCOMPARE(changes,
             (QStringList{QStringLiteral("write /media/flash/nvm/audioData.db.new-N"),
                          QStringLiteral("fsync /media/flash/nvm/audioData.db.new-N"),
                          QStringLiteral("rename /media/flash/nvm/audioData.db.new-N"),
                          QStringLiteral("fsync /media/flash/nvm"),
                          QStringLiteral("unlink /media/flash/nvm/audioData.db.lock")}));
    QCOMPARE(flash::entries().value("Volume/0"), QByteArray("1234"));
}

QTEST_GUILESS_MAIN(RacesTest)

#include "tst_audiodatabase_races.moc"
