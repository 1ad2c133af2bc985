#ifndef SITUATIONTABLES_H
#define SITUATIONTABLES_H

#include "fixedname.h"

#include <qzaudio/audiocontrol.h>
#include <qzaudio/audiotypes.h>

#include <cstddef>
#include <iterator>
#include <string_view>

/**
 * The head unit's audio situations: all that the library knows of a status and of a channel. A new one is a row here.
 *
 * A number without a meaning of its own has no enumerator and stands as AudioStatus{3}.
 */
namespace situations
{

/// A status with it plays the channel's source, a channel with it plays nothing.
constexpr char noSource[] = "S+none_APP";

/// No type: the volume keys change the media volume on a media channel, and nothing on the others.
constexpr ZelAudioType asTheChannelSays = ZelAudioType{-1};

struct Status
{
    AudioStatus status;
    ZelAudioType type; ///< of the volume that it applies
    audio::FixedName<24> source; ///< that gets it
    audio::AudioControl::AudioTag tag; ///< of the source's stream
    ZelAudioType keyType; ///< of the volume that the volume keys change
};

// clang-format off
/// The number of a status is its row's index.
constexpr Status statuses[] = {
    {AudioStatusNone,               ZelAudioTypeMedia,     noSource,                 audio::AudioControl::Main, asTheChannelSays},
    {AudioStatusBtPhoneRing,        ZelAudioTypeRing,      "S+BtPcmPhone",           audio::AudioControl::Main, ZelAudioTypeRing},
    {AudioStatusBtPhoneTelephony,   ZelAudioTypeTelephony, "S+BtPcmPhone",           audio::AudioControl::Main, ZelAudioTypeTelephony},
    {AudioStatus{3},                ZelAudioTypeTelephony, "S+BtPcmPhone",           audio::AudioControl::Main, ZelAudioTypeTelephony},
    {AudioStatus{4},                ZelAudioTypeMedia,     "S+BtPcmPhone",           audio::AudioControl::Main, asTheChannelSays},
    {AudioStatusCarPlayAlert,       ZelAudioTypeRing,      "S+CarPlayAlert_APP",     audio::AudioControl::Main, ZelAudioTypeRing},
    {AudioStatusCarPlayTelephony,   ZelAudioTypeTelephony, "S+CarPlayTelephony_APP", audio::AudioControl::Main, ZelAudioTypeTelephony},
    {AudioStatus{7},                ZelAudioTypeMedia,     noSource,                 audio::AudioControl::Main, asTheChannelSays},
    {AudioStatusCarPlaySpeech,      ZelAudioTypeSpeech,    "S+CarPlaySpeech_APP",    audio::AudioControl::Main, asTheChannelSays},
    {AudioStatus{9},                ZelAudioTypeMedia,     "S+CarPlaySpeech_APP",    audio::AudioControl::Main, asTheChannelSays},
    {AudioStatusCarPlayDuck,        ZelAudioTypePrompt,    noSource,                 audio::AudioControl::Main, ZelAudioTypePrompt},
    {AudioStatusCarPlayRestore,     ZelAudioTypeMedia,     noSource,                 audio::AudioControl::Main, asTheChannelSays},
    {AudioStatusAndroidAutoSpeech,  ZelAudioTypeSpeech,    "S+AndroidAuto_APP",      audio::AudioControl::Main, asTheChannelSays},
    {AudioStatus{13},               ZelAudioTypeMedia,     "S+AndroidAuto_APP",      audio::AudioControl::Main, asTheChannelSays},
    {AudioStatusAndroidAutoDuck,    ZelAudioTypePrompt,    "S+AndroidAuto_APP",      audio::AudioControl::Main, ZelAudioTypePrompt},
    {AudioStatusAndroidAutoRestore, ZelAudioTypeMedia,     "S+AndroidAuto_APP",      audio::AudioControl::Main, asTheChannelSays},
    {AudioStatusCarLifeSpeech,      ZelAudioTypeSpeech,    "S+CarLife_APP",          audio::AudioControl::Main, asTheChannelSays},
    {AudioStatus{17},               ZelAudioTypeMedia,     "S+CarLife_APP",          audio::AudioControl::Main, asTheChannelSays},
    {AudioStatusCarLifeDuck,        ZelAudioTypePrompt,    "S+CarLife_APP",          audio::AudioControl::Main, ZelAudioTypePrompt},
    {AudioStatusCarLifeRestore,     ZelAudioTypeMedia,     "S+CarLife_APP",          audio::AudioControl::Main, asTheChannelSays},
};

struct Channel
{
    AudioChannel channel;
    ZelAudioType type; ///< of its volume
    audio::FixedName<24> source;
    bool resetsEqualizer; ///< whenever it is reported
};

/// In the order of insertion. Meant so: channel 0 stands twice and its second row wins; channels 1, 14, 16 and 18 have no row, which
/// makes them media channels without a source; the AirPlay name begins with a lower-case "s".
constexpr Channel channels[] = {
    {AudioChannelNone,             ZelAudioTypeMedia,     noSource,                 false},
    {AudioChannelBtAudio,          ZelAudioTypeMedia,     "BT_AUDIO_Track",         false},
    {AudioChannelFilePlayer,       ZelAudioTypeMedia,     "S+FilePlayer_APP",       true},
    {AudioChannelIosMirror,        ZelAudioTypeMedia,     "S+IosMirror_APP",        false},
    {AudioChannelCarPlayMedia,     ZelAudioTypeMedia,     "S+CarPlayMedia_APP",     true},
    {AudioChannelNone,             ZelAudioTypePrompt,    noSource,                 false},
    {AudioChannelCarPlayTelephony, ZelAudioTypeTelephony, "S+CarPlayTelephony_APP", false},
    {AudioChannelCarPlayAlert,     ZelAudioTypeRing,      "S+CarPlayAlert_APP",     false},
    {AudioChannelCarPlaySpeech,    ZelAudioTypeSpeech,    "S+CarPlaySpeech_APP",    false},
    {AudioChannelCarPlayDefault,   ZelAudioTypeMedia,     "S+CarPlayDefault_APP",   false},
    {AudioChannelAndroidAuto,      ZelAudioTypeMedia,     "S+AndroidAuto_APP",      true},
    {AudioChannelBtRingtone,       ZelAudioTypeRing,      "S+BtRingtone_APP",       false},
    {AudioChannelBtPhone,          ZelAudioTypeTelephony, "S+BtPcmPhone",           false},
    {AudioChannelAuxIn,            ZelAudioTypeMedia,     "S+AuxIn_APP",            false},
    {AudioChannelDiscPlayer,       ZelAudioTypeMedia,     "S+DiscPlayer_APP",       false},
    {AudioChannelCarLife,          ZelAudioTypeMedia,     "S+CarLife_APP",          true},
    {AudioChannelAirPlayMedia,     ZelAudioTypeMedia,     "s+AirPlayMedia_APP",     false},
};
// clang-format on

/// On it the volume keys change the HiCar call's volume in every status. It has no row.
constexpr AudioChannel hiCarChannel = AudioChannel{18};

constexpr bool areNumberedFromZero()
{
    for (std::size_t i = 0; i < std::size(statuses); ++i) {
        if (statuses[i].status != static_cast<int>(i))
            return false;
    }
    return true;
}
static_assert(areNumberedFromZero(), "a status is its row's index");

constexpr int highestStatus = static_cast<int>(std::size(statuses)) - 1;

constexpr int highestNumberOfAChannel()
{
    int highest = hiCarChannel;
    for (const Channel &row : channels)
        highest = row.channel > highest ? row.channel : highest;
    return highest;
}
constexpr int highestChannel = highestNumberOfAChannel();

/// Null for a number that is no status.
constexpr const Status *rowOf(AudioStatus status)
{
    return status >= 0 && status <= highestStatus ? &statuses[status] : nullptr;
}

/// By channel number the index of the row that counts, -1 for a channel that has none.
struct RowsOfChannels
{
    signed char row[highestChannel + 1];
};

constexpr RowsOfChannels rowsOfChannels()
{
    RowsOfChannels rows = {};
    for (signed char &row : rows.row)
        row = -1;
    for (std::size_t i = 0; i < std::size(channels); ++i)
        rows.row[channels[i].channel] = static_cast<signed char>(i);
    return rows;
}
constexpr RowsOfChannels channelRows = rowsOfChannels();

/// Null for a channel that has none.
constexpr const Channel *rowOf(AudioChannel channel)
{
    const bool isInTable = channel >= 0 && channel <= highestChannel && channelRows.row[channel] >= 0;
    return isInTable ? &channels[channelRows.row[channel]] : nullptr;
}

constexpr ZelAudioType typeOf(AudioChannel channel)
{
    const Channel *const row = rowOf(channel);
    return row ? row->type : ZelAudioTypeMedia;
}

constexpr const char *sourceOf(AudioChannel channel)
{
    const Channel *const row = rowOf(channel);
    return row ? row->source.text() : noSource;
}

struct Stream
{
    audio::FixedName<24> name;
    ZelAudioType type;
};

/// Which volume each source starts with.
constexpr Stream streams[] = {
    {"S+FilePlayer_APP", ZelAudioTypeMedia},
    {"S+DiscPlayer_APP", ZelAudioTypeMedia},
    {"BT_AUDIO_Track", ZelAudioTypeMedia},
    {"S+BtRingtone_APP", ZelAudioTypeRing},
    {"S+BtPcmPhone", ZelAudioTypeTelephony},
    {"S+AuxIn_APP", ZelAudioTypeMedia},
    {"S+Mic_APP", ZelAudioTypeMedia},
    {"S+CarPlayMedia_APP", ZelAudioTypeMedia},
    {"S+CarPlayAlert_APP", ZelAudioTypeRing},
    {"S+CarPlayTelephony_APP", ZelAudioTypeTelephony},
    {"S+CarPlaySpeech_APP", ZelAudioTypeSpeech},
    {"S+CarPlayDefault_APP", ZelAudioTypeMedia},
    {"S+AndroidAuto_APP", ZelAudioTypeMedia},
    {"S+IPod_APP", ZelAudioTypeMedia},
    {"S+CarLife_APP", ZelAudioTypeMedia},
    {"S+WebLink_APP", ZelAudioTypeMedia},
    {"s+AirPlayMedia_APP", ZelAudioTypeMedia},
    {"S+IosMirror_APP", ZelAudioTypeMedia},
};

/// Whether every source starts with the volume that its channel goes on with.
constexpr bool startAsTheyGoOn()
{
    for (const Channel &channel : channels) {
        bool goesOn = channel.source.view() == noSource;
        for (const Stream &stream : streams)
            goesOn = goesOn || (channel.source.view() == stream.name.view() && channel.type == stream.type);
        if (!goesOn)
            return false;
    }
    return true;
}
static_assert(startAsTheyGoOn(), "a channel's source is a stream of the channel's volume type");

} // namespace situations

#endif
