#include <platform.h>
#include <spaudiosetting.h>

#include <QtTest/QtTest>

#include <cmath>
#include <functional>
#include <limits>

using namespace audio::SPAudioSetting;
using simulator::Platform;

namespace
{

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

/// One of each, as a client holds them.
struct Objects
{
    Volume *volume = createVolume();
    Source *source = createSource();
    Mixer *mixer = createMixer();
    App *app = createApp();

    Objects() = default;
    ~Objects()
    {
        destroy(app);
        destroy(mixer);
        destroy(source);
        destroy(volume);
    }
    Objects(const Objects &) = delete;
    Objects &operator=(const Objects &) = delete;
};

/// Makes one call and gives its result code.
using Request = std::function<int(const Objects &)>;

unsigned char byteOut = 0;
float floatsOut[2] = {};
int intsOut[2] = {};
short shortOut = 0;
unsigned short valuesOut[8] = {};

audio::audio_ext_eq_parameter_t extendedRecord(float gain)
{
    audio::audio_ext_eq_parameter_t record = {};
    record.channel = 0xFFFF;
    record.band[0] = {3, 50, 0, gain, 1, {}};
    record.band[1] = {3, 80, 0, -4, 1.5F, {}};
    return record;
}

audio::audio_eq_parameter_t shortRecord(float gain)
{
    return {0xFFFF, {10, 18, 26, 35, 44, 52, 58, 33}, {gain, 1, 2, 3, 4, 5, 6, 7}, {3, 3, 3, 3, 3, 3, 3, 3}};
}

int channelGain(const Objects &objects, quint32 channel, quint8 gain)
{
    audio::audio_channel_gain_t record = {channel, gain, {}};
    return objects.volume->setFadeBalance(&record);
}

int filter(const Objects &objects, quint32 channel, quint16 kind)
{
    audio::audio_filter_t record = {channel, 10, 1, 20, kind, 30, 40};
    return objects.app->setFilter(&record);
}

int shortEqualizer(const Objects &objects, quint32 channel, float gain)
{
    audio::audio_eq_parameter_t record = shortRecord(gain);
    record.channel = channel;
    return objects.app->setEqParameter(record);
}

int extendedEqualizer(const Objects &objects, quint32 channel, float gain)
{
    audio::audio_ext_eq_parameter_t record = extendedRecord(gain);
    record.channel = channel;
    return objects.app->setExtEqParameter(record);
}

int loudness(const Objects &objects)
{
    audio::audio_loudness_t record = {1, 1, 800};
    return objects.app->setLoudness(&record);
}

struct Row
{
    const char *call;
    Request request;
};

/// What the journal says of each call, on a chip as new. The result is part of the line.
const std::vector<Row> &rows()
{
    static const std::vector<Row> table = {
        {"Volume.setDuckingMode(4294967295) -> 0", [](const Objects &o) { return o.volume->setDuckingMode(0xFFFFFFFFU); }},
        {"Volume.setDuckingTargetGain(60) -> 0", [](const Objects &o) { return o.volume->setDuckingTargetGain(60); }},
        {"Volume.setMasterVolume(100) -> 0", [](const Objects &o) { return o.volume->setMasterVolume(100); }},
        {"Volume.setMasterVolume(101) -> 103", [](const Objects &o) { return o.volume->setMasterVolume(101); }},
        {"Volume.getMasterVolume(0) -> 0, 0", [](const Objects &o) { return o.volume->getMasterVolume(&byteOut, 0); }},
        {"Volume.getMasterVolume(0) -> 111", [](const Objects &o) { return o.volume->getMasterVolume(nullptr, 0); }},
        {"Volume.setFadeBalance({channel: 8, gain: 100}) -> 0", [](const Objects &o) { return channelGain(o, 8, 100); }},
        {"Volume.setFadeBalance({channel: 1, gain: 101}) -> 104", [](const Objects &o) { return channelGain(o, 1, 101); }},
        {"Volume.setFadeBalance({channel: 16, gain: 50}) -> 105", [](const Objects &o) { return channelGain(o, 16, 50); }},
        {"Volume.setFadeBalance({channel: 3, gain: 50}) -> 105", [](const Objects &o) { return channelGain(o, 3, 50); }},
        {"Volume.setFadeBalance({channel: 0, gain: 50}) -> 105", [](const Objects &o) { return channelGain(o, 0, 50); }},
        {"Volume.setFadeBalance({channel: 65535, gain: 50}) -> 105", [](const Objects &o) { return channelGain(o, 0xFFFF, 50); }},
        {"Volume.setFadeBalance({channel: 2, gain: 50, reserved: [0, 7, 0]}) -> 0",
         [](const Objects &o) {
             audio::audio_channel_gain_t record = {2, 50, {0, 7, 0}};
             return o.volume->setFadeBalance(&record);
         }},
        {"Volume.setFadeBalance(null) -> 111", [](const Objects &o) { return o.volume->setFadeBalance(nullptr); }},
        {"Volume.setTrackVolume(\"main_im\", \"any name\", 148) -> 0", [](const Objects &o) { return o.volume->setTrackVolume("main_im", "any name", 148); }},
        {"Volume.setTrackVolume(\"main\", \"S+GPS\", 149) -> 103", [](const Objects &o) { return o.volume->setTrackVolume("main", "S+GPS", 149); }},
        {"Volume.setTrackVolume(\"Main\", \"S+GPS\", 1) -> 101", [](const Objects &o) { return o.volume->setTrackVolume("Main", "S+GPS", 1); }},
        {"Volume.setTrackVolume(\"main\", \"\", 1) -> 102", [](const Objects &o) { return o.volume->setTrackVolume("main", "", 1); }},
        {"Volume.setTrackVolume(null, null, 1) -> 101", [](const Objects &o) { return o.volume->setTrackVolume(nullptr, nullptr, 1); }},
        {"Volume.setTrackVolume(\"main\", \"a\\\"b\\\\c\\x0a\", 1) -> 0", [](const Objects &o) { return o.volume->setTrackVolume("main", "a\"b\\c\n", 1); }},
        {"Volume.getTrackVolume(\"main\", \"S+GPS\") -> 0, 0", [](const Objects &o) { return o.volume->getTrackVolume("main", "S+GPS", &byteOut); }},
        {"Volume.getTrackVolume(\"mian\", \"S+GPS\") -> 101", [](const Objects &o) { return o.volume->getTrackVolume("mian", "S+GPS", &byteOut); }},
        {"Volume.getTrackVolume(\"main\", \"S+GPS\") -> 111", [](const Objects &o) { return o.volume->getTrackVolume("main", "S+GPS", nullptr); }},
        {"Volume.muteTrack(\"second\", 0) -> 0", [](const Objects &o) { return o.volume->muteTrack("second", 0); }},
        {"Volume.muteTrack(\"third\", 0) -> 101", [](const Objects &o) { return o.volume->muteTrack("third", 0); }},
        {"Volume.unmuteTrack(\"second\", 0) -> 0", [](const Objects &o) { return o.volume->unmuteTrack("second", 0); }},
        {"Volume.unmuteTrack(\"\", 0) -> 101", [](const Objects &o) { return o.volume->unmuteTrack("", 0); }},
        {"Volume.setMicVolume(91) -> 0", [](const Objects &o) { return o.volume->setMicVolume(91); }},
        {"Volume.setMicVolume(91.5) -> 103", [](const Objects &o) { return o.volume->setMicVolume(91.5F); }},
        {"Volume.setMicVolume(-0.5) -> 103", [](const Objects &o) { return o.volume->setMicVolume(-0.5F); }},
        {"Volume.setMicVolume(nan) -> 110", [](const Objects &o) { return o.volume->setMicVolume(-notANumber); }},
        {"Volume.setMicPgaGain(0, 4.8, 4.8) -> 0", [](const Objects &o) { return o.volume->setMicPgaGain(0, 4.8F, 4.8F); }},
        {"Volume.setMicPgaGain(0, 1, inf) -> 110", [](const Objects &o) { return o.volume->setMicPgaGain(0, 1, infinite); }},
        {"Volume.setMicOpGain(0, 27.5, 27.5) -> 0", [](const Objects &o) { return o.volume->setMicOpGain(0, 27.5F, 27.5F); }},
        {"Volume.setMicOpGain(0, -inf, 1) -> 110", [](const Objects &o) { return o.volume->setMicOpGain(0, -infinite, 1); }},
        {"Volume.setMicAnalogGain(0.1, 1e+20) -> 0", [](const Objects &o) { return o.volume->setMicAnalogGain(0.1F, 1e20F); }},
        {"Volume.setMicAnalogGain(1, nan) -> 110", [](const Objects &o) { return o.volume->setMicAnalogGain(1, notANumber); }},
        {"Volume.getMicAnalogGain() -> 0, 0, 0", [](const Objects &o) { return o.volume->getMicAnalogGain(&floatsOut[0], &floatsOut[1]); }},
        {"Volume.getMicAnalogGain() -> 111", [](const Objects &o) { return o.volume->getMicAnalogGain(nullptr, &floatsOut[1]); }},
        {"Volume.setAlterTrackVolume(148) -> 0", [](const Objects &o) { return o.volume->setAlterTrackVolume(148); }},
        {"Volume.setAlterTrackVolume(149) -> 103", [](const Objects &o) { return o.volume->setAlterTrackVolume(149); }},
        {"Volume.startMicGainCalibration() -> 0", [](const Objects &o) { return o.volume->startMicGainCalibration(); }},
        {"Volume.setMicGainCalibration() -> 0", [](const Objects &o) { return o.volume->setMicGainCalibration(); }},
        {"Volume.getMicCalibrationGain() -> 0, 0, 0", [](const Objects &o) { return o.volume->getMicCalibrationGain(&intsOut[0], &intsOut[1]); }},
        {"Volume.getMicCalibrationGain() -> 111", [](const Objects &o) { return o.volume->getMicCalibrationGain(&intsOut[0], nullptr); }},

        {"Source.setOutputSource(\"second\", \"S+IPod\") -> 0", [](const Objects &o) { return o.source->setOutputSource("second", "S+IPod"); }},
        {"Source.setOutputSource(\"front\", \"S+IPod\") -> 101", [](const Objects &o) { return o.source->setOutputSource("front", "S+IPod"); }},
        {"Source.setOutputSource(\"main\", \"\") -> 102", [](const Objects &o) { return o.source->setOutputSource("main", ""); }},
        {"Source.getActiveSource(\"main\") -> null", [](const Objects &o) { return !o.source->getActiveSource("main") ? 0 : -1; }},
        {"Source.setInputDestination(\"input0\", \"uplink\") -> 0", [](const Objects &o) { return o.source->setInputDestination("input0", "uplink"); }},
        {"Source.setInputDestination(\"input3\", \"uplink\") -> 101", [](const Objects &o) { return o.source->setInputDestination("input3", "uplink"); }},
        {"Source.setInputDestination(\"input0\", null) -> 102", [](const Objects &o) { return o.source->setInputDestination("input0", nullptr); }},
        {"Source.setInputSelectPin(2, 5) -> 0", [](const Objects &o) { return o.source->setInputSelectPin(2, 5); }},
        {"Source.setInputSelectPin(1, 6) -> 107", [](const Objects &o) { return o.source->setInputSelectPin(1, 6); }},
        {"Source.setInputSelectPin(1, -1) -> 107", [](const Objects &o) { return o.source->setInputSelectPin(1, -1); }},
        {"Source.setInputSelectPin(0, 1) -> 106", [](const Objects &o) { return o.source->setInputSelectPin(0, 1); }},
        {"Source.setInputSelectPin(3, 1) -> 106", [](const Objects &o) { return o.source->setInputSelectPin(3, 1); }},
        {"Source.getInputSelectPin(1) -> 0, 0", [](const Objects &o) { return o.source->getInputSelectPin(1, &byteOut); }},
        {"Source.getInputSelectPin(7) -> 106", [](const Objects &o) { return o.source->getInputSelectPin(7, &byteOut); }},
        {"Source.getInputSelectPin(1) -> 111", [](const Objects &o) { return o.source->getInputSelectPin(1, nullptr); }},
        {"Source.setMicLeftRightSwitch(true) -> 0", [](const Objects &o) { return o.source->setMicLeftRightSwitch(true); }},
        {"Source.setOutputChannelMask(15) -> 0", [](const Objects &o) { return o.source->setOutputChannelMask(15); }},
        {"Source.setOutputChannelMask(65535) -> 0", [](const Objects &o) { return o.source->setOutputChannelMask(0xFFFF); }},
        {"Source.setOutputChannelMask(0) -> 105", [](const Objects &o) { return o.source->setOutputChannelMask(0); }},
        {"Source.setOutputChannelMask(64) -> 105", [](const Objects &o) { return o.source->setOutputChannelMask(64); }},
        {"Source.setOutputChannelMask(-1) -> 105", [](const Objects &o) { return o.source->setOutputChannelMask(-1); }},
        {"Source.queryAlterNumber(\"alternative\") -> 0", [](const Objects &o) { return o.source->queryAlterNumber("alternative"); }},
        {"Source.setHandsfreeDelay(-12) -> 0", [](const Objects &o) { return o.source->setHandsfreeDelay(-12); }},

        {"Mixer.setFrontRearMode(0) -> 0", [](const Objects &o) { return o.mixer->setFrontRearMode(0); }},
        {"Mixer.setFrontRearMode(2) -> 108", [](const Objects &o) { return o.mixer->setFrontRearMode(2); }},
        {"Mixer.setFrontRearMode(-1) -> 108", [](const Objects &o) { return o.mixer->setFrontRearMode(-1); }},

        {"App.setFilter({channel: 32, value1: 10, notFlag: 1, value2: 20, kind: 1, value3: 30, value4: 40}) -> 0",
         [](const Objects &o) { return filter(o, 32, 1); }},
        {"App.setFilter({channel: 3, value1: 10, notFlag: 1, value2: 20, kind: 1, value3: 30, value4: 40}) -> 105",
         [](const Objects &o) { return filter(o, 3, 1); }},
        {"App.setFilter({channel: 65535, value1: 10, notFlag: 1, value2: 20, kind: 2, value3: 30, value4: 40}) -> 112",
         [](const Objects &o) { return filter(o, 0xFFFF, 2); }},
        {"App.setFilter(null) -> 111", [](const Objects &o) { return o.app->setFilter(nullptr); }},
        {"App.setLoudness({on: 1, onAgain: 1, level: 800}) -> 0", loudness},
        {"App.setLoudness(null) -> 111", [](const Objects &o) { return o.app->setLoudness(nullptr); }},
        {"App.setEqParameter({channel: 65535, frequency: [10, 18, 26, 35, 44, 52, 58, 33], gain: [4.8, 1, 2, 3, 4, 5, 6, 7], "
         "type: [3, 3, 3, 3, 3, 3, 3, 3]}) -> 0",
         [](const Objects &o) { return shortEqualizer(o, 0xFFFF, 4.8F); }},
        {"App.setEqParameter({channel: 64, frequency: [10, 18, 26, 35, 44, 52, 58, 33], gain: [4.8, 1, 2, 3, 4, 5, 6, 7], "
         "type: [3, 3, 3, 3, 3, 3, 3, 3]}) -> 105",
         [](const Objects &o) { return shortEqualizer(o, 64, 4.8F); }},
        {"App.setEqParameter({channel: 65535, frequency: [10, 18, 26, 35, 44, 52, 58, 33], gain: [nan, 1, 2, 3, 4, 5, 6, 7], "
         "type: [3, 3, 3, 3, 3, 3, 3, 3]}) -> 110",
         [](const Objects &o) { return shortEqualizer(o, 0xFFFF, notANumber); }},
        {"App.setExtEqParameter({channel: 65535, band: [{type: 3, frequency: 50, gain: 12, q: 1}, {type: 3, frequency: 80, gain: -4, q: 1.5}]}) -> 0",
         [](const Objects &o) { return extendedEqualizer(o, 0xFFFF, 12); }},
        {"App.setExtEqParameter({channel: 0, band: [{type: 3, frequency: 50, gain: 12, q: 1}, {type: 3, frequency: 80, gain: -4, q: 1.5}]}) -> 105",
         [](const Objects &o) { return extendedEqualizer(o, 0, 12); }},
        {"App.setExtEqParameter({channel: 65535, band: [{type: 3, frequency: 50, gain: inf, q: 1}, {type: 3, frequency: 80, gain: -4, q: 1.5}]}) -> 110",
         [](const Objects &o) { return extendedEqualizer(o, 0xFFFF, infinite); }},
        {"App.setExtEqParameter({channel: 1, band: [{type: 0, frequency: 0, reserved0: 9, gain: 0, q: 0, reserved1: [0, 0, 8]}]}) -> 0",
         [](const Objects &o) {
             audio::audio_ext_eq_parameter_t record = {};
             record.channel = 1;
             record.band[0].reserved0 = 9;
             record.band[0].reserved1[2] = 8;
             return o.app->setExtEqParameter(record);
         }},
        {"App.getMicrophoneTest(8) -> 0, 0, 0, 0, 0, 0, 0, 0, 0", [](const Objects &o) { return o.app->getMicrophoneTest(valuesOut, 8); }},
        {"App.getMicrophoneTest(9) -> 113", [](const Objects &o) { return o.app->getMicrophoneTest(valuesOut, 9); }},
        {"App.getMicrophoneTest(0) -> 113", [](const Objects &o) { return o.app->getMicrophoneTest(valuesOut, 0); }},
        {"App.getMicrophoneTest(8) -> 111", [](const Objects &o) { return o.app->getMicrophoneTest(nullptr, 8); }},
        {"App.enableDps() -> 0", [](const Objects &o) { return o.app->enableDps(); }},
        {"App.disableDps() -> 0", [](const Objects &o) { return o.app->disableDps(); }},
        {"App.enableStereo() -> 0", [](const Objects &o) { return o.app->enableStereo(); }},
        {"App.disableStereo() -> 0", [](const Objects &o) { return o.app->disableStereo(); }},
        {"App.setDpsUserGain(-3.25) -> 0", [](const Objects &o) { return o.app->setDpsUserGain(-3.25F); }},
        {"App.setDpsUserGain(nan) -> 110", [](const Objects &o) { return o.app->setDpsUserGain(notANumber); }},
        {"App.setSpeakerDelay(32, 0.3) -> 0", [](const Objects &o) { return o.app->setSpeakerDelay(32, 0.3F); }},
        {"App.setSpeakerDelay(65535, 2) -> 0", [](const Objects &o) { return o.app->setSpeakerDelay(0xFFFF, 2); }},
        {"App.setSpeakerDelay(5, 2) -> 105", [](const Objects &o) { return o.app->setSpeakerDelay(5, 2); }},
        {"App.setSpeakerDelay(1, -2) -> 114", [](const Objects &o) { return o.app->setSpeakerDelay(1, -2); }},
        {"App.setSpeakerDelay(1, inf) -> 110", [](const Objects &o) { return o.app->setSpeakerDelay(1, infinite); }},
        {"App.setAecQuality(2) -> 0", [](const Objects &o) { return o.app->setAecQuality(static_cast<audio::audio_aec_quality_e>(2)); }},
        {"App.setAecQuality(3) -> 109", [](const Objects &o) { return o.app->setAecQuality(static_cast<audio::audio_aec_quality_e>(3)); }},
        {"App.setAecQuality(-1) -> 109", [](const Objects &o) { return o.app->setAecQuality(static_cast<audio::audio_aec_quality_e>(-1)); }},
        {"App.startDownlinkDelayEstimation() -> 0", [](const Objects &o) { return o.app->startDownlinkDelayEstimation(); }},
        {"App.getDownlinkDelayEstimation() -> 0, 0", [](const Objects &o) { return o.app->getDownlinkDelayEstimation(&shortOut); }},
        {"App.getDownlinkDelayEstimation() -> 111", [](const Objects &o) { return o.app->getDownlinkDelayEstimation(nullptr); }},
    };
    return table;
}

QString operationOf(const char *call)
{
    return QString::fromLatin1(call).section(QLatin1Char('('), 0, 0);
}

} // namespace

/// The platform's objects as a client sees them: results, what is journaled, what is refused.
class PlatformObjectsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_platform->reset(); }
    void cleanup() { m_platform->reset(); }

    void calls_data();
    void calls();
    void injectedFaults_data();
    void injectedFaults();
    void faultsAfterWriting_data();
    void faultsAfterWriting();
    void everyOperationIsCovered();
    void refusalsChangeNothing();
    void recordsAreCapturedAsBytes();
    void getters();
    void firstOperationIsFirstInTheTable();

private:
    Platform *const m_platform = Platform::instance();
};

void PlatformObjectsTest::calls_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < static_cast<int>(rows().size()); ++row)
        QTest::newRow(rows()[static_cast<std::size_t>(row)].call) << row;
}

void PlatformObjectsTest::calls()
{
    QFETCH(int, row);
    const Row &expected = rows()[static_cast<std::size_t>(row)];

    const Objects objects;
    m_platform->journal()->clear();
    const int code = expected.request(objects);
    QCOMPARE(m_platform->journal()->calls(), QStringList(QString::fromLatin1(expected.call)));
    const simulator::JournalEntry entry = m_platform->journal()->entries().at(0);
    if (entry.result.isValid())
        QCOMPARE(entry.result.toInt(), code);
    // A refusal names its cause, and only a refusal does.
    QCOMPARE(entry.note, QString(simulator::refusalText(code)));
    QCOMPARE(entry.note.isEmpty(), code == 0);
    QVERIFY(code == 0 || entry.outputs.isEmpty());
    QCOMPARE(m_platform->books()->problems(), QStringList());
}

void PlatformObjectsTest::injectedFaults_data()
{
    QTest::addColumn<int>("row");
    QSet<QString> seen;
    for (int row = 0; row < static_cast<int>(rows().size()); ++row) {
        const QString operation = operationOf(rows()[static_cast<std::size_t>(row)].call);
        if (operation != QLatin1String("Source.getActiveSource") && !seen.contains(operation))
            QTest::newRow(qPrintable(operation)) << row;
        seen += operation;
    }
}

void PlatformObjectsTest::injectedFaults()
{
    QFETCH(int, row);
    const Row &request = rows()[static_cast<std::size_t>(row)];

    const Objects objects;
    const QVector<simulator::StateItem> before = m_platform->chip()->stateTable();
    QSignalSpy changed(m_platform->chip(), &simulator::AudioChip::changed);
    QVERIFY(m_platform->faults()->fail(operationOf(request.call), -77, 2));
    QVERIFY(m_platform->faults()->fail(operationOf(request.call), -76, 1));
    QCOMPARE(request.request(objects), -76);
    QCOMPARE(request.request(objects), -77);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_platform->chip()->stateTable().count(), before.count());
    QCOMPARE(request.request(objects), 0);
}

void PlatformObjectsTest::faultsAfterWriting_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("writes");
    const QStringList writing = {
        QStringLiteral("Volume.getMasterVolume"),
        QStringLiteral("Volume.getTrackVolume"),
        QStringLiteral("Volume.getMicAnalogGain"),
        QStringLiteral("Volume.getMicCalibrationGain"),
        QStringLiteral("Source.getInputSelectPin"),
        QStringLiteral("App.getMicrophoneTest"),
        QStringLiteral("App.getDownlinkDelayEstimation"),
    };
    QSet<QString> seen;
    for (int row = 0; row < static_cast<int>(rows().size()); ++row) {
        const QString operation = operationOf(rows()[static_cast<std::size_t>(row)].call);
        if (!seen.contains(operation))
            QTest::newRow(qPrintable(operation)) << row << writing.contains(operation);
        seen += operation;
    }
}

void PlatformObjectsTest::faultsAfterWriting()
{
    QFETCH(int, row);
    QFETCH(bool, writes);
    const Row &request = rows()[static_cast<std::size_t>(row)];
    const QString operation = operationOf(request.call);
    simulator::Faults *const faults = m_platform->faults();
    QCOMPARE(faults->failAfterWriting(operation, -77, 2), writes);
    QVERIFY(!faults->failAfterWriting(operation, 0));
    QVERIFY(!faults->failAfterWriting(operation, -77, 0));
    if (!writes) {
        QVERIFY(!faults->failAfterWriting(operation, -77));
        QCOMPARE(faults->pending(), QStringList());
        return;
    }

    QCOMPARE(faults->pending(), QStringList(operation + QStringLiteral(" -77 after writing in 2 calls")));
    const Objects objects;
    QCOMPARE(request.request(objects), 0);
    QCOMPARE(request.request(objects), -77);
    QCOMPARE(request.request(objects), 0);
    const auto entries = m_platform->journal()->entriesOf(operation);
    QVERIFY(!entries.at(1).outputs.isEmpty());
    QCOMPARE(entries.at(1).outputs, entries.at(0).outputs);
    QCOMPARE(entries.at(1).note, QStringLiteral("injected fault"));
    QCOMPARE(entries.at(1).call(), QString::fromLatin1(request.call).replace(QStringLiteral(") -> 0"), QStringLiteral(") -> -77")));
}

void PlatformObjectsTest::everyOperationIsCovered()
{
    QSet<QString> covered;
    for (const Row &row : rows())
        covered += operationOf(row.call);
    const QStringList operations = simulator::Faults::operations();
    const QSet<QString> all(operations.cbegin(), operations.cend());
    QCOMPARE(all.count(), 42);
    QCOMPARE(covered, all);
}

void PlatformObjectsTest::refusalsChangeNothing()
{
    const Objects objects;
    QSignalSpy changed(m_platform->chip(), &simulator::AudioChip::changed);
    for (const Row &row : rows()) {
        if (!QByteArray(row.call).contains("-> 1"))
            continue;
        QVERIFY(row.request(objects) > 100);
        QVERIFY2(changed.isEmpty(), row.call);
    }
}

void PlatformObjectsTest::recordsAreCapturedAsBytes()
{
    const Objects objects;
    simulator::AudioChip *const chip = m_platform->chip();
    const auto bytes = [](const auto &record) { return QByteArray(reinterpret_cast<const char *>(&record), sizeof record); };
    const auto journaled = [this] { return m_platform->journal()->entries().last().record; };

    extendedEqualizer(objects, 0xFFFF, 3);
    QCOMPARE(journaled(), bytes(extendedRecord(3)));
    QCOMPARE(bytes(chip->lastExtEqParameter()), bytes(extendedRecord(3)));
    shortEqualizer(objects, 0xFFFF, 3);
    QCOMPARE(journaled(), bytes(shortRecord(3)));
    QCOMPARE(bytes(chip->lastEqParameter()), bytes(shortRecord(3)));
    loudness(objects);
    QCOMPARE(journaled(), QByteArray::fromHex("010001002003"));
    QCOMPARE(bytes(chip->lastLoudness()), journaled());
    filter(objects, 4, 1);
    QCOMPARE(journaled(), QByteArray::fromHex("040000000a000100140001001e002800"));
    QVERIFY(chip->filter(4).has_value());
    QCOMPARE(bytes(*chip->filter(4)), journaled());
    channelGain(objects, 2, 33);
    QCOMPARE(journaled(), QByteArray::fromHex("0200000021000000"));
    QCOMPARE(bytes(chip->lastChannelGain()), journaled());
    // A refused record is journaled too, but the chip keeps the last good one.
    channelGain(objects, 2, 101);
    QCOMPARE(journaled(), QByteArray::fromHex("0200000065000000"));
    QCOMPARE(chip->lastChannelGain().gain, quint8(33));
}

void PlatformObjectsTest::getters()
{
    const Objects objects;
    objects.volume->setMasterVolume(70);
    QCOMPARE(objects.volume->getMasterVolume(&byteOut, 0), 0);
    QCOMPARE(int(byteOut), 70);
    objects.volume->setTrackVolume("main", "S+GPS", 44);
    QCOMPARE(objects.volume->getTrackVolume("main", "S+GPS", &byteOut), 0);
    QCOMPARE(int(byteOut), 44);
    objects.volume->setMicAnalogGain(1.5F, -2.5F);
    QCOMPARE(objects.volume->getMicAnalogGain(&floatsOut[0], &floatsOut[1]), 0);
    QCOMPARE(floatsOut[0], 1.5F);
    QCOMPARE(floatsOut[1], -2.5F);
    m_platform->chip()->setCalibrationGains(11, -12);
    QCOMPARE(objects.volume->getMicCalibrationGain(&intsOut[0], &intsOut[1]), 0);
    QCOMPARE(intsOut[0], 11);
    QCOMPARE(intsOut[1], -12);
    m_platform->chip()->setDownlinkDelay(-300);
    QCOMPARE(objects.app->getDownlinkDelayEstimation(&shortOut), 0);
    QCOMPARE(shortOut, short(-300));
    m_platform->chip()->setMicrophoneTest({1, 2, 3, 4, 5, 6, 7, 65535});
    QCOMPARE(objects.app->getMicrophoneTest(valuesOut, 8), 0);
    QCOMPARE(int(valuesOut[0]), 1);
    QCOMPARE(int(valuesOut[7]), 65535);
    QCOMPARE(m_platform->journal()->calls().last(), QStringLiteral("App.getMicrophoneTest(8) -> 0, 1, 2, 3, 4, 5, 6, 7, 65535"));
    objects.source->setInputSelectPin(2, 5);
    QCOMPARE(objects.source->getInputSelectPin(2, &byteOut), 0);
    QCOMPARE(int(byteOut), 5);
    objects.source->setOutputSource("main", "S+GPS");
    QCOMPARE(objects.source->getActiveSource("main"), "S+GPS");
    m_platform->chip()->setActiveSource(QStringLiteral("main"), QLatin1String(""));
    QCOMPARE(objects.source->getActiveSource("main"), "");
    m_platform->chip()->setActiveSource(QStringLiteral("main"), QString());
    QVERIFY(objects.source->getActiveSource("main") == nullptr);
    QVERIFY(objects.source->getActiveSource("no track") == nullptr);
}

void PlatformObjectsTest::firstOperationIsFirstInTheTable()
{
    // As a caller that was compiled against the platform's own header does it: object, table, first entry.
    const Objects objects;
    const auto firstEntry = [](const void *object) { return **static_cast<void ***>(const_cast<void *>(object)); };
    m_platform->journal()->clear();
    audio::audio_filter_t record = {1, 0, 0, 0, 0, 0, 0};
    QCOMPARE(reinterpret_cast<int (*)(void *, unsigned int)>(firstEntry(objects.volume))(objects.volume, 3U), 0);
    QCOMPARE(reinterpret_cast<int (*)(void *, const char *, const char *)>(firstEntry(objects.source))(objects.source, "main", "S+GPS"), 0);
    QCOMPARE(reinterpret_cast<int (*)(void *, int)>(firstEntry(objects.mixer))(objects.mixer, 1), 0);
    QCOMPARE(reinterpret_cast<int (*)(void *, void *)>(firstEntry(objects.app))(objects.app, &record), 0);
    QCOMPARE(m_platform->journal()->calls(),
             QStringList({
                 QStringLiteral("Volume.setDuckingMode(3) -> 0"),
                 QStringLiteral("Source.setOutputSource(\"main\", \"S+GPS\") -> 0"),
                 QStringLiteral("Mixer.setFrontRearMode(1) -> 0"),
                 QStringLiteral("App.setFilter({channel: 1, value1: 0, notFlag: 0, value2: 0, kind: 0, value3: 0, value4: 0}) -> 0"),
             }));
}

QTEST_GUILESS_MAIN(PlatformObjectsTest)
#include "tst_platformobjects.moc"
