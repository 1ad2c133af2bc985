#include <spaudiosetting.h>
#include <texts.h>

#include <QtTest/QtTest>

#include <cstring>

namespace SP = audio::SPAudioSetting;
using audio::audio_aec_quality_e;
using audio::audio_channel_gain_t;
using audio::audio_eq_parameter_t;
using audio::audio_ext_eq_band_t;
using audio::audio_ext_eq_parameter_t;
using audio::audio_filter_t;
using audio::audio_loudness_t;

// The signatures, independent of the header: a call through a table with another one is undefined.
static_assert(std::is_same_v<decltype(&SP::Volume::setDuckingMode), int (SP::Volume::*)(unsigned int)>);
static_assert(std::is_same_v<decltype(&SP::Volume::setDuckingTargetGain), int (SP::Volume::*)(unsigned char)>);
static_assert(std::is_same_v<decltype(&SP::Volume::setMasterVolume), int (SP::Volume::*)(unsigned char)>);
static_assert(std::is_same_v<decltype(&SP::Volume::getMasterVolume), int (SP::Volume::*)(unsigned char *, int)>);
static_assert(std::is_same_v<decltype(&SP::Volume::setFadeBalance), int (SP::Volume::*)(audio_channel_gain_t *)>);
static_assert(std::is_same_v<decltype(&SP::Volume::setTrackVolume), int (SP::Volume::*)(const char *, const char *, unsigned char)>);
static_assert(std::is_same_v<decltype(&SP::Volume::getTrackVolume), int (SP::Volume::*)(const char *, const char *, unsigned char *)>);
static_assert(std::is_same_v<decltype(&SP::Volume::muteTrack), int (SP::Volume::*)(const char *, int)>);
static_assert(std::is_same_v<decltype(&SP::Volume::unmuteTrack), int (SP::Volume::*)(const char *, int)>);
static_assert(std::is_same_v<decltype(&SP::Volume::setMicVolume), int (SP::Volume::*)(float)>);
static_assert(std::is_same_v<decltype(&SP::Volume::setMicPgaGain), int (SP::Volume::*)(int, float, float)>);
static_assert(std::is_same_v<decltype(&SP::Volume::setMicOpGain), int (SP::Volume::*)(int, float, float)>);
static_assert(std::is_same_v<decltype(&SP::Volume::setMicAnalogGain), int (SP::Volume::*)(float, float)>);
static_assert(std::is_same_v<decltype(&SP::Volume::getMicAnalogGain), int (SP::Volume::*)(float *, float *)>);
static_assert(std::is_same_v<decltype(&SP::Volume::setAlterTrackVolume), int (SP::Volume::*)(unsigned char)>);
static_assert(std::is_same_v<decltype(&SP::Volume::startMicGainCalibration), int (SP::Volume::*)()>);
static_assert(std::is_same_v<decltype(&SP::Volume::setMicGainCalibration), int (SP::Volume::*)()>);
static_assert(std::is_same_v<decltype(&SP::Volume::getMicCalibrationGain), int (SP::Volume::*)(int *, int *)>);

static_assert(std::is_same_v<decltype(&SP::Source::setOutputSource), int (SP::Source::*)(const char *, const char *)>);
static_assert(std::is_same_v<decltype(&SP::Source::getActiveSource), const char *(SP::Source::*)(const char *)>);
static_assert(std::is_same_v<decltype(&SP::Source::setInputDestination), int (SP::Source::*)(const char *, const char *)>);
static_assert(std::is_same_v<decltype(&SP::Source::setInputSelectPin), int (SP::Source::*)(int, int)>);
static_assert(std::is_same_v<decltype(&SP::Source::getInputSelectPin), int (SP::Source::*)(int, unsigned char *)>);
static_assert(std::is_same_v<decltype(&SP::Source::setMicLeftRightSwitch), int (SP::Source::*)(bool)>);
static_assert(std::is_same_v<decltype(&SP::Source::setOutputChannelMask), int (SP::Source::*)(int)>);
static_assert(std::is_same_v<decltype(&SP::Source::queryAlterNumber), int (SP::Source::*)(const char *)>);
static_assert(std::is_same_v<decltype(&SP::Source::setHandsfreeDelay), int (SP::Source::*)(int)>);

static_assert(std::is_same_v<decltype(&SP::Mixer::setFrontRearMode), int (SP::Mixer::*)(int)>);

static_assert(std::is_same_v<decltype(&SP::App::setFilter), int (SP::App::*)(audio_filter_t *)>);
static_assert(std::is_same_v<decltype(&SP::App::setLoudness), int (SP::App::*)(audio_loudness_t *)>);
static_assert(std::is_same_v<decltype(&SP::App::setEqParameter), int (SP::App::*)(audio_eq_parameter_t &)>);
static_assert(std::is_same_v<decltype(&SP::App::getMicrophoneTest), int (SP::App::*)(unsigned short *, int)>);
static_assert(std::is_same_v<decltype(&SP::App::enableDps), int (SP::App::*)()>);
static_assert(std::is_same_v<decltype(&SP::App::disableDps), int (SP::App::*)()>);
static_assert(std::is_same_v<decltype(&SP::App::enableStereo), int (SP::App::*)()>);
static_assert(std::is_same_v<decltype(&SP::App::disableStereo), int (SP::App::*)()>);
static_assert(std::is_same_v<decltype(&SP::App::setDpsUserGain), int (SP::App::*)(float)>);
static_assert(std::is_same_v<decltype(&SP::App::setSpeakerDelay), int (SP::App::*)(int, float)>);
static_assert(std::is_same_v<decltype(&SP::App::setAecQuality), int (SP::App::*)(audio_aec_quality_e)>);
static_assert(std::is_same_v<decltype(&SP::App::setExtEqParameter), int (SP::App::*)(audio_ext_eq_parameter_t &)>);
static_assert(std::is_same_v<decltype(&SP::App::startDownlinkDelayEstimation), int (SP::App::*)()>);
static_assert(std::is_same_v<decltype(&SP::App::getDownlinkDelayEstimation), int (SP::App::*)(short *)>);

namespace
{

/// What was called, with the arguments that arrived.
QString &called()
{
    static QString text;
    return text;
}

template<typename Argument>
QString textOf(Argument argument)
{
    if constexpr (std::is_same_v<Argument, const char *>)
        return QString::fromLatin1(argument);
    else if constexpr (std::is_pointer_v<Argument>)
        return argument ? "address"_s : "null"_s;
    else if constexpr (std::is_floating_point_v<Argument>)
        return QString::number(static_cast<double>(argument));
    else
        return QString::number(static_cast<int>(argument));
}

template<typename... Arguments>
int record(const char *operation, Arguments... arguments)
{
    called() = QString::fromLatin1(operation) + "("_s + (QStringList{textOf(arguments)...}).join(", "_s) + ")"_s;
    return 4711;
}

class RecordingVolume final : public SP::Volume
{
public:
    int setDuckingMode(unsigned int mode) override { return record("setDuckingMode", mode); }
    int setDuckingTargetGain(unsigned char gain) override { return record("setDuckingTargetGain", gain); }
    int setMasterVolume(unsigned char volume) override { return record("setMasterVolume", volume); }
    int getMasterVolume(unsigned char *volume, int zero) override { return record("getMasterVolume", volume, zero); }
    int setFadeBalance(audio_channel_gain_t *gain) override { return record("setFadeBalance", gain); }
    int setTrackVolume(const char *track, const char *source, unsigned char volume) override { return record("setTrackVolume", track, source, volume); }
    int getTrackVolume(const char *track, const char *source, unsigned char *volume) override { return record("getTrackVolume", track, source, volume); }
    int muteTrack(const char *track, int zero) override { return record("muteTrack", track, zero); }
    int unmuteTrack(const char *track, int zero) override { return record("unmuteTrack", track, zero); }
    int setMicVolume(float volume) override { return record("setMicVolume", volume); }
    int setMicPgaGain(int zero, float gain, float gainAgain) override { return record("setMicPgaGain", zero, gain, gainAgain); }
    int setMicOpGain(int zero, float gain, float gainAgain) override { return record("setMicOpGain", zero, gain, gainAgain); }
    int setMicAnalogGain(float first, float second) override { return record("setMicAnalogGain", first, second); }
    int getMicAnalogGain(float *first, float *second) override { return record("getMicAnalogGain", first, second); }
    int setAlterTrackVolume(unsigned char volume) override { return record("setAlterTrackVolume", volume); }
    int startMicGainCalibration() override { return record("startMicGainCalibration"); }
    int setMicGainCalibration() override { return record("setMicGainCalibration"); }
    int getMicCalibrationGain(int *first, int *second) override { return record("getMicCalibrationGain", first, second); }
};

class RecordingSource final : public SP::Source
{
public:
    int setOutputSource(const char *track, const char *source) override { return record("setOutputSource", track, source); }
    const char *getActiveSource(const char *track) override
    {
        record("getActiveSource", track);
        return "4711";
    }
    int setInputDestination(const char *track, const char *destination) override { return record("setInputDestination", track, destination); }
    int setInputSelectPin(int input, int pin) override { return record("setInputSelectPin", input, pin); }
    int getInputSelectPin(int input, unsigned char *pin) override { return record("getInputSelectPin", input, pin); }
    int setMicLeftRightSwitch(bool swap) override { return record("setMicLeftRightSwitch", swap); }
    int setOutputChannelMask(int mask) override { return record("setOutputChannelMask", mask); }
    int queryAlterNumber(const char *track) override { return record("queryAlterNumber", track); }
    int setHandsfreeDelay(int delay) override { return record("setHandsfreeDelay", delay); }
};

class RecordingMixer final : public SP::Mixer
{
public:
    int setFrontRearMode(int mode) override { return record("setFrontRearMode", mode); }
};

class RecordingApp final : public SP::App
{
public:
    int setFilter(audio_filter_t *filter) override { return record("setFilter", filter); }
    int setLoudness(audio_loudness_t *loudness) override { return record("setLoudness", loudness); }
    int setEqParameter(audio_eq_parameter_t &parameter) override { return record("setEqParameter", &parameter); }
    int getMicrophoneTest(unsigned short *values, int count) override { return record("getMicrophoneTest", values, count); }
    int enableDps() override { return record("enableDps"); }
    int disableDps() override { return record("disableDps"); }
    int enableStereo() override { return record("enableStereo"); }
    int disableStereo() override { return record("disableStereo"); }
    int setDpsUserGain(float gain) override { return record("setDpsUserGain", gain); }
    int setSpeakerDelay(int channel, float delay) override { return record("setSpeakerDelay", channel, delay); }
    int setAecQuality(audio_aec_quality_e quality) override { return record("setAecQuality", quality); }
    int setExtEqParameter(audio_ext_eq_parameter_t &parameter) override { return record("setExtEqParameter", &parameter); }
    int startDownlinkDelayEstimation() override { return record("startDownlinkDelayEstimation"); }
    int getDownlinkDelayEstimation(short *delay) override { return record("getDownlinkDelayEstimation", delay); }
};

/// Calls the n-th entry of an object's table of virtual operations, as the vendor's binary has it called.
template<typename Result = int, typename Object, typename... Arguments>
Result callEntry(Object &object, std::size_t entry, Arguments... arguments)
{
    using Operation = Result (*)(Object *, Arguments...);
    Operation *table = nullptr;
    std::memcpy(&table, static_cast<const void *>(&object), sizeof table);
    return table[entry](&object, arguments...);
}

struct Entry
{
    const char *recorded;
    bool (*calls)(std::size_t entry); ///< false where the result does not come back
};

RecordingVolume volume;
RecordingSource source;
RecordingMixer mixer;
RecordingApp app;

template<typename Object, typename... Arguments>
bool callsBack(Object &object, std::size_t entry, Arguments... arguments)
{
    return callEntry(object, entry, arguments...) == 4711;
}

unsigned char byte = 0;
int number = 0;
short shortNumber = 0;
unsigned short shortNumbers[8] = {};
float real = 0;
audio_channel_gain_t channelGain = {};
audio_filter_t filter = {};
audio_loudness_t loudness = {};
audio_eq_parameter_t shortCurve = {};
audio_ext_eq_parameter_t longCurve = {};
const char *const track = "main";
const char *const name = "S+GPS";

// In the order of the tables.
const Entry volumeTable[] = {
    {"setDuckingMode(3)", [](std::size_t entry) { return callsBack(volume, entry, 3U); }},
    {"setDuckingTargetGain(200)", [](std::size_t entry) { return callsBack(volume, entry, static_cast<unsigned char>(200)); }},
    {"setMasterVolume(100)", [](std::size_t entry) { return callsBack(volume, entry, static_cast<unsigned char>(100)); }},
    {"getMasterVolume(address, 0)", [](std::size_t entry) { return callsBack(volume, entry, &byte, 0); }},
    {"setFadeBalance(address)", [](std::size_t entry) { return callsBack(volume, entry, &channelGain); }},
    {"setTrackVolume(main, S+GPS, 148)", [](std::size_t entry) { return callsBack(volume, entry, track, name, static_cast<unsigned char>(148)); }},
    {"getTrackVolume(main, S+GPS, address)", [](std::size_t entry) { return callsBack(volume, entry, track, name, &byte); }},
    {"muteTrack(main, 0)", [](std::size_t entry) { return callsBack(volume, entry, track, 0); }},
    {"unmuteTrack(main, 0)", [](std::size_t entry) { return callsBack(volume, entry, track, 0); }},
    {"setMicVolume(1.5)", [](std::size_t entry) { return callsBack(volume, entry, 1.5F); }},
    {"setMicPgaGain(0, 1.5, 2.5)", [](std::size_t entry) { return callsBack(volume, entry, 0, 1.5F, 2.5F); }},
    {"setMicOpGain(0, 1.5, 2.5)", [](std::size_t entry) { return callsBack(volume, entry, 0, 1.5F, 2.5F); }},
    {"setMicAnalogGain(1.5, 2.5)", [](std::size_t entry) { return callsBack(volume, entry, 1.5F, 2.5F); }},
    {"getMicAnalogGain(address, address)", [](std::size_t entry) { return callsBack(volume, entry, &real, &real); }},
    {"setAlterTrackVolume(148)", [](std::size_t entry) { return callsBack(volume, entry, static_cast<unsigned char>(148)); }},
    {"startMicGainCalibration()", [](std::size_t entry) { return callsBack(volume, entry); }},
    {"setMicGainCalibration()", [](std::size_t entry) { return callsBack(volume, entry); }},
    {"getMicCalibrationGain(address, address)", [](std::size_t entry) { return callsBack(volume, entry, &number, &number); }},
};

const Entry sourceTable[] = {
    {"setOutputSource(main, S+GPS)", [](std::size_t entry) { return callsBack(source, entry, track, name); }},
    {"getActiveSource(main)", [](std::size_t entry) { return qstrcmp(callEntry<const char *>(source, entry, track), "4711") == 0; }},
    {"setInputDestination(main, S+GPS)", [](std::size_t entry) { return callsBack(source, entry, track, name); }},
    {"setInputSelectPin(1, 5)", [](std::size_t entry) { return callsBack(source, entry, 1, 5); }},
    {"getInputSelectPin(1, address)", [](std::size_t entry) { return callsBack(source, entry, 1, &byte); }},
    {"setMicLeftRightSwitch(1)", [](std::size_t entry) { return callsBack(source, entry, true); }},
    {"setOutputChannelMask(15)", [](std::size_t entry) { return callsBack(source, entry, 15); }},
    {"queryAlterNumber(main)", [](std::size_t entry) { return callsBack(source, entry, track); }},
    {"setHandsfreeDelay(-7)", [](std::size_t entry) { return callsBack(source, entry, -7); }},
};

const Entry mixerTable[] = {
    {"setFrontRearMode(1)", [](std::size_t entry) { return callsBack(mixer, entry, 1); }},
};

const Entry appTable[] = {
    {"setFilter(address)", [](std::size_t entry) { return callsBack(app, entry, &filter); }},
    {"setLoudness(address)", [](std::size_t entry) { return callsBack(app, entry, &loudness); }},
    {"setEqParameter(address)", [](std::size_t entry) { return callsBack(app, entry, &shortCurve); }}, // a reference travels as an address
    {"getMicrophoneTest(address, 8)", [](std::size_t entry) { return callsBack(app, entry, &shortNumbers[0], 8); }},
    {"enableDps()", [](std::size_t entry) { return callsBack(app, entry); }},
    {"disableDps()", [](std::size_t entry) { return callsBack(app, entry); }},
    {"enableStereo()", [](std::size_t entry) { return callsBack(app, entry); }},
    {"disableStereo()", [](std::size_t entry) { return callsBack(app, entry); }},
    {"setDpsUserGain(-1.5)", [](std::size_t entry) { return callsBack(app, entry, -1.5F); }},
    {"setSpeakerDelay(32, 1.5)", [](std::size_t entry) { return callsBack(app, entry, 32, 1.5F); }},
    {"setAecQuality(2)", [](std::size_t entry) { return callsBack(app, entry, static_cast<audio_aec_quality_e>(2)); }},
    {"setExtEqParameter(address)", [](std::size_t entry) { return callsBack(app, entry, &longCurve); }},
    {"startDownlinkDelayEstimation()", [](std::size_t entry) { return callsBack(app, entry); }},
    {"getDownlinkDelayEstimation(address)", [](std::size_t entry) { return callsBack(app, entry, &shortNumber); }},
};

} // namespace

Q_DECLARE_METATYPE(Entry)

/// The border to the platform: its tables of operations and its records, byte by byte.
class PlatformInterfaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void volumeEntries_data();
    void volumeEntries();
    void sourceEntries_data();
    void sourceEntries();
    void mixerEntries_data();
    void mixerEntries();
    void appEntries_data();
    void appEntries();
    void objectsAreATableAndNothingElse();

    void recordSizes_data();
    void recordSizes();
    void recordFields_data();
    void recordFields();
    void enumerationsAreInts();

private:
    template<std::size_t Size>
    static void addEntries(const Entry (&table)[Size]);
    static void checkEntry();
};

template<std::size_t Size>
void PlatformInterfaceTest::addEntries(const Entry (&table)[Size])
{
    QTest::addColumn<int>("position");
    QTest::addColumn<Entry>("entry");
    for (std::size_t position = 0; position < Size; ++position)
        QTest::newRow(table[position].recorded) << static_cast<int>(position) << table[position];
}

void PlatformInterfaceTest::checkEntry()
{
    QFETCH(int, position);
    QFETCH(Entry, entry);
    called().clear();
    const bool resultComesBack = entry.calls(static_cast<std::size_t>(position));
    QCOMPARE(called(), QString::fromLatin1(entry.recorded));
    QVERIFY(resultComesBack);
}

void PlatformInterfaceTest::volumeEntries_data()
{
    addEntries(volumeTable);
}
void PlatformInterfaceTest::volumeEntries()
{
    checkEntry();
}
void PlatformInterfaceTest::sourceEntries_data()
{
    addEntries(sourceTable);
}
void PlatformInterfaceTest::sourceEntries()
{
    checkEntry();
}
void PlatformInterfaceTest::mixerEntries_data()
{
    addEntries(mixerTable);
}
void PlatformInterfaceTest::mixerEntries()
{
    checkEntry();
}
void PlatformInterfaceTest::appEntries_data()
{
    addEntries(appTable);
}
void PlatformInterfaceTest::appEntries()
{
    checkEntry();
}

void PlatformInterfaceTest::objectsAreATableAndNothingElse()
{
    QCOMPARE(sizeof(SP::Volume), sizeof(void *));
    QCOMPARE(sizeof(SP::Source), sizeof(void *));
    QCOMPARE(sizeof(SP::Mixer), sizeof(void *));
    QCOMPARE(sizeof(SP::App), sizeof(void *));
    // Released with destroy() only.
    QVERIFY(!std::has_virtual_destructor_v<SP::Volume> && !std::is_destructible_v<SP::Volume>);
    QVERIFY(!std::has_virtual_destructor_v<SP::Source> && !std::is_destructible_v<SP::Source>);
    QVERIFY(!std::has_virtual_destructor_v<SP::Mixer> && !std::is_destructible_v<SP::Mixer>);
    QVERIFY(!std::has_virtual_destructor_v<SP::App> && !std::is_destructible_v<SP::App>);
}

void PlatformInterfaceTest::recordSizes_data()
{
    QTest::addColumn<std::size_t>("size");
    QTest::addColumn<std::size_t>("expected");
    QTest::newRow("audio_eq_parameter_t") << sizeof(audio_eq_parameter_t) << std::size_t(68);
    QTest::newRow("audio_ext_eq_band_t") << sizeof(audio_ext_eq_band_t) << std::size_t(28);
    QTest::newRow("audio_ext_eq_parameter_t") << sizeof(audio_ext_eq_parameter_t) << std::size_t(564);
    QTest::newRow("audio_loudness_t") << sizeof(audio_loudness_t) << std::size_t(6);
    QTest::newRow("audio_channel_gain_t") << sizeof(audio_channel_gain_t) << std::size_t(8);
    QTest::newRow("audio_filter_t") << sizeof(audio_filter_t) << std::size_t(16);
}

void PlatformInterfaceTest::recordSizes()
{
    QFETCH(std::size_t, size);
    QFETCH(std::size_t, expected);
    QCOMPARE(size, expected);
}

namespace
{

/// A zeroed record with one field set, as bytes.
template<typename Record, typename Set>
QByteArray bytesWith(const Set &set)
{
    Record record = {};
    set(record);
    return {reinterpret_cast<const char *>(&record), sizeof record};
}

/// Zeroes but for these bytes at this offset.
QByteArray expectedBytes(int size, int offset, const char *hex)
{
    const QByteArray field = QByteArray::fromHex(hex);
    return QByteArray(offset, '\0') + field + QByteArray(size - offset - field.size(), '\0');
}

} // namespace

void PlatformInterfaceTest::recordFields_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");

    const auto shortRow = [](const char *row, int offset, const char *hex, void (*set)(audio_eq_parameter_t &)) {
        QTest::newRow(row) << bytesWith<audio_eq_parameter_t>(set) << expectedBytes(68, offset, hex);
    };
    shortRow("short equalizer: channel", 0, "ffff0000", [](auto &record) { record.channel = 0xFFFF; });
    shortRow("short equalizer: first frequency", 4, "983a", [](auto &record) { record.frequency[0] = 15000; });
    shortRow("short equalizer: last frequency", 18, "983a", [](auto &record) { record.frequency[7] = 15000; });
    shortRow("short equalizer: first gain", 20, "000040c1", [](auto &record) { record.gain[0] = -12.0F; });
    shortRow("short equalizer: last gain", 48, "000040c1", [](auto &record) { record.gain[7] = -12.0F; });
    shortRow("short equalizer: first type", 52, "0300", [](auto &record) { record.type[0] = 3; });
    shortRow("short equalizer: last type", 66, "0300", [](auto &record) { record.type[7] = 3; });

    const auto longRow = [](const char *row, int offset, const char *hex, void (*set)(audio_ext_eq_parameter_t &)) {
        QTest::newRow(row) << bytesWith<audio_ext_eq_parameter_t>(set) << expectedBytes(564, offset, hex);
    };
    longRow("extended equalizer: channel", 0, "ffff0000", [](auto &record) { record.channel = 0xFFFF; });
    longRow("extended equalizer: type of band 0", 4, "03000000", [](auto &record) { record.band[0].type = 3; });
    longRow("extended equalizer: frequency of band 0", 8, "204e", [](auto &record) { record.band[0].frequency = 20000; });
    longRow("extended equalizer: first reserve of band 0", 10, "0201", [](auto &record) { record.band[0].reserved0 = 0x0102; });
    longRow("extended equalizer: gain of band 0", 12, "00004041", [](auto &record) { record.band[0].gain = 12.0F; });
    longRow("extended equalizer: q of band 0", 16, "0000c03f", [](auto &record) { record.band[0].q = 1.5F; });
    longRow("extended equalizer: second reserve of band 0", 20, "04030201", [](auto &record) { record.band[0].reserved1[0] = 0x01020304; });
    longRow("extended equalizer: end of band 0", 28, "04030201", [](auto &record) { record.band[0].reserved1[2] = 0x01020304; });
    longRow("extended equalizer: type of band 1", 32, "03000000", [](auto &record) { record.band[1].type = 3; });
    longRow("extended equalizer: type of band 15", 424, "03000000", [](auto &record) { record.band[15].type = 3; });
    longRow("extended equalizer: end of band 19", 560, "04030201", [](auto &record) { record.band[19].reserved1[2] = 0x01020304; });

    const auto loudnessRow = [](const char *row, int offset, const char *hex, void (*set)(audio_loudness_t &)) {
        QTest::newRow(row) << bytesWith<audio_loudness_t>(set) << expectedBytes(6, offset, hex);
    };
    loudnessRow("loudness: on", 0, "0100", [](auto &record) { record.on = 1; });
    loudnessRow("loudness: on again", 2, "0100", [](auto &record) { record.onAgain = 1; });
    loudnessRow("loudness: level", 4, "2003", [](auto &record) { record.level = 800; });

    const auto gainRow = [](const char *row, int offset, const char *hex, void (*set)(audio_channel_gain_t &)) {
        QTest::newRow(row) << bytesWith<audio_channel_gain_t>(set) << expectedBytes(8, offset, hex);
    };
    gainRow("channel gain: channel", 0, "08000000", [](auto &record) { record.channel = 8; });
    gainRow("channel gain: gain", 4, "64", [](auto &record) { record.gain = 100; });
    gainRow("channel gain: reserve", 5, "010203", [](auto &record) {
        record.reserved[0] = 1;
        record.reserved[1] = 2;
        record.reserved[2] = 3;
    });

    const auto filterRow = [](const char *row, int offset, const char *hex, void (*set)(audio_filter_t &)) {
        QTest::newRow(row) << bytesWith<audio_filter_t>(set) << expectedBytes(16, offset, hex);
    };
    filterRow("filter: channel", 0, "ffff0000", [](auto &record) { record.channel = 0xFFFF; });
    filterRow("filter: first value", 4, "0201", [](auto &record) { record.value1 = 0x0102; });
    filterRow("filter: inverted flag", 6, "0100", [](auto &record) { record.notFlag = 1; });
    filterRow("filter: second value", 8, "0201", [](auto &record) { record.value2 = 0x0102; });
    filterRow("filter: kind", 10, "0100", [](auto &record) { record.kind = 1; });
    filterRow("filter: third value", 12, "0201", [](auto &record) { record.value3 = 0x0102; });
    filterRow("filter: fourth value", 14, "0201", [](auto &record) { record.value4 = 0x0102; });
}

void PlatformInterfaceTest::recordFields()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);
    QCOMPARE(bytes.toHex(), expected.toHex());
}

void PlatformInterfaceTest::enumerationsAreInts()
{
    QVERIFY((std::is_same_v<std::underlying_type_t<audio_aec_quality_e>, int>));
    QVERIFY((std::is_same_v<std::underlying_type_t<audio::audio_input_select_pin_e>, int>));
}

QTEST_APPLESS_MAIN(PlatformInterfaceTest)
#include "tst_platforminterface.moc"
