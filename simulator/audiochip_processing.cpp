#include "audiochip_p.h"
#include "valuetext.h"

#include <algorithm>
#include <iterator>

namespace simulator
{

namespace
{

template<typename Record>
bool isSame(const Record &a, const Record &b)
{
    return recordBytes(a) == recordBytes(b);
}

/// The gain that one band of the record set last adds, 0 for a band that is not there or not in use.
float bandGain(const AudioChipState &state, int band)
{
    const auto index = static_cast<std::size_t>(band);
    switch (state.curve) {
    case AudioChipState::Curve::None:
        break;
    case AudioChipState::Curve::Short:
        if (index < std::size(state.eqParameter.gain) && state.eqParameter.type[index] != 0)
            return state.eqParameter.gain[index];
        break;
    case AudioChipState::Curve::Extended:
        if (index < std::size(state.extEqParameter.band) && state.extEqParameter.band[index].type != 0)
            return state.extEqParameter.band[index].gain;
        break;
    }
    return 0;
}

bool curveCovers(const AudioChipState &state, quint32 channel)
{
    const quint32 mask = state.curve == AudioChipState::Curve::Extended ? state.extEqParameter.channel : state.eqParameter.channel;
    return channelIndex(channel) >= 0 && (mask & channel) != 0;
}

} // namespace

QVariant equalizerVariant(const AudioChipState &state)
{
    int bands = 0;
    if (state.curve == AudioChipState::Curve::Short)
        bands = static_cast<int>(std::size(state.eqParameter.gain));
    else if (state.curve == AudioChipState::Curve::Extended)
        bands = static_cast<int>(std::size(state.extEqParameter.band));
    QVariantList gains;
    for (int band = 0; band < bands; ++band)
        gains += bandGain(state, band);
    return gains;
}

double AudioChip::equalizerGain(quint32 channel, int band) const
{
    return band >= 0 && curveCovers(d->state, channel) ? bandGain(d->state, band) : 0;
}

audio::audio_eq_parameter_t AudioChip::lastEqParameter() const
{
    return d->state.eqParameter;
}

audio::audio_ext_eq_parameter_t AudioChip::lastExtEqParameter() const
{
    return d->state.extEqParameter;
}

audio::audio_loudness_t AudioChip::lastLoudness() const
{
    return d->state.loudness;
}

bool AudioChip::isLoudnessOn() const
{
    return d->state.loudness.on != 0;
}

std::optional<audio::audio_filter_t> AudioChip::filter(quint32 channel) const
{
    const int index = channelIndex(channel);
    return index < 0 ? std::nullopt : d->state.filters[static_cast<std::size_t>(index)];
}

double AudioChip::speakerDelay(quint32 channel) const
{
    const int index = channelIndex(channel);
    return index < 0 ? 0 : d->state.speakerDelays[static_cast<std::size_t>(index)];
}

bool AudioChip::isDpsEnabled() const
{
    return d->state.dpsEnabled;
}

double AudioChip::dpsUserGain() const
{
    return d->state.dpsUserGain;
}

bool AudioChip::isStereoEnabled() const
{
    return d->state.stereoEnabled;
}

int AudioChip::setEqParameter(const audio::audio_eq_parameter_t &parameter)
{
    if (!isChannelMask(parameter.channel))
        return UnknownChannel;
    if (!std::all_of(std::cbegin(parameter.gain), std::cend(parameter.gain), isFinite))
        return NotFinite;
    const bool isUnchanged = d->state.curve == AudioChipState::Curve::Short && isSame(d->state.eqParameter, parameter);
    d->state.curve = AudioChipState::Curve::Short;
    d->state.eqParameter = parameter;
    if (!isUnchanged)
        d->tell("processing", QStringLiteral("equalizer"), equalizerVariant(d->state));
    return Accepted;
}

int AudioChip::setExtEqParameter(const audio::audio_ext_eq_parameter_t &parameter)
{
    if (!isChannelMask(parameter.channel))
        return UnknownChannel;
    const auto bandIsFinite = [](const audio::audio_ext_eq_band_t &band) { return isFinite(band.gain) && isFinite(band.q); };
    if (!std::all_of(std::cbegin(parameter.band), std::cend(parameter.band), bandIsFinite))
        return NotFinite;
    const bool isUnchanged = d->state.curve == AudioChipState::Curve::Extended && isSame(d->state.extEqParameter, parameter);
    d->state.curve = AudioChipState::Curve::Extended;
    d->state.extEqParameter = parameter;
    if (!isUnchanged)
        d->tell("processing", QStringLiteral("equalizer"), equalizerVariant(d->state));
    return Accepted;
}

int AudioChip::setLoudness(const audio::audio_loudness_t &loudness)
{
    const bool isUnchanged = isSame(d->state.loudness, loudness);
    d->state.loudness = loudness;
    if (!isUnchanged)
        d->tell("processing", QStringLiteral("loudness"), loudness.on != 0);
    return Accepted;
}

int AudioChip::setFilter(const audio::audio_filter_t &filter)
{
    if (channelIndex(filter.channel) < 0 && filter.channel != everyOutput)
        return UnknownChannel;
    if (filter.kind > 1)
        return KindOutOfRange;
    for (std::size_t index = 0; index < outputChannels.size(); ++index) {
        std::optional<audio::audio_filter_t> &current = d->state.filters[index];
        const bool isMeant = (filter.channel & outputChannels[index].bit) != 0;
        if (!isMeant || (current && isSame(*current, filter)))
            continue;
        current = filter;
        d->tell("filter", channelName(static_cast<int>(index)), recordFields(filter));
    }
    return Accepted;
}

int AudioChip::setSpeakerDelay(int channel, float delay)
{
    const auto bits = static_cast<quint32>(channel);
    if (channelIndex(bits) < 0 && bits != everyOutput)
        return UnknownChannel;
    if (!isFinite(delay))
        return NotFinite;
    if (delay < 0)
        return DelayOutOfRange;
    for (std::size_t index = 0; index < outputChannels.size(); ++index) {
        if ((bits & outputChannels[index].bit) != 0)
            d->assign(d->state.speakerDelays[index], delay, "speaker delay", channelName(static_cast<int>(index)), delay);
    }
    return Accepted;
}

int AudioChip::setDpsEnabled(bool enabled)
{
    return d->assign(d->state.dpsEnabled, enabled, "processing", QStringLiteral("dps"), enabled);
}

int AudioChip::setStereoEnabled(bool enabled)
{
    return d->assign(d->state.stereoEnabled, enabled, "processing", QStringLiteral("stereo"), enabled);
}

int AudioChip::setDpsUserGain(float gain)
{
    if (!isFinite(gain))
        return NotFinite;
    return d->assign(d->state.dpsUserGain, gain, "processing", QStringLiteral("dps user gain"), gain);
}

} // namespace simulator
