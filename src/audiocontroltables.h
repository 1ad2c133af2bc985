#ifndef AUDIOCONTROLTABLES_H
#define AUDIOCONTROLTABLES_H

#include "fixedname.h"

#include <qzaudio/audiocontrol.h>

#include <cstddef>
#include <iterator>

/// The facade's fixed tables.
namespace audio
{
namespace tables
{

constexpr int highestTrackVolume = 148;
constexpr int highestMasterVolume = 100;
constexpr double boostFactor = 1.5;

struct SourceName
{
    FixedName<24> qtName;
    FixedName<20> spName;
};

// Meant so: the AirPlay row stands twice, its key has a lower-case "s", and "S+BtPcmPhone" is a key although it is already a
// platform name.
constexpr SourceName sourceNames[] = {
    {"S+FilePlayer_APP", "S+FilePlayer"},
    {"S+DiscPlayer_APP", "S+DiscPlayer"},
    {"BT_AUDIO_Track", "BT_AUDIO_Track"},
    {"S+BtRingtone_APP", "S+BtRingtone"},
    {"S+BtPcmPhone", "S+BtPcmPhone"},
    {"S+BtPcmPhone_APP", "S+BtPcmPhone"},
    {"BT_MIC_Record", "BT_MIC_Record"},
    {"S+AuxIn_APP", "S+AuxIn"},
    {"S+Mic_APP", "S+Mic"},
    {"S+GPS_APP", "S+GPS"},
    {"S+CarPlayMedia_APP", "S+CarPlayMedia"},
    {"S+CarPlayAlert_APP", "S+CarPlayAlert"},
    {"S+CarPlayTelephony_APP", "S+CarPlayTelephony"},
    {"S+CarPlaySpeech_APP", "S+CarPlaySpeech"},
    {"S+CarPlayDefault_APP", "S+CarPlayDefault"},
    {"S+AndroidAuto_APP", "S+AndroidAuto"},
    {"S+IPod_APP", "S+IPod"},
    {"S+CarLife_APP", "S+CarLife"},
    {"S+IosMirror_APP", "S+IosMirror"},
    {"S+WebLink_APP", "S+WebLink"},
    {"s+AirPlayMedia_APP", "S+AirPlayMedia"},
    {"s+AirPlayMedia_APP", "S+AirPlayMedia"},
    {"S+none_APP", "S+none"},
};

struct TrackName
{
    AudioControl::AudioTag tag;
    FixedName<12> track;
};

constexpr TrackName trackNames[] = {
    {AudioControl::Main, "main"},
    {AudioControl::Second, "second"},
    {AudioControl::Alternative, "alternative"},
    {AudioControl::Uplink, "uplink"},
    {AudioControl::Input0, "input0"},
    {AudioControl::Input1, "input1"},
    {AudioControl::Input2, "input2"},
    {AudioControl::MainIm, "main_im"},
};

/// The one volume group: its platform source name, and its members in the order that they are set in.
constexpr const char *groupName = "S+FilePlayer";
constexpr FixedName<20> groupMembers[] = {"S+AndroidAuto", "S+FilePlayer"};

/// Platform source names whose volume is boosted. "S+BtPhone" is no value of the table above; meant so.
constexpr FixedName<20> boostedSources[] = {
    "S+CarPlayTelephony",
    "S+BtPhone",
    "S+CarPlayAlert",
    "S+BtRingtone",
    "S+AuxIn",
    "S+CarPlaySpeech",
    "S+BtPcmPhone",
};

constexpr bool isBoosted(std::string_view spName)
{
    for (const FixedName<20> &boosted : boostedSources) { // NOLINT(readability-use-anyofallof): that is not constexpr in C++17
        if (boosted.view() == spName)
            return true;
    }
    return false;
}

/// Null where there is no such Qt-side name.
constexpr const SourceName *sourceOf(std::string_view qtName)
{
    for (const SourceName &row : sourceNames) {
        if (row.qtName.view() == qtName)
            return &row;
    }
    return nullptr;
}

/// By row of sourceNames.
struct BoostedRows
{
    bool isBoosted[std::size(sourceNames)];
};

constexpr BoostedRows findBoostedRows()
{
    BoostedRows rows = {};
    for (std::size_t i = 0; i < std::size(sourceNames); ++i)
        rows.isBoosted[i] = isBoosted(sourceNames[i].spName.view());
    return rows;
}
constexpr BoostedRows boostedRows = findBoostedRows();

constexpr bool isBoosted(const SourceName *row)
{
    return boostedRows.isBoosted[row - &sourceNames[0]];
}

constexpr bool areNumberedFromZero()
{
    for (std::size_t i = 0; i < std::size(trackNames); ++i) {
        if (trackNames[i].tag != static_cast<int>(i))
            return false;
    }
    return true;
}
static_assert(areNumberedFromZero(), "a tag is its row's index");

/// Null for a tag that there is not.
constexpr const TrackName *trackOf(AudioControl::AudioTag tag)
{
    return static_cast<std::size_t>(tag) < std::size(trackNames) ? &trackNames[tag] : nullptr;
}

constexpr quint32 allOutputs = 0xFFFF;
constexpr quint16 usedBandType = 3;
constexpr float highestGain = 12.0F;
constexpr quint16 loudnessLevel = 800;

constexpr int shortBandCount = 8;
constexpr int sentBandCount = 16; ///< of the extended record's twenty
constexpr int freeBandCount = 10; ///< of the ten-band form; the other sent bands are parked

struct ShortBand
{
    quint16 indexCode; ///< of the system preset
    quint16 hertz; ///< of the value preset
};

// The eighth band is out of order on purpose: the gains of the presets are laid out against it.
constexpr ShortBand shortBands[shortBandCount] = {
    {10, 50},
    {18, 200},
    {26, 400},
    {35, 1000},
    {44, 3000},
    {52, 7000},
    {58, 15000},
    {33, 800},
};

struct ExtendedBand
{
    quint16 hertz;
    float q;
};

constexpr ExtendedBand sixteenBands[sentBandCount] = {
    {50, 1.0F},
    {80, 1.0F},
    {125, 1.0F},
    {200, 1.5F},
    {315, 1.5F},
    {500, 1.5F},
    {630, 1.5F},
    {800, 2.0F},
    {1000, 2.0F},
    {2000, 2.0F},
    {3100, 2.0F},
    {4000, 2.0F},
    {5000, 2.0F},
    {6300, 1.0F},
    {16000, 1.0F},
    {20000, 1.0F},
};

/// Bands 10 to 15 are parked: the platform always receives sixteen.
constexpr ExtendedBand tenBands[sentBandCount] = {
    {30, 1.0F},
    {60, 1.0F},
    {125, 1.0F},
    {250, 1.5F},
    {500, 1.5F},
    {1000, 2.0F},
    {2000, 2.0F},
    {4000, 2.0F},
    {8000, 1.0F},
    {16000, 1.0F},
    {20000, 1.0F},
    {20000, 1.0F},
    {20000, 1.0F},
    {20000, 1.0F},
    {20000, 1.0F},
    {20000, 1.0F},
};

// clang-format off
/// Gains in dB of EqMode 0 to 6, bands 0 to 15. Not the settings store's presets: the two differ in places and stay two.
constexpr float equalizerModes[7][sentBandCount] = {
    { 4.8F,  4.3F,  3.8F, 3.4F, 3.0F, 2.7F, 2.5F, 0.5F, -4.0F, -3.0F, 0.0F, 1.1F, 2.2F,  2.7F,  3.2F,  3.8F},
    { 7.0F,  5.5F,  4.0F, 3.5F, 3.0F, 2.0F, 1.5F, 0.5F, -5.0F,  0.5F, 2.0F, 3.0F, 5.0F,  4.0F,  6.0F,  5.0F},
    { 5.0F,  4.5F,  3.0F, 1.0F, 2.0F, 4.0F, 5.0F, 0.0F, -2.0F, -2.0F, 3.0F, 4.0F, 5.0F,  5.5F,  5.5F,  2.0F},
    { 6.0F,  5.0F,  4.0F, 0.0F, 0.0F, 0.0F, 3.0F, 4.0F,  4.0F,  2.0F, 0.0F, 0.0F, 5.0F,  5.0F,  5.0F,  5.0F},
    {-3.0F, -2.0F,  0.0F, 3.0F, 4.0F, 5.0F, 5.5F, 5.5F,  5.5F,  4.0F, 3.0F, 3.0F, 0.0F, -3.0F,  5.0F,  4.0F},
    {-4.0F, -5.0F, -5.0F, 3.0F, 4.0F, 6.0F, 6.0F, 5.0F,  5.0F,  5.5F, 2.0F, 1.0F, 0.0F,  0.0F, -4.0F, -5.0F},
    { 0.0F,  0.0F,  0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F,  0.0F,  0.0F, 0.0F, 0.0F, 0.0F,  0.0F,  0.0F,  0.0F},
};

/// Gains in dB of SubMode 0 and 1.
constexpr int subwooferModes[2][9] = {
    {0, 0, 7, -3, 3, 6, -2, 4, 0},
    {0, 0, 0, -3, 3, 0, -2, 0, 0},
};
// clang-format on

struct Loudspeaker
{
    quint32 channel;
    FixedName<12> logName;
    FixedName<24> failure;
};

/// The four loudspeakers of fade and balance, in the order that they are sent in.
constexpr Loudspeaker loudspeakers[] = {
    {1, "LFChannel", "set LFChannel gain err"},
    {2, "RFChannel", "set RFChannel gain err"},
    {4, "LSChannel", "set LSChannel gain err"},
    {8, "RSChannel", "set RSChannel gain err"},
};

constexpr int highestPosition = 15; ///< steps from the centre, fade and balance alike
constexpr int speakerDelayCount = 6;

constexpr unsigned int highestInputPin = 5;
constexpr unsigned int highestEchoCancellingQuality = 2;
constexpr int auxiliaryInputPort = 1;
constexpr int i2sInputPort = 2;
constexpr int i2sInputPin = 5;
constexpr int frontPairMask = 3;
constexpr int allPairsMask = 15;
constexpr int frontOnlyMode = 0;
constexpr int frontAndRearMode = 1;

constexpr int highestMicrophoneVolume = 91;
constexpr int microphoneTestCount = 8;

} // namespace tables
} // namespace audio

#endif
