#include "flash.h"
#include "powercut.h"
#include "settingsprocess.h"
#include "storetest.h"

#include <qzaudio/audiodatabase.h>

#include <QtTest/QtTest>

#include <cerrno>

using audio::AudioDataBase;

namespace
{

struct NamedError
{
    int number;
    const char *name;
};

constexpr NamedError errors[] = {
    {ENOSPC, "ENOSPC"},
    {EIO, "EIO"},
    {EDQUOT, "EDQUOT"},
    {EFBIG, "EFBIG"},
    {EROFS, "EROFS"},
    {EACCES, "EACCES"},
    {EMFILE, "EMFILE"},
    {EINTR, "EINTR"},
};

/// The settings with one key more; on the nearly full partition 30 keys and some 400 bytes.
flash::Entries settingsWith(const QByteArray &path, const QByteArray &value)
{
    flash::Entries entries = flash::parse(flash::fullSettings());
    entries.insert(path, value);
    return entries;
}

/// Runs a shell script with a flash partition of so many bytes; the words $client and $settings are replaced.
program::Run runWithSmallFlash(int bytes, QString script)
{
    // Not QTemporaryFile, whose file may have no name that others can open it by.
    const QTemporaryDir folder;
    QFile settings(folder.filePath(QStringLiteral("settings")));
    if (!settings.open(QIODevice::WriteOnly) || settings.write(flash::fullSettings()) < 0 || !settings.flush())
        return {};
    script.replace(QLatin1String("$client"), program::forShell(settingsprocess::commandLine({})));
    script.replace(QLatin1String("$settings"), settings.fileName());
    return program::run({QStringLiteral(WITH_FLASH), QStringLiteral("--size"), QString::number(bytes), QStringLiteral("sh"), QStringLiteral("-c"), script});
}

} // namespace

/// Saves that do not work out: the old settings or the new ones are there, whole, and the process goes on with what it wanted to save.
class FailuresTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void everySystemCall_data();
    void everySystemCall();
    void everyNumberOfFreeBytes();
    void killedOnANearlyFullFlash();
    void damagedValueInTheFile_data();
    void damagedValueInTheFile();
    void manyKeys();
    void keepsTheLatestDamagedFile();
};

void FailuresTest::everySystemCall_data()
{
    QTest::addColumn<bool>("hasFile");
    QTest::addColumn<bool>("isForEver");
    QTest::newRow("fails once") << true << false;
    QTest::newRow("fails for ever") << true << true;
    QTest::newRow("the first save, fails once") << false << false;
    QTest::newRow("the first save, fails for ever") << false << true;
}

void FailuresTest::everySystemCall()
{
    if (program::isEmulated())
        QSKIP("the emulator does not let a process trace another");
#if !defined(__x86_64__)
    QSKIP("the registers of a traced process are known for x86-64 only");
#endif
    QFETCH(bool, hasFile);
    QFETCH(bool, isForEver);
    const flash::Entries before = hasFile ? flash::parse(flash::fullSettings()) : flash::Entries();
    flash::Entries after = before;
    after.insert("Volume/0", "1234");
    flash::Entries later = after;
    later.insert("Volume/later", "1");
    const QStringList victim = settingsprocess::commandLine({QStringLiteral("save-and-go-on"), QStringLiteral("0"), QStringLiteral("1234")});
    int runs = 0;
    int refused = 0;
    for (const NamedError &error : errors) {
        if (!isFast && error.number != ENOSPC && error.number != EIO)
            continue;
        int calls = 1;
        for (int call = 1; call <= calls; ++call) {
            flash::clean();
            if (hasFile)
                flash::setContent(flash::fullSettings());
            flash::Entries found;
            const powercut::FaultyRun run = powercut::runWithFault({call, error.number, isForEver}, victim, [&found] { found = flash::entries(); });
            const QByteArray place = QByteArray(error.name) + " at call " + QByteArray::number(call) + ": " + run.output.toUtf8();
            QVERIFY2(run.systemCalls > 0 && run.hasEndedWell, place.constData());
            calls = std::max(calls, run.systemCalls); // the later the fault, the more there are before it
            QVERIFY2(found == before || found == after, place.constData());
            QVERIFY2(run.output.contains(QLatin1String("value 1234")), place.constData());
            // Told where it counts, and once.
            const int told = run.output.count(QLatin1String("cannot be written"));
            QVERIFY2(told == (found == before ? 1 : 0) || (isForEver && found == before && told == 0), place.constData());
            QVERIFY2(flash::entries() == later, place.constData());
            QVERIFY2(flash::names() == QStringList(QStringLiteral("audioData.db")), place.constData());
            ++runs;
            refused += found == before;
        }
    }
    log.reset();
    qInfo("%d runs, one for each system call and error: %d times the old settings, %d times the new ones, 0 lost", runs, refused, runs - refused);
}

/// From none to four pages of memory, which is what the partition counts in: every save comes out whole or not at all.
void FailuresTest::everyNumberOfFreeBytes()
{
    const int step = program::isEmulated() || !isFast ? 2048 : 128;
    const program::Run run = runWithSmallFlash(20480,
                                               QStringLiteral(R"(
        cd /media/flash/nvm && cp $settings audioData.db || exit
        free=0
        while [ $free -le 16384 ]; do
            [ $((16384 - free)) -eq 0 ] || head -c $((16384 - free)) /dev/zero >filler
            $client steps Volume/0=$((100 + free)) 2>/dev/null
            rm -f filler
            echo "== $free"
            cat audioData.db
            free=$((free + %1))
        done
        $client steps Volume/0=7 2>/dev/null
        echo "== last"
        cat audioData.db; ls -A)")
                                                   .arg(step));
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    const QStringList parts = run.output.split(QStringLiteral("== "), Qt::SkipEmptyParts);
    QCOMPARE(parts.size(), 16384 / step + 2);
    QByteArray last = "1";
    int written = 0;
    for (const QString &part : parts) {
        const QByteArray free = part.section(QLatin1Char('\n'), 0, 0).toLatin1();
        const QByteArray content = part.section(QLatin1Char('\n'), 1).toUtf8();
        const QByteArray wanted = free == "last" ? QByteArray("7") : QByteArray::number(100 + free.toInt());
        flash::Entries found = flash::parse(content);
        if (free == "last")
            QCOMPARE(found.take("?"), QByteArray("audioData.db")); // the list of files
        const QByteArray value = found.value("Volume/0");
        QVERIFY2(value == last || value == wanted, free.constData());
        QVERIFY2(found == settingsWith("Volume/0", value), part.toUtf8().constData());
        written += value == wanted;
        last = value;
    }
    QCOMPARE(last, QByteArray("7"));
    QVERIFY(written > 1 && written < parts.size()); // some had room and some had not
    log.reset();
    qInfo("%d saves with 0 to 16384 bytes free: %d written, %d refused, 0 lost", parts.size(), written, parts.size() - written);
}

void FailuresTest::killedOnANearlyFullFlash()
{
    const int kills = program::isEmulated() ? 20 : isFast ? 1000 : 100;
    const int longestLifeUs = program::isEmulated() ? 100000 : 3000; // in which there is time for some saves
    // Half of them with room for the next version, half with none: then all that can be there is the old one.
    const program::Run run = runWithSmallFlash(12288,
                                               QStringLiteral(R"(
        cd /media/flash/nvm && cp $settings audioData.db || exit
        kill=0
        while [ $kill -lt %1 ]; do
            rm -f filler
            [ $((kill % 2)) -eq 0 ] || head -c 100000 /dev/zero >filler 2>/dev/null
            $client count-until $((1 + kill * 7919 % %2)) counter >/dev/null 2>&1
            echo "== $kill"
            cat audioData.db
            kill=$((kill + 1))
        done
        rm -f filler
        $client steps Volume/counter=1 2>/dev/null
        echo "== last"
        cat audioData.db; ls -A)")
                                                   .arg(kills)
                                                   .arg(longestLifeUs));
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    const QStringList parts = run.output.split(QStringLiteral("== "), Qt::SkipEmptyParts);
    QCOMPARE(parts.size(), kills + 1);
    int changes = 0;
    QByteArray last;
    for (const QString &part : parts) {
        flash::Entries found = flash::parse(part.section(QLatin1Char('\n'), 1).toUtf8());
        if (part.startsWith(QLatin1String("last")))
            QCOMPARE(found.take("?"), QByteArray("audioData.db"));
        const QByteArray counter = found.take("Volume/counter");
        changes += counter != last;
        last = counter;
        QVERIFY2(found == flash::parse(flash::fullSettings()), part.toUtf8().constData());
    }
    QCOMPARE(last, QByteArray("1"));
    QVERIFY(changes > kills / 10);
    log.reset();
    qInfo("%d kills during saves on a nearly full flash: %d of the processes had written, 0 keys lost", kills, changes);
}

void FailuresTest::damagedValueInTheFile_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto volume = [](const char *value) -> QByteArray { return "[EQ]\nType=4\n[Volume]\n0=" + QByteArray(value) + "\n1=2\n"; };
    const int fraction = isFast && !program::isEmulated() ? 1 : 10; // of as many short lines as fit
    QTest::newRow("list of 2 G elements") << volume(R"(@Variant(\0\0\0\t\x7f\xff\xff\xff))");
    QTest::newRow("text of 2 GB") << volume(R"(@Variant(\0\0\0\n\x7f\xff\xff\xfe))");
    QTest::newRow("bits of 2 G") << volume(R"(@Variant(\0\0\0\r\x7f\xff\xff\xff))");
    QTest::newRow("1 MB of elements") << volume(QByteArray(1000000, ',').constData());
    QTest::newRow("heads of groups") << "[EQ]\nType=4\n[Volume]\n1=2\n" + QByteArray("[\n").repeated(500000 / fraction);
    QTest::newRow("heads of groups with a name") << "[EQ]\nType=4\n[Volume]\n1=2\n" + QByteArray("[\xff]\n").repeated(250000 / fraction);
    QTest::newRow("short lines") << "[EQ]\nType=4\n[Volume]\n1=2\n" + QByteArray("a=\n").repeated(340000 / fraction);
    QTest::newRow("10 MB") << "[EQ]\nType=4\n[Volume]\n1=2\n" + QByteArray("some=key and value\n").repeated(550000);
}

/// It neither ends a process nor makes it large.
void FailuresTest::damagedValueInTheFile()
{
    QFETCH(QByteArray, content);
    constexpr int mostKilobytes = 16 * 1024;
    flash::setContent(content);
    const program::Run run = settingsprocess::run({QStringLiteral("memory")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    if (!program::isEmulated() && isFast) // sanitizers keep memory of their own
        QVERIFY2(run.output.trimmed().toInt() < mostKilobytes, qPrintable(run.output));
    QCOMPARE(flash::entries().value("EQ/Type"), QByteArray("3"));
    QCOMPARE(flash::entries().value("Volume/1"), QByteArray("2"));
}

/// A file of 10 MB with 700,000 keys: only its beginning counts, and nobody waits for the rest.
void FailuresTest::manyKeys()
{
    QByteArray content;
    content.reserve(12 * 1024 * 1024); // or each line would move all that are there already
    content += "[EQ]\nType=4\n[Volume]\n1=2\n";
    for (int key = 0; key < 700000; ++key)
        content += "key" + QByteArray::number(key) + "=abcd\n";
    flash::setContent(content);
    QElapsedTimer timer;
    timer.start();
    AudioDataBase store;
    QCOMPARE(store.getVolume(ZelAudioTypePrompt), 2);
    const qint64 startMs = timer.restart();
    store.setEqType(3);
    const qint64 saveMs = timer.elapsed();
    QCOMPARE(flash::entries().value("EQ/Type"), QByteArray("3"));
    QVERIFY(flash::content().size() <= 1024 * 1024 + 100);
    QVERIFY(flash::content(QStringLiteral("audioData.db.damaged")) == content);
    const int patienceMs = program::isEmulated() || !isFast ? 120000 : 6000;
    QVERIFY2(startMs < patienceMs && saveMs < patienceMs, qPrintable(QStringLiteral("%1 and %2 ms").arg(startMs).arg(saveMs)));
    log.reset();
    qInfo("%d bytes: start %lld ms, save %lld ms", content.size(), startMs, saveMs);
}

void FailuresTest::keepsTheLatestDamagedFile()
{
    const QString damaged = QStringLiteral("audioData.db.damaged");
    flash::setContent("[EQ]\nType=4\nbroken\n");
    AudioDataBase store;
    QCOMPARE(flash::content(damaged), QByteArray("[EQ]\nType=4\nbroken\n"));
    const QStringList lines = log->takeTexts().filter(QLatin1String("is damaged"));
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.constFirst().startsWith(QLatin1String("[ERR]")));
    QVERIFY(lines.constFirst().endsWith(QLatin1String("is damaged, 1 lines; kept as /media/flash/nvm/audioData.db.damaged")));
    store.setEqType(5);
    QCOMPARE(log->takeTexts(), QStringList()); // told already
    QCOMPARE(flash::content(), QByteArray("[EQ]\nType=5\n"));
    QCOMPARE(flash::content(damaged), QByteArray("[EQ]\nType=4\nbroken\n"));
    flash::setContent("[EQ]\nType=5\nbroken \"again\n");
    store.setEqType(6);
    QCOMPARE(log->takeTexts().filter(QLatin1String("is damaged")).size(), 1);
    QCOMPARE(flash::content(damaged), QByteArray("[EQ]\nType=5\nbroken \"again\n"));
}

QTEST_GUILESS_MAIN(FailuresTest)

#include "tst_audiodatabase_failures.moc"
