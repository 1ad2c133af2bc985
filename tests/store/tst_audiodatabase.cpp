#include "flash.h"
#include "settingsprocess.h"
#include "storetest.h"

#include <qzaudio/audiodatabase.h>
#include <settingsfile.h>

#include <QtTest/QtTest>

#include <limits>

using audio::AudioDataBase;

namespace
{

constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();

ZelAudioType typeOf(int number)
{
    return static_cast<ZelAudioType>(number);
}

QList<int> volumesOf(AudioDataBase &store)
{
    QList<int> volumes;
    for (int type = 0; type < 6; ++type)
        volumes.append(store.getVolume(typeOf(type)));
    return volumes;
}

QList<int> customEqOf(AudioDataBase &store)
{
    QList<int> gains;
    for (int band = 0; band < 16; ++band)
        gains.append(store.getCustomEQ(band));
    return gains;
}

QStringList readLines()
{
    return settingsprocess::run({QStringLiteral("read")}).output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

using Action = void (*)(AudioDataBase &);
using Reader = QVariant (*)(AudioDataBase &);

} // namespace

Q_DECLARE_METATYPE(Action)
Q_DECLARE_METATYPE(Reader)

class AudioDataBaseTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void defaultsWithoutFile();
    void defaultVolumesOfHomeUiTypes_data();
    void defaultVolumesOfHomeUiTypes();
    void storedVolumeBeatsDefault();
    void setterWritesItsKey_data();
    void setterWritesItsKey();
    void everythingComesBackInAnotherProcess();
    void volumeIsSavedOnlyWhenAsked();
    void volumeIndex_data();
    void volumeIndex();
    void savevolumeWritesAllSix();
    void customEqIndex_data();
    void customEqIndex();
    void customEqDoubles_data();
    void customEqDoubles();
    void micTypeSelectsKeys();
    void gettersAnswerFromMemory();
    void autoMicGain_data();
    void autoMicGain();
    void valuesOfEveryType_data();
    void valuesOfEveryType();
    void dataWithoutKey();
    void clearRemovesTheFile();
    void withFlashGivesTheFolder();
    void clearWithoutFile();
    void logOfConstruction_data();
    void logOfConstruction();
    void logOfMicrophoneOperations_data();
    void logOfMicrophoneOperations();
    void logOfCustomEq();
    void othersAreSilent();
};

void AudioDataBaseTest::defaultsWithoutFile()
{
    AudioDataBase store;
    QCOMPARE(volumesOf(store), (QList<int>{20, 20, 20, 20, 20, 15}));
    QCOMPARE(store.eqType(), 6);
    QCOMPARE(store.loudNess(), true);
    QCOMPARE(store.micType(), true);
    QCOMPARE(store.micInputValue(), 12);
    QCOMPARE(customEqOf(store), QVector<int>(16, 0).toList());
    QCOMPARE(store.getAutoMicGain(), 0.0F);
    QCOMPARE(store.getHandsfreeDelay(), 0);
    QCOMPARE(flash::names(), QStringList()); // reading makes no file
}

void AudioDataBaseTest::defaultVolumesOfHomeUiTypes_data()
{
    QTest::addColumn<int>("homeUiType");
    QTest::addColumn<QList<int>>("volumes");
    const QList<int> usual{20, 20, 20, 20, 20, 15};
    for (int type : {smallest, -7, -1, 0, 1, 6, 8, 70, largest})
        QTest::addRow("type %d", type) << type << usual;
    QTest::addRow("type 7") << 7 << QList<int>{25, 25, 25, 25, 25, 25};
}

void AudioDataBaseTest::defaultVolumesOfHomeUiTypes()
{
    QFETCH(int, homeUiType);
    platform->setHomeUiType(homeUiType);
    AudioDataBase store;
    QTEST(volumesOf(store), "volumes");
}

void AudioDataBaseTest::storedVolumeBeatsDefault()
{
    flash::setContent("[Volume]\n2=3\n5=0\n");
    AudioDataBase store;
    QCOMPARE(volumesOf(store), (QList<int>{20, 20, 3, 20, 20, 0}));
    platform->setHomeUiType(7);
    AudioDataBase large;
    QCOMPARE(volumesOf(large), (QList<int>{25, 25, 3, 25, 25, 0}));
}

void AudioDataBaseTest::setterWritesItsKey_data()
{
    QTest::addColumn<Action>("set");
    QTest::addColumn<Reader>("get");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("inAnotherProcess");
    const auto row = [](const char *name, Action set, Reader get, const QVariant &value, const char *key, const char *text, const char *other) {
        QTest::newRow(name) << set << get << value << QByteArray(key) << QByteArray(text) << QString::fromLatin1(other);
    };
    // clang-format off
    row("volume", [](AudioDataBase &s) { s.setVolume(ZelAudioTypeRing, 17, true); }, [](AudioDataBase &s) { return QVariant(s.getVolume(ZelAudioTypeRing)); },
        17, "Volume/3", "17", "QString 17");
    row("volume, negative", [](AudioDataBase &s) { s.setVolume(ZelAudioTypeMedia, -1, true); }, [](AudioDataBase &s) { return QVariant(s.getVolume(ZelAudioTypeMedia)); },
        -1, "Volume/0", "-1", "QString -1");
    row("volume, largest", [](AudioDataBase &s) { s.setVolume(ZelAudioTypeHiCarCall, largest, true); }, [](AudioDataBase &s) { return QVariant(s.getVolume(ZelAudioTypeHiCarCall)); },
        largest, "Volume/5", "2147483647", "QString 2147483647");
    row("equalizer type", [](AudioDataBase &s) { s.setEqType(3); }, [](AudioDataBase &s) { return QVariant(s.eqType()); },
        3, "EQ/Type", "3", "QString 3");
    row("equalizer type, smallest", [](AudioDataBase &s) { s.setEqType(smallest); }, [](AudioDataBase &s) { return QVariant(s.eqType()); },
        smallest, "EQ/Type", "-2147483648", "QString -2147483648");
    row("loudness off", [](AudioDataBase &s) { s.setLoudNess(false); }, [](AudioDataBase &s) { return QVariant(s.loudNess()); },
        false, "Volume/Loudness", "false", "QString false");
    row("loudness on", [](AudioDataBase &s) { s.setLoudNess(true); }, [](AudioDataBase &s) { return QVariant(s.loudNess()); },
        true, "Volume/Loudness", "true", "QString true");
    row("microphone type", [](AudioDataBase &s) { s.setmicType(false); }, [](AudioDataBase &s) { return QVariant(s.micType()); },
        false, "Volume/MicType", "false", "QString false");
    row("microphone input", [](AudioDataBase &s) { s.setMicInputValue(91); }, [](AudioDataBase &s) { return QVariant(s.micInputValue()); },
        91, "Volume/VolumeMic", "91", "QString 91");
    row("custom gain", [](AudioDataBase &s) { s.setCustomEQ(5, 3); }, [](AudioDataBase &s) { return QVariant(s.getCustomEQ(3)); },
        10, "EQ/Custom3", "10", "QString 10");
    row("hands-free delay", [](AudioDataBase &s) { s.setHandsfreeDelay(-40); }, [](AudioDataBase &s) { return QVariant(s.getHandsfreeDelay()); },
        -40, "Volume/MicDelayOrig", "-40", "QString -40");
    row("automatic gain", [](AudioDataBase &s) { s.setAutoMicGain(3.5F); }, [](AudioDataBase &s) { return QVariant(s.getAutoMicGain()); },
        3.0F, "Volume/AutoMicGainOrig", R"(@Variant(\0\0\0\x87@`\0\0))", "float 3.5");
    // clang-format on
}

void AudioDataBaseTest::setterWritesItsKey()
{
    QFETCH(Action, set);
    QFETCH(Reader, get);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, text);
    {
        AudioDataBase store;
        set(store);
        QTEST(get(store), "value");
    }
    QCOMPARE(flash::entries(), (flash::Entries{{key, text}})); // this one and no other
    QCOMPARE(flash::names(), QStringList(QStringLiteral("audioData.db")));
    const QList<QByteArray> groupAndKey = key.split('/');
    QTEST(settingsprocess::storedValue(QString::fromLatin1(groupAndKey.at(0)), QString::fromLatin1(groupAndKey.at(1))), "inAnotherProcess");
    AudioDataBase later;
    QTEST(get(later), "value");
}

void AudioDataBaseTest::everythingComesBackInAnotherProcess()
{
    AudioDataBase store;
    for (int type = 0; type < 6; ++type)
        store.setVolume(typeOf(type), type + 1, true);
    for (int band = 0; band < 16; ++band)
        store.setCustomEQ(band - 8, band);
    store.setEqType(7);
    store.setLoudNess(false);
    store.setmicType(false);
    store.setMicInputValue(77);
    store.setAutoMicGain(9.75F);
    store.setHandsfreeDelay(120);
    QStringList expected;
    for (int type = 0; type < 6; ++type)
        expected.append(QStringLiteral("volume%1 %2").arg(type).arg(type + 1));
    for (int band = 0; band < 16; ++band)
        expected.append(QStringLiteral("customEq%1 %2").arg(band).arg(band * 2 - 16));
    for (const char *line : {"eqType 7", "loudness 0", "micType 0", "micInputValue 77", "autoMicGain 9", "handsfreeDelay 120"})
        expected.append(QString::fromLatin1(line));
    QCOMPARE(readLines(), expected);
}

void AudioDataBaseTest::volumeIsSavedOnlyWhenAsked()
{
    AudioDataBase store;
    store.setVolume(ZelAudioTypeTelephony, 30, false);
    QCOMPARE(store.getVolume(ZelAudioTypeTelephony), 30);
    QCOMPARE(flash::names(), QStringList());
    AudioDataBase other;
    QCOMPARE(other.getVolume(ZelAudioTypeTelephony), 20);
}

void AudioDataBaseTest::volumeIndex_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("read"); // of the volumes 1 to 6
    QTest::addColumn<int>("written"); // index that a write changes, -1 for none
    QTest::newRow("first") << 0 << 1 << 0;
    QTest::newRow("last") << 5 << 6 << 5;
    QTest::newRow("folded to 0") << 6 << 1 << -1;
    QTest::newRow("folded to 1") << 7 << 2 << -1;
    QTest::newRow("folded to 2") << 8 << 3 << -1;
    QTest::newRow("folded to 5") << 11 << 6 << -1;
    QTest::newRow("largest") << largest << 2 << -1; // remainder 1
    QTest::newRow("minus one") << -1 << 0 << -1;
    QTest::newRow("minus five") << -5 << 0 << -1;
    QTest::newRow("minus six") << -6 << 1 << -1; // remainder 0
    QTest::newRow("minus seven") << -7 << 0 << -1;
    QTest::newRow("smallest") << smallest << 0 << -1; // remainder -2
}

void AudioDataBaseTest::volumeIndex()
{
    QFETCH(int, type);
    QFETCH(int, written);
    QList<int> volumes{1, 2, 3, 4, 5, 6};
    AudioDataBase store;
    for (int i = 0; i < 6; ++i)
        store.setVolume(typeOf(i), volumes.at(i), false);
    QTEST(store.getVolume(typeOf(type)), "read");

    store.setVolume(typeOf(type), 30, true);
    if (written >= 0)
        volumes[written] = 30;
    QCOMPARE(volumesOf(store), volumes);
    QCOMPARE(flash::entries(), (flash::Entries{{"Volume/" + QByteArray::number(type), "30"}}));
    QCOMPARE(store.eqType(), 6);
    QCOMPARE(store.micInputValue(), 12);
    QCOMPARE(customEqOf(store), QVector<int>(16, 0).toList());
}

void AudioDataBaseTest::savevolumeWritesAllSix()
{
    AudioDataBase store;
    for (int type = 0; type < 6; ++type)
        store.setVolume(typeOf(type), 10 * type, false);
    QCOMPARE(flash::names(), QStringList());
    store.savevolume();
    QCOMPARE(flash::entries(),
             (flash::Entries{{"Volume/0", "0"}, {"Volume/1", "10"}, {"Volume/2", "20"}, {"Volume/3", "30"}, {"Volume/4", "40"}, {"Volume/5", "50"}}));
}

void AudioDataBaseTest::customEqIndex_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("isBand");
    for (int index : {0, 1, 15})
        QTest::addRow("%d", index) << index << true;
    for (int index : {-1, 16, 17, -16, 256, largest, smallest})
        QTest::addRow("%d", index) << index << false;
}

void AudioDataBaseTest::customEqIndex()
{
    QFETCH(int, index);
    QFETCH(bool, isBand);
    AudioDataBase store;
    log->take();
    store.setCustomEQ(5, index);
    QList<int> gains = QVector<int>(16, 0).toList();
    if (isBand)
        gains[index] = 10;
    QCOMPARE(customEqOf(store), gains);
    QCOMPARE(store.getCustomEQ(index), isBand ? 10 : 0);
    QCOMPARE(flash::entries().size(), isBand ? 1 : 0);
    QCOMPARE(log->takeTexts().size(), isBand ? 1 : 0);
}

void AudioDataBaseTest::customEqDoubles_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("stored");
    QTest::newRow("zero") << 0 << 0;
    QTest::newRow("negative") << -12 << -24;
    QTest::newRow("half of the largest") << 0x3FFFFFFF << 0x7FFFFFFE;
    QTest::newRow("wraps round") << 0x40000000 << smallest;
    QTest::newRow("largest") << largest << -2;
    QTest::newRow("smallest") << smallest << 0;
}

void AudioDataBaseTest::customEqDoubles()
{
    QFETCH(int, value);
    QFETCH(int, stored);
    AudioDataBase store;
    store.setCustomEQ(value, 15);
    QCOMPARE(store.getCustomEQ(15), stored);
    QCOMPARE(flash::entries(), (flash::Entries{{"EQ/Custom15", QByteArray::number(stored)}}));
    AudioDataBase later;
    QCOMPARE(later.getCustomEQ(15), stored);
}

void AudioDataBaseTest::micTypeSelectsKeys()
{
    AudioDataBase store;
    store.setAutoMicGain(1.0F);
    store.setHandsfreeDelay(10);
    store.setmicType(false);
    store.setAutoMicGain(2.0F);
    store.setHandsfreeDelay(20);
    QCOMPARE(settingsprocess::storedValue(QStringLiteral("Volume"), QStringLiteral("AutoMicGainOrig")), QStringLiteral("float 1"));
    QCOMPARE(settingsprocess::storedValue(QStringLiteral("Volume"), QStringLiteral("AutoMicGainArm")), QStringLiteral("float 2"));
    QCOMPARE(flash::entries().value("Volume/MicDelayOrig"), QByteArray("10"));
    QCOMPARE(flash::entries().value("Volume/MicDelayArm"), QByteArray("20"));
    QCOMPARE(store.getAutoMicGain(), 2.0F);
    QCOMPARE(store.getHandsfreeDelay(), 20);
    store.setmicType(true);
    QCOMPARE(store.getAutoMicGain(), 1.0F);
    QCOMPARE(store.getHandsfreeDelay(), 10);
}

/// All but the two readers that are said to read the file each time.
void AudioDataBaseTest::gettersAnswerFromMemory()
{
    AudioDataBase store;
    flash::setContent(flash::fullSettings());
    QCOMPARE(volumesOf(store), (QList<int>{20, 20, 20, 20, 20, 15}));
    QCOMPARE(store.eqType(), 6);
    QCOMPARE(store.loudNess(), true);
    QCOMPARE(store.micType(), true);
    QCOMPARE(store.micInputValue(), 12);
    QCOMPARE(customEqOf(store), QVector<int>(16, 0).toList());
    QCOMPARE(store.getAutoMicGain(), 5.0F); // of the original microphone, as memory has it
    QCOMPARE(store.getHandsfreeDelay(), 7);
    AudioDataBase later;
    QCOMPARE(later.getAutoMicGain(), 6.0F); // of the arm microphone, as the file has it
    QCOMPARE(later.getHandsfreeDelay(), 8);
}

void AudioDataBaseTest::autoMicGain_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<float>("gain");
    const double infinity = std::numeric_limits<double>::infinity();
    const float quietNan = std::numeric_limits<float>::quiet_NaN();
    QTest::newRow("float 3.5") << QVariant(3.5F) << 3.0F;
    QTest::newRow("float 3.7") << QVariant(3.7F) << 3.0F;
    QTest::newRow("float -3.7") << QVariant(-3.7F) << -3.0F;
    QTest::newRow("float 0.99") << QVariant(0.99F) << 0.0F;
    QTest::newRow("float -0.99") << QVariant(-0.99F) << 0.0F;
    QTest::newRow("float 1e20") << QVariant(1e20F) << 0.0F;
    QTest::newRow("float -1e20") << QVariant(-1e20F) << 0.0F;
    QTest::newRow("float not a number") << QVariant(quietNan) << 0.0F;
    QTest::newRow("float infinity") << QVariant(static_cast<float>(infinity)) << 0.0F;
    QTest::newRow("float -infinity") << QVariant(static_cast<float>(-infinity)) << 0.0F;
    QTest::newRow("float 2147483648") << QVariant(2147483648.0F) << 0.0F;
    QTest::newRow("float -2147483648") << QVariant(-2147483648.0F) << -2147483648.0F;
    QTest::newRow("int") << QVariant(-4) << -4.0F;
    QTest::newRow("text of an int") << QVariant(QStringLiteral("12")) << 12.0F;
    QTest::newRow("text of a fraction") << QVariant(QStringLiteral("3.7")) << 0.0F;
    QTest::newRow("text of a huge number") << QVariant(QStringLiteral("4294967301")) << 0.0F;
    QTest::newRow("text of a huger number") << QVariant(QStringLiteral("99999999999999999999")) << 0.0F;
    QTest::newRow("text of the largest int") << QVariant(QStringLiteral("2147483647")) << 2147483647.0F;
    QTest::newRow("text") << QVariant(QStringLiteral("loud")) << 0.0F;
    QTest::newRow("empty text") << QVariant(QString()) << 0.0F;
    QTest::newRow("bytes of an int") << QVariant(QByteArray("12")) << 12.0F;
    QTest::newRow("bool") << QVariant(true) << 0.0F; // stands in the file as the text "true"
}

void AudioDataBaseTest::autoMicGain()
{
    QFETCH(QVariant, stored);
    QFETCH(float, gain);
    // Written by another process: the one that writes a value remembers the type it had, the file does not always.
    const QString text = stored.toString();
    const QStringList save{QStringLiteral("save"), QStringLiteral("Volume"), QStringLiteral("AutoMicGainOrig"), QString::fromLatin1(stored.typeName()), text};
    QCOMPARE(settingsprocess::run(save).exitCode, 0);
    AudioDataBase store;
    QCOMPARE(store.getAutoMicGain(), gain);
}

void AudioDataBaseTest::valuesOfEveryType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("inAnotherProcess");
    const auto row = [](const char *name, const QVariant &value, const char *other) { QTest::newRow(name) << value << QString::fromUtf8(other); };
    row("int", -5, "QString -5");
    row("unsigned int", 4294967295U, "QString 4294967295");
    row("long long", Q_INT64_C(-9223372036854775807), "QString -9223372036854775807");
    row("bool", true, "QString true");
    row("double", 3.25, "QString 3.25");
    row("float", 3.25F, "float 3.25");
    row("text", QStringLiteral("a=b;c \"d\" \u00fc, e"), "QString a=b;c \"d\" \u00fc, e");
    row("empty text", QString(), "QString ");
    row("text like a number", QStringLiteral("007"), "QString 007");
    row("text of several lines", QStringLiteral("a\nb"), "QString a\nb");
    row("bytes", QByteArray("\x01\xff", 2), "QByteArray \x01\xef\xbf\xbd");
}

void AudioDataBaseTest::valuesOfEveryType()
{
    QFETCH(QVariant, value);
    AudioDataBase store;
    store.save(QStringLiteral("Volume"), QStringLiteral("Key"), value);
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("Key"), QVariant()).toString(), value.toString());
    QFETCH(QString, inAnotherProcess);
    QCOMPARE(settingsprocess::storedValue(QStringLiteral("Volume"), QStringLiteral("Key")), inAnotherProcess.trimmed());
}

void AudioDataBaseTest::dataWithoutKey()
{
    flash::setContent("[Volume]\n0=1\n");
    AudioDataBase store;
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("0"), 9), QVariant(QStringLiteral("1")));
    QCOMPARE(store.data(QStringLiteral("Volume"), QStringLiteral("1"), 9), QVariant(9));
    QCOMPARE(store.data(QStringLiteral("EQ"), QStringLiteral("0"), QStringLiteral("x")), QVariant(QStringLiteral("x")));
    QCOMPARE(store.data(QStringLiteral("EQ"), QStringLiteral("0"), QVariant()), QVariant());
}

void AudioDataBaseTest::clearRemovesTheFile()
{
    AudioDataBase store;
    store.setEqType(2);
    store.setVolume(ZelAudioTypeMedia, 3, true);
    log->take();
    QVERIFY(store.clear());
    QCOMPARE(log->takeTexts(), QStringList());
    QCOMPARE(flash::names(), QStringList());
    QCOMPARE(store.eqType(), 2);
    QCOMPARE(store.getVolume(ZelAudioTypeMedia), 3);
    QCOMPARE(store.data(QStringLiteral("EQ"), QStringLiteral("Type"), 6).toInt(), 6);
    store.setLoudNess(false);
    QCOMPARE(flash::entries(), (flash::Entries{{"Volume/Loudness", "false"}})); // nothing comes back
}

void AudioDataBaseTest::clearWithoutFile()
{
    AudioDataBase store;
    store.setVolume(ZelAudioTypeMedia, 3, false);
    log->take();
    QVERIFY(!store.clear());
    const QList<LogRecorder::Line> lines = log->take();
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().level, QtCriticalMsg);
    QCOMPARE(lines.first().signature, QByteArray("bool audio::AudioDataBase::clear()"));
    QVERIFY2(lines.first().text.endsWith(QStringLiteral(" -- clear /media/flash/nvm/audioData.db fail!!!")), qPrintable(lines.first().text));
    QVERIFY(lines.first().text.startsWith(QStringLiteral("[ERR] ")));
    QCOMPARE(store.getVolume(ZelAudioTypeMedia), 3);
}

void AudioDataBaseTest::logOfConstruction_data()
{
    QTest::addColumn<int>("homeUiType");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("lines");
    const auto delay = [](const char *value) -> QString {
        return QStringLiteral("[DBG] THREAD int audio::AudioDataBase::getHandsfreeDelay() LINE -- ") + QString::fromLatin1(value);
    };
    const auto gain = [](const char *value) -> QString {
        return QStringLiteral("[DBG] THREAD float audio::AudioDataBase::getAutoMicGain() LINE -- ") + QString::fromLatin1(value);
    };
    const QStringList original{delay("\"MicDelayOrig\""), delay("0"), gain("\"AutoMicGainOrig\""), gain("0")};
    QTest::newRow("no file") << 0 << QByteArray() << original;
    QTest::newRow("home screen 7") << 7 << QByteArray()
                                   << QStringList(
                                          QStringLiteral("[DBG] THREAD void audio::AudioDataBase::_initVolume() LINE -- Custom_7's volume default = 50"))
            + original;
    QTest::newRow("arm microphone") << 0 << flash::fullSettings() << QStringList{delay("\"MicDelayArm\""), delay("8"), gain("\"AutoMicGainArm\""), gain("6")};
}

/// The order of the reads shows in these lines: the type of microphone must be known before the delay and the gain are read.
void AudioDataBaseTest::logOfConstruction()
{
    QFETCH(int, homeUiType);
    QFETCH(QByteArray, content);
    if (!content.isEmpty())
        flash::setContent(content);
    platform->setHomeUiType(homeUiType);
    log->take();
    const AudioDataBase store;
    QTEST(log->takeTexts(), "lines");
}

void AudioDataBaseTest::logOfMicrophoneOperations_data()
{
    QTest::addColumn<bool>("original");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("original microphone") << true << QStringLiteral("Orig");
    QTest::newRow("arm microphone") << false << QStringLiteral("Arm");
}

void AudioDataBaseTest::logOfMicrophoneOperations()
{
    QFETCH(bool, original);
    QFETCH(QString, suffix);
    AudioDataBase store;
    store.setmicType(original);
    log->take();
    store.setAutoMicGain(3.5F);
    QCOMPARE(log->takeTexts(), QStringList(QStringLiteral("[DBG] THREAD void audio::AudioDataBase::setAutoMicGain(float) LINE --")));
    store.setHandsfreeDelay(4);
    QCOMPARE(log->takeTexts(), QStringList(QStringLiteral("[DBG] THREAD void audio::AudioDataBase::setHandsfreeDelay(int) LINE --")));
    store.getAutoMicGain();
    const QString gain = QStringLiteral("[DBG] THREAD float audio::AudioDataBase::getAutoMicGain() LINE -- ");
    QCOMPARE(log->takeTexts(), QStringList({gain + QStringLiteral("\"AutoMicGain%1\"").arg(suffix), gain + QStringLiteral("3")}));
    store.getHandsfreeDelay();
    const QList<LogRecorder::Line> lines = log->take();
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.first().level, QtDebugMsg);
    QVERIFY(lines.first().text.endsWith(QStringLiteral("-- \"MicDelay%1\"").arg(suffix)));
    QVERIFY(lines.last().text.endsWith(QStringLiteral("-- 4")));
}

void AudioDataBaseTest::logOfCustomEq()
{
    AudioDataBase store;
    log->take();
    store.setCustomEQ(-7, 12);
    QCOMPARE(log->takeTexts(),
             QStringList(QStringLiteral("[DBG] THREAD void audio::AudioDataBase::setCustomEQ(int, int) LINE -- ########################### 12 -7")));
}

void AudioDataBaseTest::othersAreSilent()
{
    AudioDataBase store;
    log->take();
    store.setVolume(ZelAudioTypeMedia, 1, true);
    store.savevolume();
    store.setEqType(1);
    store.setLoudNess(false);
    store.setmicType(true);
    store.setMicInputValue(5);
    store.getVolume(ZelAudioTypeMedia);
    store.getNextEqType(true);
    QCOMPARE(log->takeTexts(), QStringList());
}

/// The script says by itself where it puts a flash.
void AudioDataBaseTest::withFlashGivesTheFolder()
{
    QCOMPARE(SettingsFile::folder(), flash::folder());
    QCOMPARE(SettingsFile::path(), flash::settingsFile());
    QFile script(QStringLiteral(WITH_FLASH));
    QVERIFY(script.open(QIODevice::ReadOnly));
    QVERIFY(script.readAll().contains("\nflash=" + SettingsFile::folder().toUtf8() + '\n'));
}

QTEST_GUILESS_MAIN(AudioDataBaseTest)

#include "tst_audiodatabase.moc"
