#include "flash.h"
#include "settingsprocess.h"
#include "storetest.h"

#include <QtTest/QtTest>

#include <sys/stat.h>

namespace
{

const QString notThere = QStringLiteral("/media/flash/nvm/audioData.db file not exists!!!");
const QString blocked = QStringLiteral("it is blocked by a lock file that cannot be removed");
const QString notRemoved = QStringLiteral("clear /media/flash/nvm/audioData.db fail!!!");
const QString lost = QStringLiteral("/media/flash/nvm/audioData.db was never written with: Volume/0");
const QString writtenAgain = QStringLiteral("/media/flash/nvm/audioData.db is written again, with what waited: Volume/0");
constexpr const char *stored = "[Volume]\n0=1\n1=2\n\n[Mine]\nKey=kept\n";

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString notWritten(const QString &reason)
{
    return QLatin1String("/media/flash/nvm/audioData.db cannot be written: ") + reason + QLatin1String("; waiting: Volume/0");
}

/// The critical lines, without what stands before their values.
QStringList criticalTexts(const QString &errors)
{
    QStringList texts;
    const QStringList lines = errors.split(QLatin1Char('\n')).filter(QLatin1String("[ERR]"));
    for (const QString &line : lines)
        texts.append(line.section(QStringLiteral(" -- "), 1));
    return texts;
}

} // namespace

/// A flash partition that cannot be written to. Each time the store works on in memory, and what is stored stays as it is.
class BrokenFlashTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void unwritable_data();
    void unwritable();
    void unlistable_data();
    void unlistable();
    void full_data();
    void full();
};

void BrokenFlashTest::unwritable_data()
{
    QTest::addColumn<QStringList>("wrapper"); // %1 is a folder with the settings file
    QTest::addColumn<QByteArray>("content"); // of that file, empty for none
    QTest::addColumn<int>("folderMode");
    QTest::addColumn<int>("fileMode");
    QTest::addColumn<bool>("hasDeadLock");
    QTest::addColumn<QString>("output"); // of the steps below
    QTest::addColumn<QStringList>("errors");
    const QByteArray none;
    const QString readOnly = QStringLiteral("open the lock file: Read-only file system");
    const QString noFolder = QStringLiteral("open the lock file: No such file or directory");
    const QStringList bare = words("bwrap --dev-bind / /");
    const QStringList flashIn = QStringList(QStringLiteral(WITH_FLASH)) + words("--dir %1");
    const QStringList notRoot = flashIn + words("bwrap --unshare-user --uid 1000 --gid 1000 --dev-bind / /");
    const QString asBefore = QString::fromUtf8(QByteArray(stored).simplified());
    // What could not be written waits in memory, so the same process still reads it: 17.
    QTest::newRow("folder missing: it is made") << bare + words("--tmpfs /media/flash") << none << 0755 << 0644 << false
                                                << QStringLiteral("17 default [Volume] 0=17 true") << QStringList();
    QTest::newRow("folder cannot be made") << bare + words("--tmpfs /media/flash --remount-ro /media/flash") << none << 0755 << 0644 << false
                                           << QStringLiteral("17 default no file false") << QStringList{notWritten(noFolder), notThere, notRemoved, lost};
    QTest::newRow("read-only folder") << flashIn + words("--read-only") << QByteArray(stored) << 0755 << 0644 << false
                                      << QStringLiteral("17 2 ") + asBefore + QStringLiteral(" false") << QStringList{notWritten(readOnly), notRemoved, lost};
    QTest::newRow("read-only folder without file") << flashIn + words("--read-only") << none << 0755 << 0644 << false
                                                   << QStringLiteral("17 default no file false")
                                                   << QStringList{notWritten(readOnly), notThere, notRemoved, lost};
    QTest::newRow("read-only folder with a dead lock")
        << flashIn + words("--read-only") << QByteArray(stored) << 0755 << 0644 << true << QStringLiteral("17 2 ") + asBefore + QStringLiteral(" false")
        << QStringList{notWritten(blocked), notRemoved, lost};
    QTest::newRow("read-only file") << flashIn + bare + words("--ro-bind %1/audioData.db /media/flash/nvm/audioData.db") << QByteArray(stored) << 0755 << 0644
                                    << false << QStringLiteral("17 2 ") + asBefore + QStringLiteral(" false")
                                    << QStringList{notWritten(QStringLiteral("access: Read-only file system")), notRemoved, lost};
    QTest::newRow("no permission for the file") << notRoot << QByteArray(stored) << 0755 << 0444 << false
                                                << QStringLiteral("17 2 ") + asBefore + QStringLiteral(" true")
                                                << QStringList{notWritten(QStringLiteral("access: Permission denied"))};
    QTest::newRow("no permission for the folder") << notRoot << QByteArray(stored) << 0555 << 0644 << false
                                                  << QStringLiteral("17 2 ") + asBefore + QStringLiteral(" false")
                                                  << QStringList{notWritten(QStringLiteral("open the lock file: Permission denied")), notRemoved, lost};
    QTest::newRow("no permission for the folder, with a dead lock")
        << notRoot << QByteArray(stored) << 0555 << 0644 << true << QStringLiteral("17 2 ") + asBefore + QStringLiteral(" false")
        << QStringList{notWritten(blocked), notRemoved, lost};
}

void BrokenFlashTest::unwritable()
{
    QFETCH(QStringList, wrapper);
    QFETCH(QByteArray, content);
    QFETCH(int, folderMode);
    QFETCH(int, fileMode);
    QFETCH(bool, hasDeadLock);
    QTemporaryDir folder;
    const QByteArray folderPath = QFile::encodeName(folder.path());
    const QString path = folder.filePath(QStringLiteral("audioData.db"));
    if (!content.isEmpty()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        QCOMPARE(chmod(QFile::encodeName(path).constData(), static_cast<mode_t>(fileMode)), 0);
    }
    if (hasDeadLock) {
        QFile lock(path + QStringLiteral(".lock"));
        QVERIFY(lock.open(QIODevice::WriteOnly));
    }
    QCOMPARE(chmod(folderPath.constData(), static_cast<mode_t>(folderMode)), 0);
    wrapper.replaceInStrings(QStringLiteral("%1"), folder.path());

    const program::Run outcome = settingsprocess::run(words("steps Volume/0=17 Volume/0 Volume/1 show clear"), wrapper);
    QCOMPARE(chmod(folderPath.constData(), 0755), 0);
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    QTEST(outcome.output.simplified(), "output");
    QTEST(criticalTexts(outcome.errors), "errors");
    QVERIFY(outcome.milliseconds < 10000);
    const QStringList left = QDir(folder.path()).entryList(QDir::Files | QDir::Hidden);
    const bool isRemoved = content.isEmpty() || outcome.output.simplified().endsWith(QStringLiteral(" true"));
    QStringList expected = isRemoved ? QStringList() : QStringList(QStringLiteral("audioData.db"));
    if (hasDeadLock)
        expected.append(QStringLiteral("audioData.db.lock"));
    QCOMPARE(left, expected);
}

void BrokenFlashTest::unlistable_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a dead lock") << QStringLiteral("audioData.db.lock");
    QTest::newRow("a dead lock of a lock") << QStringLiteral("audioData.db.lock.rmlock");
}

/// What cannot be found by listing the folder is looked for by its name: a start cleans it up.
void BrokenFlashTest::unlistable()
{
    QFETCH(QString, name);
    QTemporaryDir folder;
    QFile leftover(folder.filePath(name));
    QVERIFY(leftover.open(QIODevice::WriteOnly));
    QVERIFY(leftover.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime));
    const QByteArray folderPath = QFile::encodeName(folder.path());
    QCOMPARE(chmod(folderPath.constData(), 0300), 0);
    const QStringList wrapper
        = QStringList{QStringLiteral(WITH_FLASH), QStringLiteral("--dir"), folder.path()} + words("bwrap --unshare-user --uid 1000 --gid 1000 --dev-bind / /");
    const program::Run outcome = settingsprocess::run(words("value Volume 1"), wrapper);
    QCOMPARE(chmod(folderPath.constData(), 0755), 0);
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

void BrokenFlashTest::full_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QStringList>("errors");
    const QString before = QStringLiteral("Volume/0=1 Volume/1=2");
    const QString noRoom = notWritten(QStringLiteral("write: No space left on device"));
    QTest::newRow("what is stored stays") << before << QStringLiteral("+filler:100000 Volume/0=17 show Volume/1") << QStringLiteral("[Volume] 0=1 1=2 2")
                                          << QStringList{noRoom, lost};
    QTest::newRow("each cause is told once") << before << QStringLiteral("+filler:100000 Volume/0=17 Volume/0=18 Volume/0=19 show Volume/0")
                                             << QStringLiteral("[Volume] 0=1 1=2 19") << QStringList{noRoom, lost};
    QTest::newRow("no room for the first save") << QStringLiteral("show") << QStringLiteral("+filler:100000 Volume/0=17 show Volume/0 -filler Volume/1=2 show")
                                                << QStringLiteral("no file 17 [Volume] 0=17 1=2") << QStringList{noRoom, notThere, writtenAgain};
    QTest::newRow("room again: the next save writes both") << before << QStringLiteral("+filler:100000 Volume/0=17 -filler Volume/2=3 show")
                                                           << QStringLiteral("[Volume] 0=17 1=2 2=3") << QStringList{noRoom, writtenAgain};
    QTest::newRow("room again: a read writes nothing") << before << QStringLiteral("+filler:100000 Volume/0=17 Volume/0 -filler Volume/1 show")
                                                       << QStringLiteral("17 2 [Volume] 0=1 1=2") << QStringList{noRoom, writtenAgain};
    QTest::newRow("the newest value counts") << before << QStringLiteral("+filler:100000 Volume/0=17 -filler Volume/1 Volume/0=5 Volume/1 show")
                                             << QStringLiteral("2 2 [Volume] 0=5 1=2") << QStringList{noRoom};
    // A folder of the lock file's name cannot be removed like a file.
    QTest::newRow("a lock in the way while a value waits")
        << before << QStringLiteral("+filler:100000 Volume/0=17 +audioData.db.lock/ Volume/0 Volume/1=3 -audioData.db.lock -filler Volume/1 Volume/2=4 show")
        << QStringLiteral("17 3 [Volume] 0=17 1=3 2=4")
        << QStringList{noRoom, notWritten(blocked) + QStringLiteral(" Volume/1"), writtenAgain + QStringLiteral(" Volume/1")};
    QTest::newRow("removed on purpose: nothing waits any more") << before << QStringLiteral("+filler:100000 Volume/0=17 clear Volume/0 -filler Volume/1=2 show")
                                                                << QStringLiteral("true default [Volume] 1=2") << QStringList{noRoom};
}

void BrokenFlashTest::full()
{
    QFETCH(QString, before);
    QFETCH(QString, steps);
    // Before and after in one namespace, so in one shell; the file takes one memory page, a lock file and a temporary one each.
    const QString client = program::forShell(settingsprocess::commandLine({}));
    QProcess shell;
    shell.start(QStringLiteral(WITH_FLASH),
                {QStringLiteral("--size"),
                 QStringLiteral("12288"),
                 QStringLiteral("sh"),
                 QStringLiteral("-c"),
                 QStringLiteral("%1 steps %2 >/dev/null 2>&1; %1 steps %3; cd /media/flash/nvm; rm -f filler; echo; ls -A").arg(client, before, steps)});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.exitCode(), 0);
    const QString output = QString::fromUtf8(shell.readAllStandardOutput());
    QTEST(output.section(QStringLiteral("\n\n"), 0, 0).simplified(), "output");
    QTEST(criticalTexts(QString::fromUtf8(shell.readAllStandardError())), "errors");
    QCOMPARE(output.section(QStringLiteral("\n\n"), 1).simplified(), QStringLiteral("audioData.db"));
}

QTEST_GUILESS_MAIN(BrokenFlashTest)

#include "tst_audiodatabase_brokenflash.moc"
