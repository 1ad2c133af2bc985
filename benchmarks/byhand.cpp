#include "byhand.h"

#include <spaudiosetting.h>

using audio::SPAudioSetting::createVolume;
using audio::SPAudioSetting::destroy;
using audio::SPAudioSetting::Volume;

void byhand::setStreamVolume(audio::AudioControl::AudioTag tag, const QByteArray &track, const char *name, const QByteArray &source, quint8 volume)
{
    constexpr const char *signature = "void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8)";
    BY_HAND_TRACE(signature) << int(tag) << track << "tag";
    BY_HAND_TRACE(signature) << name << source << "src";
    Volume *const platform = createVolume();
    platform->setTrackVolume(track.constData(), source.constData(), volume);
    BY_HAND_INFO() << "set stream" << name << volume;
    destroy(platform);
}
