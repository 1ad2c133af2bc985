#ifndef POLICYNAMES_H
#define POLICYNAMES_H

#include <qzaudio/audiotypes.h>

#include <cstddef>

/**
 * The policy's numbers in words, for whatever shows them to people: docs/policy.md, the enumerators of AudioPolicy, the bench.
 *
 * A name is the public header's enumerator without its prefix; of the statuses, "BtPhone" is shortened to "Bt". Numbers that have no
 * enumerator there are named after what the tables do with them, and say so. A meaning can follow "the status is now X: ".
 */
namespace policynames
{

struct Number
{
    int number;
    const char *name; ///< AudioPolicy has it with the prefix Status or Channel; volume types have none
    const char *meaning;
};

constexpr Number statuses[] = {
    {AudioStatusNone, "None", "nothing but the source of the channel"},
    {AudioStatusBtPhoneRing, "BtRing", "an incoming call over Bluetooth"},
    {AudioStatusBtPhoneTelephony, "BtTelephony", "a telephone call over Bluetooth"},
    {3, "BtTelephony3", "as BtTelephony, under a number of its own"},
    {4, "BtAtMediaVolume", "the source of BtTelephony at the media volume"},
    {AudioStatusCarPlayAlert, "CarPlayAlert", "a CarPlay ringtone or alert"},
    {AudioStatusCarPlayTelephony, "CarPlayTelephony", "a telephone call over CarPlay"},
    {7, "None7", "as None, under a number of its own"},
    {AudioStatusCarPlaySpeech, "CarPlaySpeech", "CarPlay speech"},
    {9, "CarPlaySpeechAtMediaVolume", "the source of CarPlaySpeech at the media volume"},
    {AudioStatusCarPlayDuck, "CarPlayDuck", "a CarPlay prompt plays over the main audio, or reverse gear is in"},
    {AudioStatusCarPlayRestore, "CarPlayRestore", "the main audio is back after a CarPlay prompt or reverse gear"},
    {AudioStatusAndroidAutoSpeech, "AndroidAutoSpeech", "Android Auto speech"},
    {13, "AndroidAutoAtMediaVolume", "the source of Android Auto at the media volume"},
    {AudioStatusAndroidAutoDuck, "AndroidAutoDuck", "an Android Auto prompt plays over the main audio"},
    {AudioStatusAndroidAutoRestore, "AndroidAutoRestore", "the main audio is back after an Android Auto prompt"},
    {AudioStatusCarLifeSpeech, "CarLifeSpeech", "CarLife speech"},
    {17, "CarLifeAtMediaVolume", "the source of CarLife at the media volume"},
    {AudioStatusCarLifeDuck, "CarLifeDuck", "a CarLife prompt plays over the main audio"},
    {AudioStatusCarLifeRestore, "CarLifeRestore", "the main audio is back after a CarLife prompt"},
};

constexpr Number channels[] = {
    {AudioChannelNone, "None", "no source"},
    {1, "Unassigned1", "a number without a source"},
    {AudioChannelBtAudio, "BtAudio", "Bluetooth audio"},
    {AudioChannelFilePlayer, "FilePlayer", "the file player"},
    {AudioChannelIosMirror, "IosMirror", "iOS mirroring"},
    {AudioChannelCarPlayMedia, "CarPlayMedia", "CarPlay media"},
    {AudioChannelCarPlayAlert, "CarPlayAlert", "CarPlay ringtones and alerts"},
    {AudioChannelCarPlayTelephony, "CarPlayTelephony", "a telephone call over CarPlay"},
    {AudioChannelCarPlaySpeech, "CarPlaySpeech", "CarPlay speech"},
    {AudioChannelCarPlayDefault, "CarPlayDefault", "CarPlay default audio"},
    {AudioChannelAndroidAuto, "AndroidAuto", "Android Auto"},
    {AudioChannelBtRingtone, "BtRingtone", "the Bluetooth ringtone"},
    {AudioChannelBtPhone, "BtPhone", "the Bluetooth telephone"},
    {AudioChannelDiscPlayer, "DiscPlayer", "the disc player"},
    {14, "Unassigned14", "a number without a source"},
    {AudioChannelAuxIn, "AuxIn", "the auxiliary input"},
    {16, "Unassigned16", "a number without a source"},
    {AudioChannelCarLife, "CarLife", "CarLife"},
    {18, "HiCar", "HiCar, without a source here; the volume keys work on its call"},
    {AudioChannelAirPlayMedia, "AirPlayMedia", "AirPlay media"},
};

constexpr Number volumeTypes[] = {
    {ZelAudioTypeMedia, "Media", "media"},
    {ZelAudioTypePrompt, "Prompt", "prompts"},
    {ZelAudioTypeTelephony, "Telephony", "telephony"},
    {ZelAudioTypeRing, "Ring", "ring"},
    {ZelAudioTypeSpeech, "Speech", "speech"},
    {ZelAudioTypeHiCarCall, "HiCarCall", "HiCar call"},
};

/// So that a number is its row's index.
template<std::size_t count>
constexpr bool areNumberedFromZero(const Number (&numbers)[count])
{
    for (std::size_t i = 0; i < count; ++i) {
        if (numbers[i].number != static_cast<int>(i))
            return false;
    }
    return true;
}
static_assert(areNumberedFromZero(statuses), "a status is its row's index");
static_assert(areNumberedFromZero(channels), "a channel is its row's index");
static_assert(areNumberedFromZero(volumeTypes), "a volume type is its row's index");

struct Source
{
    const char *name; ///< the platform's; applications add "_APP" to most
    const char *meaning;
};

/// All that the library plays, records or sets the volume of. AirPlay's source stands twice: applications write it with a lower-case "s".
constexpr Source sources[] = {
    {"S+none", "no source"},
    {"S+FilePlayer", "file player"},
    {"S+DiscPlayer", "disc player"},
    {"BT_AUDIO_Track", "Bluetooth audio"},
    {"S+BtRingtone", "Bluetooth ringtone"},
    {"S+BtPcmPhone", "Bluetooth telephone"},
    {"BT_MIC_Record", "Bluetooth microphone"},
    {"S+AuxIn", "auxiliary input"},
    {"S+Mic", "microphone"},
    {"S+GPS", "GPS"},
    {"S+CarPlayMedia", "CarPlay media"},
    {"S+CarPlayAlert", "CarPlay alert"},
    {"S+CarPlayTelephony", "CarPlay telephone"},
    {"S+CarPlaySpeech", "CarPlay speech"},
    {"S+CarPlayDefault", "CarPlay default audio"},
    {"S+AndroidAuto", "Android Auto"},
    {"S+IPod", "iPod"},
    {"S+CarLife", "CarLife"},
    {"S+IosMirror", "iOS mirroring"},
    {"S+WebLink", "WebLink"},
    {"S+AirPlayMedia", "AirPlay media"},
    {"s+AirPlayMedia", "AirPlay media"},
    {"hicar_voice_callmodemspeaker10", "HiCar call"},
};

struct Timer
{
    const char *name; ///< the manager's member
    const char *purpose;
};

/// In the order of their declaration.
constexpr Timer timers[] = {
    {"muteTimer", "unmute after the timed mute"},
    {"delayVolumeTimer", "write pending volumes again"},
    {"customEqTimer", "take a repeated equalizer gain again"},
    {"firstEqTimer", "set the equalizer again after the first channel"},
    {"cpAlertTimer", "apply the prompts' volume while ducked"},
    {"cpUnduckTimer", "restore after the projection's prompt or reverse gear"},
};

} // namespace policynames

#endif
