#include "flash.h"
#include "storetest.h"

#include <situationexpectations.h>

#include <qzaudio/audiodatabase.h>

#include <QtTest/QtTest>

#include <algorithm>
#include <array>
#include <cstring>

using audio::AudioDataBase;

namespace
{

struct Preset
{
    int tag;
    const char *gains; // tenths of a dB
};

// By equalizer type.
const std::array<Preset, 8> presets = {{
    {104, "48 43 38 34 30 27 25 5 -40 -30 0 11 22 27 32 38"},
    {241, "50 55 40 35 30 20 15 5 0 5 20 30 50 40 60 50"},
    {254, "50 45 30 10 20 40 50 0 -20 -20 30 40 50 55 55 20"},
    {245, "60 50 40 0 0 0 30 40 40 20 0 0 50 50 50 50"},
    {240, "-30 -20 0 30 40 50 55 55 55 40 30 30 0 -30 50 40"},
    {101, "-40 -50 -50 30 40 60 60 50 50 55 20 10 0 0 -40 -50"},
    {127, "20 20 20 20 20 20 20 20 20 20 20 20 20 20 20 20"},
    {201, "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0"},
}};

const std::array<int, 6> outside
    = {-1, std::max(expectation::statusCount, expectation::channelCount), 25, 256, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};

QList<int> channelsOfType(AudioDataBase &store, int type)
{
    QList<int> found;
    for (int channel = 0; channel < expectation::channelCount; ++channel) {
        if (store.getChannelInfo(static_cast<AudioChannel>(channel)).type == type)
            found.append(channel);
    }
    return found;
}

} // namespace

class AudioDataBaseTablesTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void statusTable();
    void channelTable();
    void channelsByType();
    void unknownStatusesAndChannels();
    void lookingUpInsertsNothing();
    void streamVolumes();
    void streamVolumesAreNarrowedToBytes_data();
    void streamVolumesAreNarrowedToBytes();
    void presetTable();
    void presetIndex_data();
    void presetIndex();
    void nextPreset_data();
    void nextPreset();
};

void AudioDataBaseTablesTest::statusTable()
{
    AudioDataBase store;
    for (int status = 0; status < expectation::statusCount; ++status) {
        const auto key = static_cast<AudioStatus>(status);
        QCOMPARE(int(store.getAudioStatusInfo(key).type), expectation::status(status).type);
        QCOMPARE(store.getAudioStatusInfo(key).param, 0);
        QCOMPARE(store.getStatusToSpName(key), QString::fromLatin1(expectation::status(status).source.name));
    }
}

void AudioDataBaseTablesTest::channelTable()
{
    AudioDataBase store;
    for (int channel = 0; channel < expectation::channelCount; ++channel) {
        const ZelAudioAChannelInfo info = store.getChannelInfo(static_cast<AudioChannel>(channel));
        QCOMPARE(int(info.type), expectation::channel(channel).type);
        QCOMPARE(info.spName, QString::fromLatin1(expectation::channel(channel).source.name));
    }
}

void AudioDataBaseTablesTest::channelsByType()
{
    AudioDataBase store;
    for (int type = 0; type < expectation::typeCount; ++type)
        QCOMPARE(channelsOfType(store, type), expectation::channelsOfType(type));
}

void AudioDataBaseTablesTest::unknownStatusesAndChannels()
{
    AudioDataBase store;
    for (int value : outside) {
        QCOMPARE(int(store.getAudioStatusInfo(static_cast<AudioStatus>(value)).type), 0);
        QCOMPARE(store.getAudioStatusInfo(static_cast<AudioStatus>(value)).param, 0);
        QCOMPARE(store.getStatusToSpName(static_cast<AudioStatus>(value)), QStringLiteral("S+none_APP"));
        QCOMPARE(int(store.getChannelInfo(static_cast<AudioChannel>(value)).type), 0);
        QCOMPARE(store.getChannelInfo(static_cast<AudioChannel>(value)).spName, QStringLiteral("S+none_APP"));
    }
}

/// A look-up that inserted would change what a later one finds between its neighbours.
void AudioDataBaseTablesTest::lookingUpInsertsNothing()
{
    unknownStatusesAndChannels();
    statusTable();
    channelTable();
}

void AudioDataBaseTablesTest::streamVolumes()
{
    AudioDataBase store;
    QHash<QString, uchar> expected;
    for (int type = 0; type < expectation::typeCount; ++type)
        store.setVolume(static_cast<ZelAudioType>(type), type + 1, false);
    for (const expectation::Stream &stream : expectation::streams)
        expected.insert(QString::fromLatin1(stream.source.name), static_cast<uchar>(stream.type + 1));
    QCOMPARE(expected.size(), int(expectation::streams.size()));
    QHash<QString, uchar> volumes{{QStringLiteral("Foreign"), 1}, {QStringLiteral("S+FilePlayer_APP"), 99}};
    store.getGroupDefaultData(volumes);
    QCOMPARE(volumes, expected);
}

void AudioDataBaseTablesTest::streamVolumesAreNarrowedToBytes_data()
{
    QTest::addColumn<int>("volume");
    QTest::addColumn<int>("byte");
    QTest::newRow("300") << 300 << 44;
    QTest::newRow("255") << 255 << 255;
    QTest::newRow("256") << 256 << 0;
    QTest::newRow("-1") << -1 << 255;
}

void AudioDataBaseTablesTest::streamVolumesAreNarrowedToBytes()
{
    QFETCH(int, volume);
    AudioDataBase store;
    store.setVolume(ZelAudioTypeMedia, volume, false);
    QHash<QString, uchar> volumes;
    store.getGroupDefaultData(volumes);
    QTEST(int(volumes.value(QStringLiteral("S+IPod_APP"))), "byte");
}

void AudioDataBaseTablesTest::presetTable()
{
    AudioDataBase store;
    const EqBaseData *const table = store.getEqBaseData();
    QCOMPARE(sizeof(EqBaseData), size_t(72));
    for (size_t index = 0; index < presets.size(); ++index) {
        // Walked as a client does that only knows the layout.
        qint32 record[18];
        std::memcpy(&record[0], reinterpret_cast<const char *>(table) + index * 72, sizeof record);
        QCOMPARE(record[0], int(index));
        QCOMPARE(record[1], presets[index].tag);
        const QStringList gains = QString::fromLatin1(presets[index].gains).split(QLatin1Char(' '));
        QCOMPARE(gains.size(), 16);
        for (int band = 0; band < 16; ++band) {
            float gain = 0;
            std::memcpy(&gain, &record[2 + band], sizeof gain);
            QCOMPARE(gain, gains.at(band).toFloat() / 10.0F);
        }
    }
}

void AudioDataBaseTablesTest::presetIndex_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("index");
    for (int type = 0; type < 8; ++type)
        QTest::addRow("%d", type) << type << type;
    for (int type : {-1, 8, 99, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        QTest::addRow("%d", type) << type << 0;
}

void AudioDataBaseTablesTest::presetIndex()
{
    QFETCH(int, type);
    AudioDataBase store;
    QTEST(store.getCurrentIndexInDefault(type), "index");
    QCOMPARE(store.getCurrentIndexInItem(), 6);
    store.setEqType(type);
    QTEST(store.getCurrentIndexInItem(), "index");
}

void AudioDataBaseTablesTest::nextPreset_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("up");
    QTest::addColumn<int>("down");
    QTest::newRow("0") << 0 << 1 << 7;
    QTest::newRow("1") << 1 << 2 << 0;
    QTest::newRow("6") << 6 << 7 << 5;
    QTest::newRow("7") << 7 << 0 << 6;
    QTest::newRow("none") << 8 << 1 << 7;
    QTest::newRow("negative") << -1 << 1 << 7;
}

void AudioDataBaseTablesTest::nextPreset()
{
    QFETCH(int, type);
    AudioDataBase store;
    store.setEqType(type);
    QTEST(store.getNextEqType(true), "up");
    QTEST(store.getNextEqType(false), "down");
    QCOMPARE(store.eqType(), type);
    QCOMPARE(flash::entries().value("EQ/Type"), QByteArray::number(type));
}

QTEST_GUILESS_MAIN(AudioDataBaseTablesTest)

#include "tst_audiodatabase_tables.moc"
