#include "byhandplatform.h"
#include "byhand.h"
#include "workloads.h"

#include <qzaudio/audiocontrol.h>
#include <spaudiosetting.h>

using audio::AudioControl;
using audio::SPAudioSetting::createVolume;
using audio::SPAudioSetting::Volume;

namespace
{

constexpr quint8 volumeInPercent = 80;
constexpr quint8 steps = 25;
constexpr quint8 step = 20;

void prepareFacade()
{
    AudioControl::getInstance()->setStepRange(steps);
}

void setStreamVolume(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    for (int i = 0; i < rounds; ++i)
        control->setStreamVolume(AudioControl::Main, "S+FilePlayer_APP", volumeInPercent);
}

void setStreamVolumeFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i)
        byhand::onNewObject<createVolume>([&](Volume &volume) { volume.setTrackVolume("main", "S+FilePlayer", volumeInPercent); });
}

void setStreamVolumeLoggedFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i)
        byhand::setStreamVolume(AudioControl::Main, QByteArrayLiteral("main"), "S+FilePlayer_APP", QByteArrayLiteral("S+FilePlayer"), volumeInPercent);
}

void setAlterStepVolume(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    for (int i = 0; i < rounds; ++i)
        control->setAlterStepVolume(step, false);
}

void setAlterStepVolumeFloor(int rounds)
{
    constexpr unsigned char boosted = 120; // half as much again as 100 * 20 / 25
    for (int i = 0; i < rounds; ++i)
        byhand::onNewObject<createVolume>([&](Volume &volume) { volume.setAlterTrackVolume(boosted); });
}

void setMicAnalogGain(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    for (int i = 0; i < rounds; ++i)
        control->setMicAnalogGain(20.0F, 20.0F);
}

void setMicAnalogGainFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i)
        byhand::onNewObject<createVolume>([&](Volume &volume) { volume.setMicAnalogGain(20.0F, 20.0F); });
}

/// The state before the first round and after the last is the same, so each round mutes and unmutes.
void setMute(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    for (int i = 0; i < rounds; ++i) {
        control->setMute(true);
        control->setMute(false);
    }
}

void setMuteFloor(int rounds)
{
    static Volume *const volume = createVolume(); // as the facade keeps one
    for (int i = 0; i < rounds; ++i) {
        volume->muteTrack("main", 0);
        volume->muteTrack("alternative", 0);
        volume->unmuteTrack("main", 0);
        volume->unmuteTrack("alternative", 0);
    }
}

} // namespace

const Workloads &volumeWorkloads()
{
    static const Workloads workloads = {
        {"volume/setStreamVolume", false, prepareFacade, setStreamVolume, setStreamVolumeFloor},
        {"volume/setStreamVolume/logged", true, prepareFacade, setStreamVolume, setStreamVolumeLoggedFloor},
        {"volume/setAlterStepVolume", false, prepareFacade, setAlterStepVolume, setAlterStepVolumeFloor},
        {"volume/setMicAnalogGain", false, prepareFacade, setMicAnalogGain, setMicAnalogGainFloor},
        {"volume/setMute", false, prepareFacade, setMute, setMuteFloor},
    };
    return workloads;
}
