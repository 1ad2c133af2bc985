#include "audiochip.h"

#include <algorithm>
#include <limits>

namespace simulator
{

namespace
{

constexpr int maximumTrackVolume = 148;
constexpr int maximumChannelGain = 100;
constexpr int maximumDuckingGain = 100; ///< full level; beyond it nothing gets louder
constexpr float maximumMicVolume = 91;
constexpr int pinCount = 6;

// Inputs that a pin can be selected for.
constexpr int auxiliaryInput = 1;
constexpr int i2sInput = 2;

const QLatin1String mainTrack("main");
const QLatin1String alternativeTrack("alternative");

/// Place of a channel bit in outputChannels; their count for anything but one of the six bits.
std::size_t channelIndex(quint32 channel)
{
    const auto *const found = std::find_if(outputChannels.cbegin(), outputChannels.cend(), [channel](const OutputChannel &one) { return one.bit == channel; });
    return static_cast<std::size_t>(found - outputChannels.cbegin());
}

bool isChannel(quint32 channel)
{
    return channelIndex(channel) < outputChannels.size();
}

bool isChannelOrAll(quint32 channel)
{
    return isChannel(channel) || channel == everyOutput;
}

/// Six channels, or a selection of them, or all.
bool isChannelMask(quint32 mask)
{
    return mask == everyOutput || (mask != 0 && (mask & ~allOutputBits) == 0);
}

bool isFinite(float value)
{
    return std::isfinite(value);
}

/// Lists what the table shows.
class TableWriter
{
public:
    template<typename Value>
    void add(const ChipValue<Value> &item)
    {
        addItem(item.group, QLatin1String(item.name), shown(item.value));
    }

    template<typename Key, typename Value>
    void add(const ChipMap<Key, Value> &map)
    {
        for (auto item = map.values.cbegin(); item != map.values.cend(); ++item)
            addItem(map.group, itemName(item.key()), shown(item.value()));
    }

    template<typename Value, std::size_t count>
    void add(const ChipRow<Value, count> &row)
    {
        for (std::size_t channel = 0; channel < count; ++channel)
            addItem(row.group, QLatin1String(outputChannels[channel].name), shown(row.values[channel]));
    }

    QVector<StateItem> items() const { return m_items; }

private:
    void addItem(const char *group, const QString &name, const QVariant &value)
    {
        if (value.isValid())
            m_items += StateItem{QLatin1String(group), name, value};
    }

    QVector<StateItem> m_items;
};

} // namespace

int EqualizerRecords::bandCount() const
{
    switch (form) {
    case Form::None:
        break;
    case Form::Short:
        return static_cast<int>(std::size(shortRecord.gain));
    case Form::Extended:
        return static_cast<int>(std::size(extendedRecord.band));
    }
    return 0;
}

float EqualizerRecords::bandGain(int band) const
{
    if (band < 0 || band >= bandCount())
        return 0;
    if (form == Form::Short)
        return shortRecord.type[band] != 0 ? shortRecord.gain[band] : 0;
    return extendedRecord.band[band].type != 0 ? extendedRecord.band[band].gain : 0;
}

QVariant shown(const EqualizerRecords &records)
{
    QVariantList gains;
    for (int band = 0; band < records.bandCount(); ++band)
        gains += decimal(records.bandGain(band));
    return gains;
}

void AudioChip::reset()
{
    m_state = State();
    Q_EMIT wasReset();
}

QVector<StateItem> AudioChip::stateTable() const
{
    TableWriter table;
    std::apply([&table](const auto &...items) { (table.add(items), ...); }, m_state.items());
    return table.items();
}

// What can be heard ---------------------------------------------------------------------------------------------------------

double AudioChip::effectiveGain(const QString &track, const QString &source, quint32 channel) const
{
    const bool isSilent = !isChannel(channel) || isMuted(track) || (outputChannelMask(track) & channel) == 0;
    if (isSilent)
        return 0;
    double gain = static_cast<double>(trackVolume(track, source)) / maximumTrackVolume;
    gain *= static_cast<double>(masterVolume()) / maximumMasterVolume;
    gain *= static_cast<double>(channelGain(channel)) / maximumChannelGain;
    if (track == mainTrack && isDucked())
        gain *= static_cast<double>(std::min(duckingGain(), maximumDuckingGain)) / maximumDuckingGain;
    return gain;
}

Sound AudioChip::effectiveSound(const QString &track, const QString &source, quint32 channel, int band) const
{
    return {effectiveGain(track, source, channel), equalizerGain(channel, band), speakerDelay(channel)};
}

double AudioChip::effectiveGainDb(const QString &track, const QString &source, quint32 channel, int band) const
{
    const Sound sound = effectiveSound(track, source, channel, band);
    return sound.gain > 0 ? 20 * std::log10(sound.gain) + sound.equalizer : -std::numeric_limits<double>::infinity();
}

int AudioChip::effectiveMainVolume() const
{
    const QString source = activeSource(mainTrack);
    if (source.isEmpty() || isMuted(mainTrack))
        return 0;
    const int volume = trackVolume(mainTrack, source);
    return isDucked() ? volume * std::min(duckingGain(), maximumDuckingGain) / maximumDuckingGain : volume;
}

double AudioChip::equalizerGain(quint32 channel, int band) const
{
    const EqualizerRecords &records = m_state.equalizer.value;
    return isChannel(channel) && (records.channels() & channel) != 0 ? decimal(records.bandGain(band)) : 0;
}

// Volumes -------------------------------------------------------------------------------------------------------------------

int AudioChip::trackVolume(const QString &track, const QString &source) const
{
    return m_state.trackVolumes.values.value({track, source}).value_or(track == alternativeTrack ? alternativeVolume() : 0);
}

int AudioChip::channelGain(quint32 channel) const
{
    const std::size_t index = channelIndex(channel);
    if (index < gainChannelCount)
        return m_state.channelGains.values[index];
    return isChannel(channel) ? maximumChannelGain : 0;
}

int AudioChip::setFadeBalance(const audio::audio_channel_gain_t &gain)
{
    const std::size_t index = channelIndex(gain.channel);
    if (index >= gainChannelCount)
        return UnknownChannel;
    if (gain.gain > maximumChannelGain)
        return GainOutOfRange;
    m_state.lastChannelGain = gain;
    return set(m_state.channelGains, index, gain.gain);
}

int AudioChip::checkTrackAndSource(const QString &track, const QString &source) const
{
    if (!isTrack(track))
        return UnknownTrack;
    return source.isEmpty() ? EmptyName : Accepted;
}

int AudioChip::setTrackVolume(const QString &track, const QString &source, unsigned char volume)
{
    if (const int refusal = checkTrackAndSource(track, source))
        return refusal;
    return volume > maximumTrackVolume ? VolumeOutOfRange : set(m_state.trackVolumes, {track, source}, volume);
}

int AudioChip::setAlterTrackVolume(unsigned char volume)
{
    if (volume > maximumTrackVolume)
        return VolumeOutOfRange;
    const auto keys = m_state.trackVolumes.values.keys();
    for (const auto &key : keys) {
        if (key.first == alternativeTrack) {
            m_state.trackVolumes.values.remove(key);
            tell(m_state.trackVolumes.group, itemName(key), QVariant());
        }
    }
    return set(m_state.alternativeVolume, volume);
}

int AudioChip::setMute(const QString &track, bool mute)
{
    return isTrack(track) ? set(m_state.muted, track, mute) : UnknownTrack;
}

// Routing -------------------------------------------------------------------------------------------------------------------

bool AudioChip::setActiveSource(const QString &track, const QString &source)
{
    if (!isTrack(track))
        return false;
    const QString current = activeSource(track);
    if (current == source && current.isNull() == source.isNull())
        return true;
    if (source.isNull())
        m_state.activeSources.values.remove(track);
    else
        m_state.activeSources.values.insert(track, source);
    tell(m_state.activeSources.group, track, shown(source));
    return true;
}

int AudioChip::inputSelectPin(int input) const
{
    if (input == auxiliaryInput)
        return m_state.auxiliaryPin.value;
    return input == i2sInput ? m_state.i2sPin.value : -1;
}

int AudioChip::alternativeCount(const QString &track) const
{
    const QString source = activeSource(track);
    return m_state.alternativeCount.value.value_or(source.isEmpty() || source == QLatin1String("S+none") ? 0 : 1);
}

int AudioChip::setOutputSource(const QString &track, const QString &source)
{
    if (const int refusal = checkTrackAndSource(track, source))
        return refusal;
    m_state.lastRoutedTrack = track;
    set(m_state.outputSources, track, source);
    setActiveSource(track, source);
    return Accepted;
}

int AudioChip::setOutputChannelMask(int mask)
{
    const auto bits = static_cast<quint32>(mask);
    return isChannelMask(bits) ? set(m_state.outputChannelMasks, m_state.lastRoutedTrack, bits & allOutputBits) : UnknownChannel;
}

int AudioChip::setInputDestination(const QString &track, const QString &destination)
{
    if (const int refusal = checkTrackAndSource(track, destination))
        return refusal;
    return set(m_state.inputDestinations, track, destination);
}

int AudioChip::setInputSelectPin(int input, int pin)
{
    if (input != auxiliaryInput && input != i2sInput)
        return UnknownInput;
    if (pin < 0 || pin >= pinCount)
        return PinOutOfRange;
    return set(input == auxiliaryInput ? m_state.auxiliaryPin : m_state.i2sPin, pin);
}

// Sound processing ----------------------------------------------------------------------------------------------------------

std::optional<audio::audio_filter_t> AudioChip::filter(quint32 channel) const
{
    return isChannel(channel) ? m_state.filters.values[channelIndex(channel)] : std::nullopt;
}

double AudioChip::speakerDelay(quint32 channel) const
{
    return isChannel(channel) ? decimal(m_state.speakerDelays.values[channelIndex(channel)]) : 0;
}

int AudioChip::setEqParameter(const audio::audio_eq_parameter_t &parameter)
{
    if (!isChannelMask(parameter.channel))
        return UnknownChannel;
    if (!std::all_of(std::cbegin(parameter.gain), std::cend(parameter.gain), isFinite))
        return NotFinite;
    return set(m_state.equalizer, EqualizerRecords{EqualizerRecords::Form::Short, parameter, lastExtEqParameter()});
}

int AudioChip::setExtEqParameter(const audio::audio_ext_eq_parameter_t &parameter)
{
    if (!isChannelMask(parameter.channel))
        return UnknownChannel;
    const auto bandIsFinite = [](const audio::audio_ext_eq_band_t &band) { return isFinite(band.gain) && isFinite(band.q); };
    if (!std::all_of(std::cbegin(parameter.band), std::cend(parameter.band), bandIsFinite))
        return NotFinite;
    return set(m_state.equalizer, EqualizerRecords{EqualizerRecords::Form::Extended, lastEqParameter(), parameter});
}

int AudioChip::setFilter(const audio::audio_filter_t &filter)
{
    if (!isChannelOrAll(filter.channel))
        return UnknownChannel;
    if (filter.kind > 1)
        return KindOutOfRange;
    return setChannels(m_state.filters, filter.channel, filter);
}

int AudioChip::setSpeakerDelay(int channel, float delay)
{
    const auto bits = static_cast<quint32>(channel);
    if (!isChannelOrAll(bits))
        return UnknownChannel;
    if (!isFinite(delay))
        return NotFinite;
    return delay < 0 ? DelayOutOfRange : setChannels(m_state.speakerDelays, bits, delay);
}

// Microphone and voice ------------------------------------------------------------------------------------------------------

int AudioChip::setMicVolume(float volume)
{
    if (!isFinite(volume))
        return NotFinite;
    return volume < 0 || volume > maximumMicVolume ? VolumeOutOfRange : set(m_state.micVolume, volume);
}

} // namespace simulator
