#include "flash.h"
#include "settingsprocess.h"
#include "storetest.h"

#include <qzaudio/audiodatabase.h>

#include <QtTest/QtTest>

#include <limits>

using audio::AudioDataBase;

/// A settings file that somebody edited by hand.
class HandEditedSettingsTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void numbers_data();
    void numbers();
    void numbersBeyondInt_data();
    void numbersBeyondInt();
    void switches_data();
    void switches();
    void otherCaseIsAnotherKey();
    void shapesOfFile_data();
    void shapesOfFile();
    void lastLineWithoutEnd();
    void unknownEntriesSurvive();
    void unknownValuesSurviveUntouched();
    void editIsSeenWithoutRestart();
    void editOfTheSameSizeIsSeen();
    void linkInTheFilesPlace_data();
    void linkInTheFilesPlace();
};

void HandEditedSettingsTest::numbers_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("number");
    QTest::newRow("number") << QByteArray("13") << 13;
    QTest::newRow("negative") << QByteArray("-13") << -13;
    QTest::newRow("plus") << QByteArray("+13") << 13;
    QTest::newRow("quoted") << QByteArray("\"13\"") << 13;
    QTest::newRow("with blanks") << QByteArray("  13  ") << 13;
    QTest::newRow("leading zeros") << QByteArray("0013") << 13;
    QTest::newRow("largest") << QByteArray("2147483647") << 2147483647;
    QTest::newRow("huge") << QByteArray("99999999999999999999999999") << 0;
    QTest::newRow("exponent") << QByteArray("1e3") << 0;
    QTest::newRow("fraction") << QByteArray("3.7") << 0;
    QTest::newRow("hexadecimal") << QByteArray("0x10") << 0;
    QTest::newRow("word") << QByteArray("loud") << 0;
    QTest::newRow("empty") << QByteArray("") << 0;
    QTest::newRow("list") << QByteArray("1, 2") << 0;
    QTest::newRow("true") << QByteArray("true") << 0;
    QTest::newRow("invalid value") << QByteArray("@Invalid()") << 0;
    QTest::newRow("broken value") << QByteArray("@Variant(\\0\\0)") << 0;
    QTest::newRow("bytes") << QByteArray("@ByteArray(13)") << 13;
}

/// The same for every number: what is no int reads as 0, not as the default.
void HandEditedSettingsTest::numbers()
{
    QFETCH(QByteArray, text);
    QFETCH(int, number);
    flash::setContent("[Volume]\n1=" + text + "\nVolumeMic=" + text + "\nMicDelayOrig=" + text + "\nAutoMicGainOrig=" + text + "\n[EQ]\nType=" + text
                      + "\nCustom9=" + text + "\n");
    AudioDataBase store;
    QCOMPARE(store.getVolume(ZelAudioTypePrompt), number);
    QCOMPARE(store.micInputValue(), number);
    QCOMPARE(store.getHandsfreeDelay(), number);
    QCOMPARE(store.getAutoMicGain(), static_cast<float>(number));
    QCOMPARE(store.eqType(), number);
    QCOMPARE(store.getCustomEQ(9), number);
}

void HandEditedSettingsTest::numbersBeyondInt_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("number");
    QTest::newRow("largest and one") << QByteArray("2147483648") << std::numeric_limits<int>::min();
    QTest::newRow("smallest less one") << QByteArray("-2147483649") << std::numeric_limits<int>::max();
    QTest::newRow("beyond 32 bits") << QByteArray("4294967301") << 5;
    QTest::newRow("beyond 64 bits") << QByteArray("18446744073709551621") << 0;
}

/// The low 32 bits count, except for the gain.
void HandEditedSettingsTest::numbersBeyondInt()
{
    QFETCH(QByteArray, text);
    flash::setContent("[Volume]\n1=" + text + "\nVolumeMic=" + text + "\nAutoMicGainOrig=" + text + "\n[EQ]\nType=" + text + "\n");
    AudioDataBase store;
    QTEST(store.getVolume(ZelAudioTypePrompt), "number");
    QTEST(store.micInputValue(), "number");
    QTEST(store.eqType(), "number");
    QCOMPARE(store.getAutoMicGain(), 0.0F);
}

void HandEditedSettingsTest::switches_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("on");
    for (const char *text : {"true", "TRUE", "1", "yes", "on", "2", "\"true\""})
        QTest::newRow(text) << QByteArray(text) << true;
    for (const char *text : {"false", "False", "0", "", "\"0\""})
        QTest::addRow("off: %s", text) << QByteArray(text) << false;
}

void HandEditedSettingsTest::switches()
{
    QFETCH(QByteArray, text);
    flash::setContent("[Volume]\nLoudness=" + text + "\nMicType=" + text + "\n");
    AudioDataBase store;
    QTEST(store.loudNess(), "on");
    QTEST(store.micType(), "on");
}

void HandEditedSettingsTest::otherCaseIsAnotherKey()
{
    flash::setContent("[volume]\n0=1\n[Volume]\nloudness=false\nMICTYPE=false\n[Eq]\nType=1\n[EQ]\ntype=2\n");
    AudioDataBase store;
    QCOMPARE(store.getVolume(ZelAudioTypeMedia), 20);
    QVERIFY(store.loudNess());
    QVERIFY(store.micType());
    QCOMPARE(store.eqType(), 6);
    store.setLoudNess(false);
    QCOMPARE(
        flash::entries(),
        (flash::Entries{
            {"volume/0", "1"}, {"Volume/loudness", "false"}, {"Volume/MICTYPE", "false"}, {"Eq/Type", "1"}, {"EQ/type", "2"}, {"Volume/Loudness", "false"}}));
}

void HandEditedSettingsTest::shapesOfFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("plain") << QByteArray("[Volume]\n0=11\n[EQ]\nType=3\n");
    QTest::newRow("other line ends") << QByteArray("[Volume]\r\n0=11\r\n[EQ]\r\nType=3\r\n");
    QTest::newRow("groups twice") << QByteArray("[EQ]\nType=1\n[Volume]\n0=11\n[EQ]\nType=3\n");
    QTest::newRow("keys twice") << QByteArray("[Volume]\n0=4\n0=11\n[EQ]\nType=3\nType=3\n");
    QTest::newRow("comments and empty lines") << QByteArray("; mine\n\n[Volume]\n; more\n0=11\n\n\n[EQ]\nType=3\n");
    QTest::newRow("blanks") << QByteArray("  [Volume]  \n  0 = 11 \n[EQ]\nType   =   3\n");
    QTest::newRow("letters of the keys as numbers") << QByteArray("[Volume]\n%30=11\n[EQ]\n%54yp%65=3\n");
    QTest::newRow("letters of the groups as numbers") << QByteArray("[%56olum%65]\n0=11\n[%45Q]\nType=3\n");
    QTest::newRow("tabs") << QByteArray("\t[Volume]\t\n\t0\t=\t11\t\n[EQ]\nType\t=3\n");
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf[Volume]\n0=11\n[EQ]\nType=3\n");
}

void HandEditedSettingsTest::shapesOfFile()
{
    QFETCH(QByteArray, content);
    flash::setContent(content);
    {
        AudioDataBase store;
        QCOMPARE(store.getVolume(ZelAudioTypeMedia), 11);
        QCOMPARE(store.eqType(), 3);
        store.setMicInputValue(50);
    }
    AudioDataBase later;
    QCOMPARE(later.getVolume(ZelAudioTypeMedia), 11);
    QCOMPARE(later.eqType(), 3);
    QCOMPARE(later.micInputValue(), 50);
}

/// It may be half of a line: the default counts. The file is kept beside.
void HandEditedSettingsTest::lastLineWithoutEnd()
{
    const QByteArray content = "[Volume]\n0=11\n[EQ]\nType=3";
    flash::setContent(content);
    AudioDataBase store;
    QCOMPARE(store.getVolume(ZelAudioTypeMedia), 11);
    QCOMPARE(store.eqType(), 6);
    QCOMPARE(flash::content(QStringLiteral("audioData.db.damaged")), content);
}

void HandEditedSettingsTest::unknownEntriesSurvive()
{
    flash::setContent(flash::fullSettings());
    flash::Entries expected = flash::parse(flash::fullSettings());
    AudioDataBase store;
    store.setVolume(ZelAudioTypeMedia, 25, true);
    store.setCustomEQ(1, 2);
    expected.insert("Volume/0", "25");
    expected.insert("EQ/Custom2", "2");
    QCOMPARE(flash::entries(), expected);
}

void HandEditedSettingsTest::unknownValuesSurviveUntouched()
{
    const flash::Entries strange{
        {"Strange/list", "1, two, \"thr,ee\""},
        {"Strange/quoted", "\"  blanks  \""},
        {"Strange/variant", R"(@Variant(\0\0\0\x87@`\0\0))"},
        {"Strange/size", "@Size(3 4)"},
        {"Strange/bytes", R"(@ByteArray(\x1\x2))"},
        {"Strange/a%20b", "blank in the key"},
        {"Strange/below\\key", "1"},
        {"Strange/at", "@@home"},
        {"Volume/6", "99"},
        {"Volume/VolumeMic2", "7"},
    };
    QByteArray content;
    for (auto entry = strange.begin(); entry != strange.end(); ++entry) {
        const QList<QByteArray> path = entry.key().split('/');
        content += '[' + path.at(0) + "]\n" + path.at(1) + '=' + entry.value() + '\n';
    }
    flash::setContent(content);
    QCOMPARE(flash::entries(), strange);
    AudioDataBase store;
    store.setEqType(2);
    flash::Entries after = flash::entries();
    QCOMPARE(after.take("EQ/Type"), QByteArray("2"));
    QCOMPARE(after, strange);
}

void HandEditedSettingsTest::editIsSeenWithoutRestart()
{
    AudioDataBase store;
    store.setEqType(2);
    flash::setContent("[EQ]\nType=333\n[Mine]\nKey=1\n");
    QCOMPARE(store.data(QStringLiteral("EQ"), QStringLiteral("Type"), 0).toInt(), 333);
    store.setLoudNess(true);
    QCOMPARE(flash::entries(), (flash::Entries{{"EQ/Type", "333"}, {"Mine/Key", "1"}, {"Volume/Loudness", "true"}}));
}

/// Neither size nor time tell that it is another text.
void HandEditedSettingsTest::editOfTheSameSizeIsSeen()
{
    const QDateTime time = QDateTime::currentDateTime().addSecs(-60);
    AudioDataBase store;
    for (const char *content : {"[EQ]\nType=333\n", "[EQ]\nType=444\n", "[EQ]\nType=333\n"}) {
        QFile file(flash::settingsFile());
        QVERIFY(file.open(QIODevice::ReadWrite)); // in its place
        QVERIFY(file.write(content) > 0 && file.flush() && file.setFileTime(time, QFileDevice::FileModificationTime));
        QCOMPARE(store.data(QStringLiteral("EQ"), QStringLiteral("Type"), 0).toByteArray(), QByteArray(content).mid(10, 3));
    }
}

void HandEditedSettingsTest::linkInTheFilesPlace_data()
{
    QTest::addColumn<QStringList>("links"); // the settings file first, each to the next one
    QTest::addColumn<bool>("hasFile");
    const QString file = QStringLiteral("audioData.db");
    const QString target = QStringLiteral("elsewhere.ini");
    QTest::newRow("to a file") << QStringList{file, target} << true;
    QTest::newRow("to a link to a file") << QStringList{file, QStringLiteral("link"), target} << true;
    QTest::newRow("to a file that is not there yet") << QStringList{file, target} << false;
}

/// It stays one: the file that it means is what is read and replaced.
void HandEditedSettingsTest::linkInTheFilesPlace()
{
    QFETCH(QStringList, links);
    QFETCH(bool, hasFile);
    const QString target = links.constLast();
    const auto pathOf = [](const QString &name) -> QString { return flash::folder() + QLatin1Char('/') + name; };
    if (hasFile) {
        flash::setContent("[EQ]\nType=3\n", target);
        QVERIFY(QFile::setPermissions(pathOf(target), QFile::ReadOwner | QFile::WriteOwner));
    }
    for (int link = 0; link + 1 < links.size(); ++link)
        QVERIFY(QFile::link(pathOf(links.at(link + 1)), pathOf(links.at(link))));
    AudioDataBase store;
    QCOMPARE(store.eqType(), hasFile ? 3 : 6);
    store.setEqType(4);
    QCOMPARE(flash::content(target), QByteArray("[EQ]\nType=4\n"));
    QCOMPARE(QFileInfo(flash::settingsFile()).symLinkTarget(), pathOf(links.at(1)));
    QVERIFY(!QFileInfo(pathOf(target)).isSymLink());
    if (hasFile)
        QVERIFY(!QFile::permissions(pathOf(target)).testFlag(QFile::ReadOther));
    links.sort();
    QCOMPARE(flash::names(), links);
}

QTEST_GUILESS_MAIN(HandEditedSettingsTest)

#include "tst_audiodatabase_handedited.moc"
