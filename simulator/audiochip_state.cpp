#include "audiochip_p.h"

#include "valuetext.h"

// The state as a table; its names are those that changed() gives.

namespace simulator
{

namespace
{

class Table
{
public:
    void add(const char *group, const QString &name, const QVariant &value) { m_items += StateItem{QString::fromLatin1(group), name, value}; }

    template<typename Value>
    void addTracks(const char *group, const QMap<QString, Value> &values)
    {
        for (auto item = values.cbegin(); item != values.cend(); ++item)
            add(group, item.key(), item.value());
    }

    template<typename Values, typename IsShown, typename Show>
    void addChannels(const char *group, const Values &values, IsShown isShown, Show show)
    {
        for (std::size_t index = 0; index < outputChannels.size(); ++index) {
            if (isShown(index))
                add(group, channelName(static_cast<int>(index)), show(values[index]));
        }
    }

    QVector<StateItem> items() const { return m_items; }

private:
    QVector<StateItem> m_items;
};

void addVolumes(Table &table, const AudioChipState &state)
{
    table.add("volume", QStringLiteral("master"), state.masterVolume);
    for (auto item = state.trackVolumes.cbegin(); item != state.trackVolumes.cend(); ++item)
        table.add("volume", volumeName(item.key().first, item.key().second), item.value());
    table.add("volume", QStringLiteral("all of alternative"), state.alternativeVolume);
    table.addTracks("mute", state.muted);
    table.add("ducking", QStringLiteral("mode"), state.duckingMode);
    table.add("ducking", QStringLiteral("gain"), state.duckingGain);
    table.addChannels(
        "channel gain", state.channelGains, [](std::size_t index) { return outputChannels[index].hasGain; }, [](int gain) { return gain; });
}

void addRouting(Table &table, const AudioChipState &state)
{
    table.addTracks("active source", state.activeSources);
    table.addTracks("output source", state.outputSources);
    table.addTracks("output channels", state.outputChannelMasks);
    table.add("routing", QStringLiteral("front/rear mode"), state.frontRearMode);
    if (state.alternativeCount)
        table.add("routing", QStringLiteral("alternative count"), *state.alternativeCount);
    table.addTracks("input destination", state.inputDestinations);
    for (int input = 0; input < inputCount; ++input)
        table.add("input pin", QString::number(firstInput + input), state.inputPins[static_cast<std::size_t>(input)]);
}

void addProcessing(Table &table, const AudioChipState &state)
{
    table.add("processing", QStringLiteral("equalizer"), equalizerVariant(state));
    table.add("processing", QStringLiteral("loudness"), state.loudness.on != 0);
    table.add("processing", QStringLiteral("dps"), state.dpsEnabled);
    table.add("processing", QStringLiteral("dps user gain"), state.dpsUserGain);
    table.add("processing", QStringLiteral("stereo"), state.stereoEnabled);
    table.addChannels(
        "filter",
        state.filters,
        [&state](std::size_t index) { return state.filters[index].has_value(); },
        [](const std::optional<audio::audio_filter_t> &filter) { return recordFields(*filter); });
    table.addChannels(
        "speaker delay", state.speakerDelays, [](std::size_t) { return true; }, [](float delay) { return delay; });
}

void addMicrophone(Table &table, const AudioChipState &state)
{
    table.add("microphone", QStringLiteral("volume"), state.micVolume);
    table.add("microphone", QStringLiteral("pga gain"), pairVariant(state.micPgaGain));
    table.add("microphone", QStringLiteral("op gain"), pairVariant(state.micOpGain));
    table.add("microphone", QStringLiteral("analog gain"), pairVariant(state.micAnalogGain));
    table.add("microphone", QStringLiteral("calibration"), static_cast<int>(state.calibration));
    table.add("microphone", QStringLiteral("calibration gains"), pairVariant(state.calibrationGains));
    table.add("microphone", QStringLiteral("left/right swapped"), state.micLeftRightSwapped);
    QVariantList testValues;
    for (const quint16 value : state.microphoneTest)
        testValues += int(value);
    table.add("microphone", QStringLiteral("test values"), testValues);
    table.add("voice", QStringLiteral("aec quality"), state.aecQuality);
    table.add("voice", QStringLiteral("handsfree delay"), state.handsfreeDelay);
    table.add("voice", QStringLiteral("downlink estimation started"), state.downlinkEstimationStarted);
    table.add("voice", QStringLiteral("downlink delay"), state.downlinkDelay);
}

} // namespace

QVector<StateItem> AudioChip::stateTable() const
{
    Table table;
    addVolumes(table, d->state);
    addRouting(table, d->state);
    addProcessing(table, d->state);
    addMicrophone(table, d->state);
    return table.items();
}

} // namespace simulator
