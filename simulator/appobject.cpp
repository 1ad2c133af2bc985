#include "appobject.h"

#include "audiochip.h"
#include "call.h"

#include <algorithm>

namespace simulator
{

AppObject::AppObject()
    : BookedObject(staticKind)
{
}

int AppObject::setFilter(audio::audio_filter_t *filter)
{
    return Call(*this, Operation::SetFilter).withRecord(filter).run([filter](AudioChip &chip) -> int {
        return !filter ? NullPointer : chip.setFilter(*filter);
    });
}

int AppObject::setLoudness(audio::audio_loudness_t *loudness)
{
    return Call(*this, Operation::SetLoudness).withRecord(loudness).run([loudness](AudioChip &chip) -> int {
        return !loudness ? NullPointer : chip.setLoudness(*loudness);
    });
}

int AppObject::setEqParameter(audio::audio_eq_parameter_t &parameter)
{
    return Call(*this, Operation::SetEqParameter).withRecord(&parameter).run([&parameter](AudioChip &chip) { return chip.setEqParameter(parameter); });
}

int AppObject::getMicrophoneTest(unsigned short *values, int count)
{
    Call call(*this, Operation::GetMicrophoneTest);
    return call.with(count).run([&call, values, count](AudioChip &chip) -> int {
        if (!values)
            return NullPointer;
        const std::array<quint16, 8> measured = chip.microphoneTest();
        if (count < 1 || count > static_cast<int>(measured.size()))
            return CountOutOfRange;
        std::copy_n(measured.cbegin(), count, values);
        std::for_each(values, values + count, [&call](unsigned short value) { call.output(int(value)); });
        return Accepted;
    });
}

int AppObject::enableDps()
{
    return Call(*this, Operation::EnableDps).run([](AudioChip &chip) { return chip.setDpsEnabled(true); });
}

int AppObject::disableDps()
{
    return Call(*this, Operation::DisableDps).run([](AudioChip &chip) { return chip.setDpsEnabled(false); });
}

int AppObject::enableStereo()
{
    return Call(*this, Operation::EnableStereo).run([](AudioChip &chip) { return chip.setStereoEnabled(true); });
}

int AppObject::disableStereo()
{
    return Call(*this, Operation::DisableStereo).run([](AudioChip &chip) { return chip.setStereoEnabled(false); });
}

int AppObject::setDpsUserGain(float gain)
{
    return Call(*this, Operation::SetDpsUserGain).with(gain).run([gain](AudioChip &chip) { return chip.setDpsUserGain(gain); });
}

int AppObject::setSpeakerDelay(int channel, float delay)
{
    return Call(*this, Operation::SetSpeakerDelay).with(channel).with(delay).run([channel, delay](AudioChip &chip) {
        return chip.setSpeakerDelay(channel, delay);
    });
}

int AppObject::setAecQuality(audio::audio_aec_quality_e quality)
{
    const int value = quality;
    return Call(*this, Operation::SetAecQuality).with(value).run([value](AudioChip &chip) { return chip.setAecQuality(value); });
}

int AppObject::setExtEqParameter(audio::audio_ext_eq_parameter_t &parameter)
{
    return Call(*this, Operation::SetExtEqParameter).withRecord(&parameter).run([&parameter](AudioChip &chip) { return chip.setExtEqParameter(parameter); });
}

int AppObject::startDownlinkDelayEstimation()
{
    return Call(*this, Operation::StartDownlinkDelayEstimation).run([](AudioChip &chip) { return chip.startDownlinkDelayEstimation(); });
}

int AppObject::getDownlinkDelayEstimation(short *delay)
{
    Call call(*this, Operation::GetDownlinkDelayEstimation);
    return call.run([&call, delay](AudioChip &chip) -> int {
        if (!delay)
            return NullPointer;
        *delay = chip.downlinkDelay();
        call.output(int(*delay));
        return Accepted;
    });
}

} // namespace simulator
