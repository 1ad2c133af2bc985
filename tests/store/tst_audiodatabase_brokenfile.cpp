#include "flash.h"
#include "settingsprocess.h"
#include "storetest.h"

#include <qzaudio/audiodatabase.h>

#include <QtTest/QtTest>

using audio::AudioDataBase;

namespace
{

QByteArray randomBytes(int count, quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray bytes(count, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(generator.bounded(256));
    return bytes;
}

const QString damagedName = QStringLiteral("audioData.db.damaged");

} // namespace

/// A settings file that is no settings file, or only part of one.
class BrokenFileTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void truncatedAtEveryLength();
    void emptyFile();
    void randomContent_data();
    void randomContent();
    void randomLinesAmongGoodOnes_data();
    void randomLinesAmongGoodOnes();
    void largestFile_data();
    void largestFile();
    void folderInTheFilesPlace();
};

/// Every line that is there whole keeps its value, also through the next save. A line that was cut counts for nothing, and the file is
/// kept beside as it was.
void BrokenFileTest::truncatedAtEveryLength()
{
    const QByteArray full = flash::fullSettings();
    for (int length = 0; length <= full.size(); ++length) {
        flash::clean();
        const QByteArray left = full.left(length);
        flash::setContent(left);
        const QByteArray whole = left.left(left.lastIndexOf('\n') + 1);
        const flash::Entries entries = flash::parse(whole);
        const QByteArray place = "length " + QByteArray::number(length);

        AudioDataBase store;
        for (int type = 0; type < 6; ++type) {
            const int expected = entries.contains("Volume/" + QByteArray::number(type)) ? type + 1 : type == 5 ? 15 : 20;
            QVERIFY2(store.getVolume(static_cast<ZelAudioType>(type)) == expected, place.constData());
        }
        QVERIFY2(store.eqType() == (entries.contains("EQ/Type") ? 4 : 6), place.constData());
        QVERIFY2(flash::content(damagedName) == (whole == left ? QByteArray() : left), place.constData());

        flash::Entries expected = entries;
        expected.insert("Volume/VolumeMic", "33");
        store.setMicInputValue(33);
        QVERIFY2(flash::entries() == expected, place.constData());
    }
}

void BrokenFileTest::emptyFile()
{
    flash::setContent("");
    AudioDataBase store;
    QCOMPARE(store.eqType(), 6);
    QCOMPARE(store.getVolume(ZelAudioTypeHiCarCall), 15);
    store.setEqType(1);
    QCOMPARE(flash::entries(), (flash::Entries{{"EQ/Type", "1"}}));
}

void BrokenFileTest::randomContent_data()
{
    QTest::addColumn<QByteArray>("content");
    quint32 seed = 1;
    for (int size : {1, 2, 3, 10, 100, 1000, 4096, 65536, 1048576}) {
        for (int variant = 0; variant < 4; ++variant, ++seed)
            QTest::addRow("%d random bytes, seed %u", size, seed) << randomBytes(size, seed);
    }
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("all ones") << QByteArray(4096, '\xff');
    QTest::newRow("brackets") << QByteArray(4096, '[');
    QTest::newRow("equals signs") << QByteArray(4096, '=');
    QTest::newRow("backslashes") << QByteArray(4096, '\\');
    QTest::newRow("an endless quotation") << QByteArray("[Volume]\n0=\"" + QByteArray(100000, 'a'));
}

/// It reads as no settings at all; a save makes a good file of it.
void BrokenFileTest::randomContent()
{
    QFETCH(QByteArray, content);
    flash::setContent(content);
    {
        AudioDataBase store;
        QCOMPARE(store.eqType(), 6);
        QCOMPARE(store.micInputValue(), 12);
        QVERIFY(store.loudNess());
        store.setEqType(3);
        store.setVolume(ZelAudioTypeSpeech, 9, true);
        QCOMPARE(store.eqType(), 3);
    }
    QCOMPARE(settingsprocess::storedValue(QStringLiteral("EQ"), QStringLiteral("Type")), QStringLiteral("QString 3"));
    QCOMPARE(settingsprocess::storedValue(QStringLiteral("Volume"), QStringLiteral("4")), QStringLiteral("QString 9"));
    QCOMPARE(flash::names(), (QStringList{QStringLiteral("audioData.db"), damagedName}));
    QCOMPARE(flash::content(damagedName), content);
}

void BrokenFileTest::randomLinesAmongGoodOnes_data()
{
    QTest::addColumn<QByteArray>("line");
    for (quint32 seed = 1; seed <= 20; ++seed)
        QTest::addRow("seed %u", seed) << randomBytes(64, seed).replace('\n', '.').replace('\r', '.').replace('[', '.').replace('\\', '.').replace('"', '.');
    QTest::newRow("no equals sign") << QByteArray("Loudness");
    QTest::newRow("unfinished group") << QByteArray("[Volume");
}

void BrokenFileTest::randomLinesAmongGoodOnes()
{
    QFETCH(QByteArray, line);
    const flash::Entries good = flash::parse(flash::fullSettings());
    flash::setContent(flash::fullSettings().replace("[Volume]\n", '\n' + line + "\n[Volume]\n"));
    AudioDataBase store;
    store.setEqType(2);
    const flash::Entries after = flash::entries();
    for (auto entry = good.begin(); entry != good.end(); ++entry)
        QCOMPARE(after.value(entry.key()), entry.key() == "EQ/Type" ? QByteArray("2") : entry.value());
}

void BrokenFileTest::largestFile_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("isDamaged");
    QTest::newRow("1 MiB") << 1048576 << false;
    QTest::newRow("one byte more") << 1048577 << true;
}

/// What is larger is no settings file. It is kept, and what its beginning says counts.
void BrokenFileTest::largestFile()
{
    QFETCH(int, size);
    QFETCH(bool, isDamaged);
    QByteArray content = flash::fullSettings();
    while (content.size() < size)
        content += ';' + QByteArray(qMin(998, size - content.size() - 2), 'x') + '\n';
    QCOMPARE(content.size(), size);
    flash::setContent(content);
    AudioDataBase store;
    QCOMPARE(store.eqType(), 4);
    QCOMPARE(flash::content(damagedName), isDamaged ? content : QByteArray());
    const QString complaint = QStringLiteral("is damaged, more than 1048576 bytes; kept as /media/flash/nvm/audioData.db.damaged");
    QCOMPARE(log->takeTexts().filter(complaint).size(), isDamaged ? 1 : 0);
}

void BrokenFileTest::folderInTheFilesPlace()
{
    QVERIFY(QDir(flash::folder()).mkpath(QStringLiteral("audioData.db/inner")));
    flash::setContent("mine", QStringLiteral("audioData.db/inner/file"));
    AudioDataBase store;
    QCOMPARE(store.eqType(), 6);
    log->take();
    store.setEqType(3);
    const QString line = QStringLiteral("[ERR] THREAD void audio::AudioDataBase::save(QString, QString, QVariant) LINE -- /media/flash/nvm/audioData.db ");
    QCOMPARE(log->takeTexts(), QStringList(line + QStringLiteral("cannot be written: it is no regular file; waiting: EQ/Type")));
    QCOMPARE(store.eqType(), 3);
    QVERIFY(!store.clear());
    QCOMPARE(log->take().size(), 1);
    QCOMPARE(flash::content(QStringLiteral("audioData.db/inner/file")), QByteArray("mine"));
    QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));

    flash::clean();
    store.setLoudNess(false);
    QCOMPARE(flash::entries().value("Volume/Loudness"), QByteArray("false"));
}

QTEST_GUILESS_MAIN(BrokenFileTest)

#include "tst_audiodatabase_brokenfile.moc"
