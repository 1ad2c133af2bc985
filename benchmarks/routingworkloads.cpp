#include "byhandplatform.h"
#include "workloads.h"

#include <qzaudio/audiocontrol.h>
#include <spaudiosetting.h>

using audio::AudioControl;
using audio::SPAudioSetting::createSource;
using audio::SPAudioSetting::createVolume;
using audio::SPAudioSetting::destroy;
using audio::SPAudioSetting::Source;
using audio::SPAudioSetting::Volume;

namespace
{

void prepareFacade()
{
    AudioControl::getInstance();
}

void setOutputSource(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    for (int i = 0; i < rounds; ++i)
        control->setOutputSource(AudioControl::Main, "S+FilePlayer_APP");
}

void setOutputSourceFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i)
        byhand::onNewObject<createSource>([&](Source &source) { source.setOutputSource("main", "S+FilePlayer"); });
}

void setInputDestination(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    for (int i = 0; i < rounds; ++i)
        control->setInputDestination(AudioControl::Uplink, "S+Mic_APP");
}

/// With the Volume object that the facade makes and destroys, too.
void setInputDestinationFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i) {
        Source *const source = createSource();
        Volume *const volume = createVolume();
        source->setInputDestination("uplink", "S+Mic");
        destroy(volume);
        destroy(source);
    }
}

void setDuckingMode(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    for (int i = 0; i < rounds; ++i)
        control->setMainAudioDunkingMode(1);
}

void setDuckingModeFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i)
        byhand::onNewObject<createVolume>([&](Volume &volume) { volume.setDuckingMode(1); });
}

void setDuckingTargetGain(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    for (int i = 0; i < rounds; ++i)
        control->setMainAudioDunkingTargetGain(60);
}

void setDuckingTargetGainFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i)
        byhand::onNewObject<createVolume>([&](Volume &volume) { volume.setDuckingTargetGain(60); });
}

} // namespace

const Workloads &routingWorkloads()
{
    static const Workloads workloads = {
        {"routing/setOutputSource", false, prepareFacade, setOutputSource, setOutputSourceFloor},
        {"routing/setInputDestination", false, prepareFacade, setInputDestination, setInputDestinationFloor},
        {"routing/setMainAudioDunkingMode", false, prepareFacade, setDuckingMode, setDuckingModeFloor},
        {"routing/setMainAudioDunkingTargetGain", false, prepareFacade, setDuckingTargetGain, setDuckingTargetGainFloor},
    };
    return workloads;
}
