#ifndef ZELAUDIOMANAGERTABLES_H
#define ZELAUDIOMANAGERTABLES_H

#include <qzaudio/audiotypes.h>

/// The policy manager's fixed numbers and tables.
namespace tables
{

constexpr int highestVolume = 25;
constexpr unsigned int platformVolumeFactor = 4;

constexpr int deferredVolumeMs = 500;
constexpr int customEqualizerRepeatMs = 500;
constexpr int firstEqualizerMs = 2000;
constexpr int carPlayAlertMs = 1000;
constexpr int carPlayUnduckMs = 500;
constexpr int muteUnitMs = 50;

constexpr unsigned int duckingOff = 0;
constexpr unsigned int duckingOn = 1;
constexpr unsigned char duckedGain = 60;
constexpr int projectionDuckLevel = 40; ///< only logged

constexpr int customEqualizerType = 7;
constexpr int storedEqualizerType = 100; ///< stands for the type in the store

/// Type 5 is not pushed at start: the alternative track then carries the prompts' volume.
constexpr ZelAudioType volumeTypesPushedAtStart[] = {
    ZelAudioTypeMedia,
    ZelAudioTypePrompt,
    ZelAudioTypeTelephony,
    ZelAudioTypeRing,
    ZelAudioTypeSpeech,
};

/// Analogue stages of the microphone amplifier in dB, ascending.
constexpr float microphoneStages[] = {0.0F, 9.0F, 12.0F, 21.0F, 27.5F, 30.0F, 40.0F};
constexpr float largestProgrammableGain = 6.0F; ///< dB above a stage

} // namespace tables

#endif
