#ifndef APPOBJECT_H
#define APPOBJECT_H

#include "bookedobject.h"

#include <spaudiosetting.h>

#include <QtCore/QObject>

#include <algorithm>

namespace simulator
{

/// The platform's App on the simulated chip.
class AppObject final : public audio::SPAudioSetting::App, public BookedObject
{
    Q_GADGET

public:
    static constexpr ObjectKind staticKind = ObjectKind::App;

    AppObject()
        : BookedObject(staticKind)
    {
    }

public Q_SLOTS:
    int setFilter(audio::audio_filter_t *filter) override { return call(__func__, &AudioChip::setFilter, filter); }
    int setLoudness(audio::audio_loudness_t *loudness) override { return call(__func__, &AudioChip::setLoudness, loudness); }
    int setEqParameter(audio::audio_eq_parameter_t &parameter) override { return call(__func__, &AudioChip::setEqParameter, parameter); }
    int getMicrophoneTest(unsigned short *values, int count) override
    {
        const auto read = [](const AudioChip &chip, unsigned short *out, int wanted) {
            const auto measured = chip.microphoneTest();
            if (wanted < 1 || wanted > static_cast<int>(measured.size()))
                return CountOutOfRange;
            std::copy_n(measured.cbegin(), wanted, out);
            return Accepted;
        };
        return call(__func__, read, Outputs<unsigned short>{values, count}, count);
    }
    int enableDps() override
    {
        return call(__func__, [](AudioChip &chip) { return chip.setDpsEnabled(true); });
    }
    int disableDps() override
    {
        return call(__func__, [](AudioChip &chip) { return chip.setDpsEnabled(false); });
    }
    int enableStereo() override
    {
        return call(__func__, [](AudioChip &chip) { return chip.setStereoEnabled(true); });
    }
    int disableStereo() override
    {
        return call(__func__, [](AudioChip &chip) { return chip.setStereoEnabled(false); });
    }
    int setDpsUserGain(float gain) override { return call(__func__, &AudioChip::setDpsUserGain, gain); }
    int setSpeakerDelay(int channel, float delay) override { return call(__func__, &AudioChip::setSpeakerDelay, channel, delay); }
    int setAecQuality(audio::audio_aec_quality_e quality) override { return call(__func__, &AudioChip::setAecQuality, quality); }
    int setExtEqParameter(audio::audio_ext_eq_parameter_t &parameter) override { return call(__func__, &AudioChip::setExtEqParameter, parameter); }
    int startDownlinkDelayEstimation() override { return call(__func__, &AudioChip::startDownlinkDelayEstimation); }
    int getDownlinkDelayEstimation(short *delay) override
    {
        const auto read = [](const AudioChip &chip, short *out) {
            *out = chip.downlinkDelay();
            return Accepted;
        };
        return call(__func__, read, delay);
    }
};

} // namespace simulator

#endif
