#include "policyrules.h"

#include "facaderules.h"
#include "policynames.h"

#include <qzaudio/audiotypes.h>

#include <algorithm>
#include <iterator>

namespace
{

struct Status
{
    ZelAudioType type;
    const char *source; // empty for the channel's
};

// The number of a status is its row's index.
constexpr Status statuses[] = {
    {ZelAudioTypeMedia, ""},
    {ZelAudioTypeRing, "S+BtPcmPhone"},
    {ZelAudioTypeTelephony, "S+BtPcmPhone"},
    {ZelAudioTypeTelephony, "S+BtPcmPhone"},
    {ZelAudioTypeMedia, "S+BtPcmPhone"},
    {ZelAudioTypeRing, "S+CarPlayAlert"},
    {ZelAudioTypeTelephony, "S+CarPlayTelephony"},
    {ZelAudioTypeMedia, ""},
    {ZelAudioTypeSpeech, "S+CarPlaySpeech"},
    {ZelAudioTypeMedia, "S+CarPlaySpeech"},
    {ZelAudioTypePrompt, ""},
    {ZelAudioTypeMedia, ""},
    {ZelAudioTypeSpeech, "S+AndroidAuto"},
    {ZelAudioTypeMedia, "S+AndroidAuto"},
    {ZelAudioTypePrompt, "S+AndroidAuto"},
    {ZelAudioTypeMedia, "S+AndroidAuto"},
    {ZelAudioTypeSpeech, "S+CarLife"},
    {ZelAudioTypeMedia, "S+CarLife"},
    {ZelAudioTypePrompt, "S+CarLife"},
    {ZelAudioTypeMedia, "S+CarLife"},
};
static_assert(std::size(statuses) == PolicyRules::highestStatus + 1, "a row for each number");

struct Channel
{
    int number;
    ZelAudioType type;
    const char *source;
};

constexpr char noSource[] = "S+none";

// Any other number is a media channel without a source.
constexpr Channel channels[] = {
    {AudioChannelNone, ZelAudioTypePrompt, noSource},
    {AudioChannelBtAudio, ZelAudioTypeMedia, "BT_AUDIO_Track"},
    {AudioChannelFilePlayer, ZelAudioTypeMedia, "S+FilePlayer"},
    {AudioChannelIosMirror, ZelAudioTypeMedia, "S+IosMirror"},
    {AudioChannelCarPlayMedia, ZelAudioTypeMedia, "S+CarPlayMedia"},
    {AudioChannelCarPlayAlert, ZelAudioTypeRing, "S+CarPlayAlert"},
    {AudioChannelCarPlayTelephony, ZelAudioTypeTelephony, "S+CarPlayTelephony"},
    {AudioChannelCarPlaySpeech, ZelAudioTypeSpeech, "S+CarPlaySpeech"},
    {AudioChannelCarPlayDefault, ZelAudioTypeMedia, "S+CarPlayDefault"},
    {AudioChannelAndroidAuto, ZelAudioTypeMedia, "S+AndroidAuto"},
    {AudioChannelBtRingtone, ZelAudioTypeRing, "S+BtRingtone"},
    {AudioChannelBtPhone, ZelAudioTypeTelephony, "S+BtPcmPhone"},
    {AudioChannelDiscPlayer, ZelAudioTypeMedia, "S+DiscPlayer"},
    {AudioChannelAuxIn, ZelAudioTypeMedia, "S+AuxIn"},
    {AudioChannelCarLife, ZelAudioTypeMedia, "S+CarLife"},
    {AudioChannelAirPlayMedia, ZelAudioTypeMedia, "S+AirPlayMedia"},
};

/// Sources that have a volume but no channel.
constexpr const char *furtherMediaSources[] = {"S+Mic", "S+IPod", "S+WebLink"};

constexpr int unnamedStatuses[] = {3, 4, 7, 9, 13, 17};
constexpr int duckStatuses[] = {AudioStatusCarPlayDuck, AudioStatusAndroidAutoDuck, AudioStatusCarLifeDuck};

constexpr int hiCarChannel = 18;

/// In these the keys work on the volume of what sounds, in the others on that of the channel.
constexpr int keyStatuses[] = {1, 2, 3, 5, 6, 10, 14, 18};

/// Null for a number that is no status.
const Status *find(int status)
{
    return status >= 0 && status <= PolicyRules::highestStatus ? &statuses[status] : nullptr;
}

/// Null for one that has no row.
const Channel *findChannel(int number)
{
    const auto *const found = std::find_if(std::begin(channels), std::end(channels), [number](const Channel &one) { return one.number == number; });
    return found == std::end(channels) ? nullptr : found;
}

} // namespace

int PolicyRules::typeOfStatus(int status)
{
    const Status *const found = find(status);
    return found ? found->type : ZelAudioTypeMedia;
}

QString PolicyRules::sourceOfStatus(int status)
{
    const Status *const found = find(status);
    return found ? QString::fromLatin1(found->source) : QString();
}

bool PolicyRules::isNamed(int status)
{
    return find(status) && std::find(std::begin(unnamedStatuses), std::end(unnamedStatuses), status) == std::end(unnamedStatuses);
}

bool PolicyRules::isOfDuck(int status)
{
    return std::find(std::begin(duckStatuses), std::end(duckStatuses), status) != std::end(duckStatuses);
}

int PolicyRules::typeOfKeys(int status, int channel)
{
    const bool areOfStatus = std::find(std::begin(keyStatuses), std::end(keyStatuses), status) != std::end(keyStatuses);
    if (!areOfStatus && typeOfChannel(channel) != ZelAudioTypeMedia)
        return none;
    if (channel == hiCarChannel)
        return ZelAudioTypeHiCarCall;
    return areOfStatus ? typeOfStatus(status) : ZelAudioTypeMedia;
}

int PolicyRules::typeOfChannel(int channel)
{
    const Channel *const found = findChannel(channel);
    return found ? found->type : ZelAudioTypeMedia;
}

QString PolicyRules::sourceOfChannel(int channel)
{
    const Channel *const found = findChannel(channel);
    return QString::fromLatin1(found ? found->source : &noSource[0]);
}

QString PolicyRules::sourceInChannel(int channel)
{
    return sourceOfChannel(channel == AudioChannelNone ? int(AudioChannelAuxIn) : channel);
}

int PolicyRules::typeOfSource(const QString &source)
{
    if (source == QLatin1String(&FacadeRules::hiCarCallSource[0]))
        return ZelAudioTypeHiCarCall;
    const auto *const found = std::find_if(std::begin(channels), std::end(channels), [&source](const Channel &one) {
        return one.number != AudioChannelNone && source == QLatin1String(one.source);
    });
    if (found != std::end(channels))
        return found->type;
    const bool isFurther
        = std::any_of(std::begin(furtherMediaSources), std::end(furtherMediaSources), [&source](const char *one) { return source == QLatin1String(one); });
    return isFurther ? int(ZelAudioTypeMedia) : none;
}

QString PolicyRules::typeText(int type)
{
    return type >= 0 && std::size_t(type) < std::size(policynames::volumeTypes) ? QString::fromLatin1(policynames::volumeTypes[type].meaning)
                                                                                : QStringLiteral("type %1").arg(type);
}
