#include "byhandplatform.h"

#include <spaudiosetting.h>

#include <algorithm>

using audio::SPAudioSetting::createVolume;
using audio::SPAudioSetting::Volume;

namespace
{

struct MediaSource
{
    const char *name;
    bool isBoosted;
};

constexpr MediaSource mediaSources[] = {
    {"S+none", false},
    {"BT_AUDIO_Track", false},
    {"S+FilePlayer", false},
    {"S+IosMirror", false},
    {"S+CarPlayMedia", false},
    {"S+CarPlayDefault", false},
    {"S+AndroidAuto", false},
    {"S+DiscPlayer", false},
    {"S+none", false},
    {"S+AuxIn", true},
    {"S+none", false},
    {"S+CarLife", false},
    {"S+none", false},
    {"S+AirPlayMedia", false},
};

} // namespace

void byhand::setTrackVolume(const char *source, unsigned char value)
{
    byhand::onNewObject<createVolume>([&](Volume &platform) { platform.setTrackVolume("main", source, value); });
}

void byhand::setMediaVolume(int volume)
{
    const int value = volume * 4;
    const int boosted = std::min(value * 3 / 2, 148);
    for (const MediaSource &source : mediaSources)
        setTrackVolume(source.name, static_cast<unsigned char>(source.isBoosted ? boosted : value));
}
