#ifndef QZAUDIO_AUDIOTYPES_H
#define QZAUDIO_AUDIOTYPES_H

#include <QtCore/QString>
#include <QtCore/qglobal.h>

#include <cstddef>

/**
 * @file
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
    AudioStatusNone = 0, ///< nothing but the source of the channel
    AudioStatusBtPhoneRing = 1, ///< an incoming call over Bluetooth
    AudioStatusBtPhoneTelephony = 2, ///< a telephone call over Bluetooth
    AudioStatusCarPlayAlert = 5, ///< a CarPlay ringtone or alert
    AudioStatusCarPlayTelephony = 6, ///< a telephone call over CarPlay
    AudioStatusCarPlaySpeech = 8, ///< CarPlay speech
    AudioStatusCarPlayDuck = 10, ///< a CarPlay prompt plays over the main audio, or reverse gear is in
    AudioStatusCarPlayRestore = 11, ///< the main audio is back after a CarPlay prompt or reverse gear
    AudioStatusAndroidAutoSpeech = 12, ///< Android Auto speech
    AudioStatusAndroidAutoDuck = 14, ///< an Android Auto prompt plays over the main audio
    AudioStatusAndroidAutoRestore = 15, ///< the main audio is back after an Android Auto prompt
    AudioStatusCarLifeSpeech = 16, ///< CarLife speech
    AudioStatusCarLifeDuck = 18, ///< a CarLife prompt plays over the main audio
    AudioStatusCarLifeRestore = 19, ///< the main audio is back after a CarLife prompt
};

/// A source of sound, 0 to 19. Numbers without an enumerator have no source name, and volume type 0.
enum AudioChannel : int {
    AudioChannelNone = 0, ///< no source
    AudioChannelBtAudio = 2, ///< Bluetooth audio
    AudioChannelFilePlayer = 3, ///< the file player
    AudioChannelIosMirror = 4, ///< iOS mirroring
    AudioChannelCarPlayMedia = 5, ///< CarPlay media
    AudioChannelCarPlayAlert = 6, ///< CarPlay ringtones and alerts
    AudioChannelCarPlayTelephony = 7, ///< a telephone call over CarPlay
    AudioChannelCarPlaySpeech = 8, ///< CarPlay speech
    AudioChannelCarPlayDefault = 9, ///< CarPlay default audio
    AudioChannelAndroidAuto = 10, ///< Android Auto
    AudioChannelBtRingtone = 11, ///< the Bluetooth ringtone
    AudioChannelBtPhone = 12, ///< the Bluetooth telephone
    AudioChannelDiscPlayer = 13, ///< the disc player
    AudioChannelAuxIn = 15, ///< the auxiliary input
    AudioChannelCarLife = 17, ///< CarLife
    AudioChannelAirPlayMedia = 19, ///< AirPlay media
};

/// Which of the six stored volumes governs a status or channel.
enum ZelAudioType : int {
    ZelAudioTypeMedia = 0, ///< music and other media
    ZelAudioTypePrompt = 1, ///< the alternative track, while the main audio is ducked
    ZelAudioTypeTelephony = 2, ///< telephone calls
    ZelAudioTypeRing = 3, ///< ringtones and alerts
    ZelAudioTypeSpeech = 4, ///< CarPlay, Android Auto and CarLife speech
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
