#ifndef AUDIODATABASETABLES_H
#define AUDIODATABASETABLES_H

#include "fixedname.h"

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
    FixedName<7> group;
    FixedName<16> key;
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

} // namespace tables
} // namespace audio

#endif
