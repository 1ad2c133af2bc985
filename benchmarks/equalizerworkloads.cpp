#include "byhandplatform.h"
#include "workloads.h"

#include <qzaudio/audiocontrol.h>
#include <spaudiosetting.h>

#include <cstddef>

using audio::AudioControl;
using audio::SPAudioSetting::App;
using audio::SPAudioSetting::createApp;
using audio::SPAudioSetting::createVolume;
using audio::SPAudioSetting::Volume;

namespace
{

void prepareFacade()
{
    AudioControl::getInstance();
}

void setEqGain(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    static const QList<float> gains = {1, 2, 3, 4, 5, 6, 7, 8, 7, 6, 5, 4, 3, 2, 1, 0};
    for (int i = 0; i < rounds; ++i)
        control->setEqGain(gains);
}

audio::audio_ext_eq_parameter_t sixteenBands()
{
    constexpr quint16 hertz[] = {50, 80, 125, 200, 315, 500, 630, 800, 1000, 2000, 3100, 4000, 5000, 6300, 16000, 20000};
    constexpr float q[] = {1.0F, 1.0F, 1.0F, 1.5F, 1.5F, 1.5F, 1.5F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 1.0F, 1.0F, 1.0F};
    constexpr float gains[] = {1, 2, 3, 4, 5, 6, 7, 8, 7, 6, 5, 4, 3, 2, 1, 0};
    audio::audio_ext_eq_parameter_t parameter = {};
    parameter.channel = 0xFFFF;
    for (std::size_t i = 0; i < std::size(hertz); ++i) {
        parameter.band[i].type = 3;
        parameter.band[i].frequency = hertz[i];
        parameter.band[i].q = q[i];
        parameter.band[i].gain = gains[i];
    }
    return parameter;
}

/// The record is ready beforehand.
void setEqGainFloor(int rounds)
{
    audio::audio_ext_eq_parameter_t parameter = sixteenBands();
    for (int i = 0; i < rounds; ++i)
        byhand::onNewObject<createApp>([&](App &app) { app.setExtEqParameter(parameter); });
}

void setEqMode(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    for (int i = 0; i < rounds; ++i)
        control->setEqMode(AudioControl::EqMode{1});
}

audio::audio_eq_parameter_t eightBands()
{
    constexpr quint16 indexCodes[] = {10, 18, 26, 35, 44, 52, 58, 33};
    constexpr float gains[] = {7.0F, 5.5F, 4.0F, 3.5F, 3.0F, 2.0F, 1.5F, 0.5F};
    audio::audio_eq_parameter_t parameter = {};
    parameter.channel = 0xFFFF;
    for (std::size_t i = 0; i < std::size(indexCodes); ++i) {
        parameter.frequency[i] = indexCodes[i];
        parameter.gain[i] = gains[i];
        parameter.type[i] = 3;
    }
    return parameter;
}

/// The record is ready beforehand, and the object kept, as the facade keeps one.
void setEqModeFloor(int rounds)
{
    static App *const app = createApp();
    audio::audio_eq_parameter_t parameter = eightBands();
    for (int i = 0; i < rounds; ++i)
        app->setEqParameter(parameter);
}

void setFadeBalance(int rounds)
{
    AudioControl *const control = AudioControl::getInstance();
    for (int i = 0; i < rounds; ++i)
        control->setFadeBalance(3, -4);
}

/// The gains are known beforehand, and the object kept, as the facade keeps one.
void setFadeBalanceFloor(int rounds)
{
    static Volume *const volume = createVolume();
    for (int i = 0; i < rounds; ++i) {
        audio::audio_channel_gain_t records[] = {{1, 73, {}}, {2, 100, {}}, {4, 53, {}}, {8, 80, {}}};
        for (audio::audio_channel_gain_t &record : records)
            volume->setFadeBalance(&record);
    }
}

} // namespace

const Workloads &equalizerWorkloads()
{
    static const Workloads workloads = {
        {"equalizer/setEqGain", false, prepareFacade, setEqGain, setEqGainFloor},
        {"equalizer/setEqMode", false, prepareFacade, setEqMode, setEqModeFloor},
        {"equalizer/setFadeBalance", false, prepareFacade, setFadeBalance, setFadeBalanceFloor},
    };
    return workloads;
}
