#ifndef QZAUDIO_AUDIOTYPES_H
#define QZAUDIO_AUDIOTYPES_H

#include <QtCore/QString>
#include <QtCore/qglobal.h>

#include <cstddef>

/*
 * The vocabulary of the head unit's audio situations. All of these are addressed by value: any int may be passed through
 * static_cast, and a value outside the range reads as the documented default. Values that the tables give no meaning of their own
 * have no enumerator. docs/policy.md lists each number with its volume type, its source and what the volume keys work on.
 */

/**
 * What is sounding now, 0 to 19.
 *
 * Numbers without an enumerator: 3 is governed as 2 is. 4 and 9 apply the media volume to the source of 1 and of 8. 7 is like 0. 13 and
 * 17 apply the media volume to the projection's source, as 15 and 19 do.
 */
enum AudioStatus : int {
    AudioStatusNone = 0,
    AudioStatusBtPhoneRing = 1,
    AudioStatusBtPhoneTelephony = 2,
    AudioStatusCarPlayAlert = 5,
    AudioStatusCarPlayTelephony = 6,
    AudioStatusCarPlaySpeech = 8,
    AudioStatusCarPlayDuck = 10, ///< a CarPlay prompt plays over the main audio
    AudioStatusCarPlayRestore = 11,
    AudioStatusAndroidAutoSpeech = 12,
    AudioStatusAndroidAutoDuck = 14,
    AudioStatusAndroidAutoRestore = 15,
    AudioStatusCarLifeSpeech = 16,
    AudioStatusCarLifeDuck = 18,
    AudioStatusCarLifeRestore = 19,
};

/// A source of sound, 0 to 19. Numbers without an enumerator have no source name, and volume type 0.
enum AudioChannel : int {
    AudioChannelNone = 0,
    AudioChannelBtAudio = 2,
    AudioChannelFilePlayer = 3,
    AudioChannelIosMirror = 4,
    AudioChannelCarPlayMedia = 5,
    AudioChannelCarPlayAlert = 6,
    AudioChannelCarPlayTelephony = 7,
    AudioChannelCarPlaySpeech = 8,
    AudioChannelCarPlayDefault = 9,
    AudioChannelAndroidAuto = 10,
    AudioChannelBtRingtone = 11,
    AudioChannelBtPhone = 12,
    AudioChannelDiscPlayer = 13,
    AudioChannelAuxIn = 15,
    AudioChannelCarLife = 17,
    AudioChannelAirPlayMedia = 19,
};

/// Which of the six stored volumes governs a status or channel.
enum ZelAudioType : int {
    ZelAudioTypeMedia = 0,
    ZelAudioTypePrompt = 1, ///< the alternative track, while the main audio is ducked
    ZelAudioTypeTelephony = 2,
    ZelAudioTypeRing = 3, ///< ringtones and alerts
    ZelAudioTypeSpeech = 4,
    ZelAudioTypeHiCarCall = 5, ///< the alternative track, with the HiCar call
};

/// What a status means.
struct ZelAudioInfo
{
    ZelAudioType type; ///< the volume type that governs it
    qint32 param; ///< the stream tag of its volume calls; 0 for every status
};

/// What a channel is.
struct ZelAudioAChannelInfo
{
    ZelAudioType type; ///< its volume type
    QString spName; ///< the source name that the facade is given for it
};

/// Equalizer preset of the settings store. Callers walk an array of them, so its size is part of the binary interface.
struct EqBaseData
{
    qint32 type; ///< equalizer type, 0 to 7
    qint32 tag; ///< fixed number attached to the preset; nothing in this library reads it
    float gains[16]; ///< dB, band 0 first
};
static_assert(sizeof(EqBaseData) == 72, "callers walk an array of these");
static_assert(offsetof(EqBaseData, type) == 0, "callers walk an array of these");
static_assert(offsetof(EqBaseData, tag) == 4, "callers walk an array of these");
static_assert(offsetof(EqBaseData, gains) == 8, "callers walk an array of these");

#endif
