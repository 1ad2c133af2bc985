#ifndef APPOBJECT_H
#define APPOBJECT_H

#include "bookedobject.h"

#include <spaudiosetting.h>

namespace simulator
{

/// The platform's App on the simulated chip.
class AppObject final : public audio::SPAudioSetting::App, public BookedObject
{
public:
    static constexpr ObjectKind staticKind = ObjectKind::App;

    AppObject();

    int setFilter(audio::audio_filter_t *filter) override;
    int setLoudness(audio::audio_loudness_t *loudness) override;
    int setEqParameter(audio::audio_eq_parameter_t &parameter) override;
    int getMicrophoneTest(unsigned short *values, int count) override;
    int enableDps() override;
    int disableDps() override;
    int enableStereo() override;
    int disableStereo() override;
    int setDpsUserGain(float gain) override;
    int setSpeakerDelay(int channel, float delay) override;
    int setAecQuality(audio::audio_aec_quality_e quality) override;
    int setExtEqParameter(audio::audio_ext_eq_parameter_t &parameter) override;
    int startDownlinkDelayEstimation() override;
    int getDownlinkDelayEstimation(short *delay) override;
};

} // namespace simulator

#endif
