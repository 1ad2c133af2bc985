#ifndef AUDIODATABASETABLES_H
#define AUDIODATABASETABLES_H

#include <qzaudio/audiotypes.h>

/// The settings store's fixed tables.
namespace audio
{
namespace tables
{

constexpr int volumeTypeCount = 6;
constexpr int equalizerPresetCount = 8;
constexpr int equalizerBandCount = 16;
constexpr int defaultEqualizerType = 6;
constexpr int defaultMicrophoneVolume = 12;

/// The home screen with volume defaults of its own.
constexpr int largeHomeUiType = 7;
constexpr int largeHomeUiVolume = 25;
/// The other home screens' defaults, by volume type.
constexpr int defaultVolumes[volumeTypeCount] = {20, 20, 20, 20, 20, 15};

struct StoredKey
{
    const char *group;
    const char *key;
};

/// Everything that the store keeps.
constexpr StoredKey storedKeys[] = {
    {"Volume", "0"},
    {"Volume", "1"},
    {"Volume", "2"},
    {"Volume", "3"},
    {"Volume", "4"},
    {"Volume", "5"},
    {"Volume", "VolumeMic"},
    {"Volume", "Loudness"},
    {"Volume", "MicType"},
    {"Volume", "AutoMicGainOrig"},
    {"Volume", "AutoMicGainArm"},
    {"Volume", "MicDelayOrig"},
    {"Volume", "MicDelayArm"},
    {"EQ", "Type"},
    {"EQ", "Custom0"},
    {"EQ", "Custom1"},
    {"EQ", "Custom2"},
    {"EQ", "Custom3"},
    {"EQ", "Custom4"},
    {"EQ", "Custom5"},
    {"EQ", "Custom6"},
    {"EQ", "Custom7"},
    {"EQ", "Custom8"},
    {"EQ", "Custom9"},
    {"EQ", "Custom10"},
    {"EQ", "Custom11"},
    {"EQ", "Custom12"},
    {"EQ", "Custom13"},
    {"EQ", "Custom14"},
    {"EQ", "Custom15"},
};

// clang-format off
/// Type, tag, gains in dB. Type 7, the custom curve, takes its gains from the stored curve instead of its row. Not the facade's
/// modes: the two differ in places and stay two.
constexpr EqBaseData equalizerPresets[equalizerPresetCount] = {
    {0, 104, { 4.8F,  4.3F,  3.8F, 3.4F, 3.0F, 2.7F, 2.5F, 0.5F, -4.0F, -3.0F, 0.0F, 1.1F, 2.2F,  2.7F,  3.2F,  3.8F}},
    {1, 241, { 5.0F,  5.5F,  4.0F, 3.5F, 3.0F, 2.0F, 1.5F, 0.5F,  0.0F,  0.5F, 2.0F, 3.0F, 5.0F,  4.0F,  6.0F,  5.0F}},
    {2, 254, { 5.0F,  4.5F,  3.0F, 1.0F, 2.0F, 4.0F, 5.0F, 0.0F, -2.0F, -2.0F, 3.0F, 4.0F, 5.0F,  5.5F,  5.5F,  2.0F}},
    {3, 245, { 6.0F,  5.0F,  4.0F, 0.0F, 0.0F, 0.0F, 3.0F, 4.0F,  4.0F,  2.0F, 0.0F, 0.0F, 5.0F,  5.0F,  5.0F,  5.0F}},
    {4, 240, {-3.0F, -2.0F,  0.0F, 3.0F, 4.0F, 5.0F, 5.5F, 5.5F,  5.5F,  4.0F, 3.0F, 3.0F, 0.0F, -3.0F,  5.0F,  4.0F}},
    {5, 101, {-4.0F, -5.0F, -5.0F, 3.0F, 4.0F, 6.0F, 6.0F, 5.0F,  5.0F,  5.5F, 2.0F, 1.0F, 0.0F,  0.0F, -4.0F, -5.0F}},
    {6, 127, { 2.0F,  2.0F,  2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F,  2.0F,  2.0F, 2.0F, 2.0F, 2.0F,  2.0F,  2.0F,  2.0F}},
    {7, 201, { 0.0F,  0.0F,  0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F,  0.0F,  0.0F, 0.0F, 0.0F, 0.0F,  0.0F,  0.0F,  0.0F}},
};
// clang-format on

constexpr const char *noSource = "S+none_APP";

struct StatusRow
{
    int status;
    int type;
    int param;
    const char *spName;
};

constexpr StatusRow statusRows[] = {
    {0, 0, 0, "S+none_APP"},
    {1, 3, 0, "S+BtPcmPhone"},
    {2, 2, 0, "S+BtPcmPhone"},
    {3, 2, 0, "S+BtPcmPhone"},
    {4, 0, 0, "S+BtPcmPhone"},
    {5, 3, 0, "S+CarPlayAlert_APP"},
    {6, 2, 0, "S+CarPlayTelephony_APP"},
    {7, 0, 0, "S+none_APP"},
    {8, 4, 0, "S+CarPlaySpeech_APP"},
    {9, 0, 0, "S+CarPlaySpeech_APP"},
    {10, 1, 0, "S+none_APP"},
    {11, 0, 0, "S+none_APP"},
    {12, 4, 0, "S+AndroidAuto_APP"},
    {13, 0, 0, "S+AndroidAuto_APP"},
    {14, 1, 0, "S+AndroidAuto_APP"},
    {15, 0, 0, "S+AndroidAuto_APP"},
    {16, 4, 0, "S+CarLife_APP"},
    {17, 0, 0, "S+CarLife_APP"},
    {18, 1, 0, "S+CarLife_APP"},
    {19, 0, 0, "S+CarLife_APP"},
};

struct ChannelRow
{
    int channel;
    int type;
    const char *spName;
};

// In the order of insertion. Meant so: channel 0 stands twice and its second row wins; channels 1, 14, 16 and 18 have no row;
// the AirPlay name begins with a lower-case "s".
constexpr ChannelRow channelRows[] = {
    {0, 0, "S+none_APP"},
    {2, 0, "BT_AUDIO_Track"},
    {3, 0, "S+FilePlayer_APP"},
    {4, 0, "S+IosMirror_APP"},
    {5, 0, "S+CarPlayMedia_APP"},
    {0, 1, "S+none_APP"},
    {7, 2, "S+CarPlayTelephony_APP"},
    {6, 3, "S+CarPlayAlert_APP"},
    {8, 4, "S+CarPlaySpeech_APP"},
    {9, 0, "S+CarPlayDefault_APP"},
    {10, 0, "S+AndroidAuto_APP"},
    {11, 3, "S+BtRingtone_APP"},
    {12, 2, "S+BtPcmPhone"},
    {15, 0, "S+AuxIn_APP"},
    {13, 0, "S+DiscPlayer_APP"},
    {17, 0, "S+CarLife_APP"},
    {19, 0, "s+AirPlayMedia_APP"},
};

struct StreamRow
{
    const char *name;
    int type;
};

/// Which volume type each stream starts with.
constexpr StreamRow streamRows[] = {
    {"S+FilePlayer_APP", 0},
    {"S+DiscPlayer_APP", 0},
    {"BT_AUDIO_Track", 0},
    {"S+BtRingtone_APP", 3},
    {"S+BtPcmPhone", 2},
    {"S+AuxIn_APP", 0},
    {"S+Mic_APP", 0},
    {"S+CarPlayMedia_APP", 0},
    {"S+CarPlayAlert_APP", 3},
    {"S+CarPlayTelephony_APP", 2},
    {"S+CarPlaySpeech_APP", 4},
    {"S+CarPlayDefault_APP", 0},
    {"S+AndroidAuto_APP", 0},
    {"S+IPod_APP", 0},
    {"S+CarLife_APP", 0},
    {"S+WebLink_APP", 0},
    {"s+AirPlayMedia_APP", 0},
    {"S+IosMirror_APP", 0},
};

} // namespace tables
} // namespace audio

#endif
