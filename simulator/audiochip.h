#ifndef AUDIOCHIP_H
#define AUDIOCHIP_H

#include "chipvalues.h"
#include "refusal.h"
#include "tracks.h"

#include <QtCore/QObject>
#include <QtCore/QVector>

#include <cmath>
#include <tuple>

namespace simulator
{

/// One line of the chip's state, as a table shows it.
struct StateItem
{
    QString group; ///< "volume"
    QString name; ///< "main S+FilePlayer"
    QVariant value; ///< 80
};

/// What reaches a listener at one loudspeaker.
struct Sound
{
    double gain = 0; ///< linear, 0 to 1, before the equalizer
    double equalizer = 0; ///< dB, of the band asked for
    double delay = 0; ///< of the loudspeaker, in the unit that setSpeakerDelay() was given
};

/// Automatic calibration of the microphone gain.
enum class Calibration : int {
    Idle, ///< never started
    Running, ///< started
    Applied, ///< the gains found are in use
};

/**
 * Model of the audio chip: its state, what it refuses, and what can be heard.
 *
 * A chip just switched on is silent: master and track volumes are 0, nothing plays, nothing is muted, every channel gain is 100,
 * the outputs are unmasked (0x3F), front/rear mode is 1, the echo-cancelling quality 1, and all else 0, off or unset.
 *
 * The readers answer for any argument: an unknown track or channel reads as silent or unset. What the chip keeps as a float, they
 * give as the shortest decimal number that it is: 4.8.
 *
 * Threads: use it from the thread that calls the platform.
 */
class AudioChip : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // What can be heard -----------------------------------------------------------------------------------------------------

    /**
     * Level that a source on a track has at one loudspeaker while it plays, linear, 0 to 1.
     *
     *     volume/148 × master/100 × duck × channel gain/100
     *
     * with duck = min(gain, 100)/100 on track "main" while the ducking mode is not 0, else 1. It is 0 on a muted track, on a
     * channel outside the track's mask, and for anything unknown. Equalizer and delay stand apart, in effectiveSound().
     *
     * @param channel one output channel bit, 1 to 32
     */
    double effectiveGain(const QString &track, const QString &source, quint32 channel) const;

    /// All of it, with the equalizer's gain in one band (see equalizerGain()).
    Sound effectiveSound(const QString &track, const QString &source, quint32 channel, int band) const;

    /// The same as one level in dB, equalizer included; minus infinity for silence.
    double effectiveGainDb(const QString &track, const QString &source, quint32 channel, int band) const;

    /// Volume of what plays on the main track, 0 to 148, lowered by ducking (rounded down); 0 when muted or nothing plays.
    int effectiveMainVolume() const;

    /// dB of a band (0 to 7, or 0 to 19 after an extended record) of the curve set last, 0 for a band not in use (type 0).
    double equalizerGain(quint32 channel, int band) const;

    // Volumes ---------------------------------------------------------------------------------------------------------------

    int masterVolume() const { return m_state.masterVolume.value; }
    /// 0 until set; on track "alternative" the volume that was set for all of it, until a source got its own again.
    int trackVolume(const QString &track, const QString &source) const;
    int alternativeVolume() const { return m_state.alternativeVolume.value; }
    bool isMuted(const QString &track) const { return m_state.muted.values.value(track); }
    unsigned int duckingMode() const { return m_state.duckingMode.value; }
    int duckingGain() const { return m_state.duckingGain.value; }
    bool isDucked() const { return duckingMode() != 0; }
    int channelGain(quint32 channel) const; ///< percent
    /// The record set last, all zero until then.
    audio::audio_channel_gain_t lastChannelGain() const { return m_state.lastChannelGain; }

    // Routing ---------------------------------------------------------------------------------------------------------------

    /// What plays on a track: null when nothing does.
    QString activeSource(const QString &track) const { return m_state.activeSources.values.value(track); }
    /// By hand, as when a player stops by itself. Null, empty and "S+none" are all kept as they are. False for an unknown track.
    bool setActiveSource(const QString &track, const QString &source);

    /// As routed last; null until then.
    QString outputSource(const QString &track) const { return m_state.outputSources.values.value(track); }
    quint32 outputChannelMask(const QString &track) const { return m_state.outputChannelMasks.values.value(track, isTrack(track) ? allOutputBits : 0); }
    /// Track that setOutputChannelMask() applies to: the one whose output source was set last, "main" until then.
    QString lastRoutedTrack() const { return m_state.lastRoutedTrack; }
    int frontRearMode() const { return m_state.frontRearMode.value; } ///< 0 front only, 1 front and rear
    QString inputDestination(const QString &track) const { return m_state.inputDestinations.values.value(track); } ///< null until set
    int inputSelectPin(int input) const; ///< 0..5; -1 for an input other than 1 and 2

    /// Number that queryAlterNumber() reports: that set by hand, else 1 while something plays on the track, 0 while nothing does.
    int alternativeCount(const QString &track) const;
    void setAlternativeCount(int count) { set(m_state.alternativeCount, count); }

    // Sound processing ------------------------------------------------------------------------------------------------------

    audio::audio_eq_parameter_t lastEqParameter() const { return m_state.equalizer.value.shortRecord; } ///< all zero until set
    audio::audio_ext_eq_parameter_t lastExtEqParameter() const { return m_state.equalizer.value.extendedRecord; } ///< all zero until set
    /// Both, and which of them makes the curve.
    EqualizerRecords equalizerRecords() const { return m_state.equalizer.value; }
    audio::audio_loudness_t lastLoudness() const { return m_state.loudness.value; } ///< all zero until set
    bool isLoudnessOn() const { return lastLoudness().on != 0; }
    /// The filter set last for a channel bit; empty for none.
    std::optional<audio::audio_filter_t> filter(quint32 channel) const;
    double speakerDelay(quint32 channel) const;
    bool isDpsEnabled() const { return m_state.dpsEnabled.value; }
    double dpsUserGain() const { return decimal(m_state.dpsUserGain.value); }
    bool isStereoEnabled() const { return m_state.stereoEnabled.value; }

    // Microphone and voice --------------------------------------------------------------------------------------------------

    double micVolume() const { return decimal(m_state.micVolume.value); }
    std::array<double, 2> micPgaGain() const { return decimals(m_state.micPgaGain); }
    std::array<double, 2> micOpGain() const { return decimals(m_state.micOpGain); }
    std::array<double, 2> micAnalogGain() const { return decimals(m_state.micAnalogGain); }
    Calibration calibration() const { return m_state.calibration.value; }
    std::array<int, 2> calibrationGains() const { return m_state.calibrationGains.value; }
    /// What the next calibrations find.
    void setCalibrationGains(int first, int second) { set(m_state.calibrationGains, std::array{first, second}); }
    bool isDownlinkEstimationStarted() const { return m_state.downlinkEstimationStarted.value; }
    short downlinkDelay() const { return m_state.downlinkDelay.value; }
    /// What the estimation finds.
    void setDownlinkDelay(short delay) { set(m_state.downlinkDelay, delay); }
    int handsfreeDelay() const { return m_state.handsfreeDelay.value; }
    bool isMicLeftRightSwapped() const { return m_state.micLeftRightSwapped.value; }
    int aecQuality() const { return m_state.aecQuality.value; }
    std::array<quint16, 8> microphoneTest() const { return m_state.microphoneTest.value; }
    /// What the self-test reads.
    void setMicrophoneTest(const std::array<quint16, 8> &values) { set(m_state.microphoneTest, values); }

    // As a table ------------------------------------------------------------------------------------------------------------

    /// The whole state in a fixed order, volumes and routes of what was never set left out.
    QVector<StateItem> stateTable() const;

    // What the platform's objects ask of the chip: Accepted, or a Refusal and no change ----------------------------------------

    int setDuckingMode(unsigned int mode) { return set(m_state.duckingMode, mode); }
    int setDuckingTargetGain(unsigned char gain) { return set(m_state.duckingGain, gain); }
    int setMasterVolume(unsigned char volume) { return volume > maximumMasterVolume ? VolumeOutOfRange : set(m_state.masterVolume, volume); }
    int setFadeBalance(const audio::audio_channel_gain_t &gain);
    int setTrackVolume(const QString &track, const QString &source, unsigned char volume);
    /// An unknown track or empty source is refused, as for setTrackVolume().
    int checkTrackAndSource(const QString &track, const QString &source) const;
    int setMute(const QString &track, bool mute);
    int setMicVolume(float volume);
    int setMicPgaGain(float gain, float gainAgain) { return setGains(m_state.micPgaGain, gain, gainAgain); }
    int setMicOpGain(float gain, float gainAgain) { return setGains(m_state.micOpGain, gain, gainAgain); }
    int setMicAnalogGain(float first, float second) { return setGains(m_state.micAnalogGain, first, second); }
    /// Sets the volume of all of the alternative track: volumes of its single sources are forgotten.
    int setAlterTrackVolume(unsigned char volume);
    int startMicGainCalibration() { return set(m_state.calibration, Calibration::Running); }
    int setMicGainCalibration() { return set(m_state.calibration, Calibration::Applied); }
    int setOutputSource(const QString &track, const QString &source);
    int setInputDestination(const QString &track, const QString &destination);
    int setInputSelectPin(int input, int pin);
    int setMicLeftRightSwitch(bool swap) { return set(m_state.micLeftRightSwapped, swap); }
    int setOutputChannelMask(int mask);
    int setHandsfreeDelay(int delay) { return set(m_state.handsfreeDelay, delay); }
    int setFrontRearMode(int mode) { return mode != 0 && mode != 1 ? ModeOutOfRange : set(m_state.frontRearMode, mode); }
    int setFilter(const audio::audio_filter_t &filter);
    int setLoudness(const audio::audio_loudness_t &loudness) { return set(m_state.loudness, loudness); }
    int setEqParameter(const audio::audio_eq_parameter_t &parameter);
    int setExtEqParameter(const audio::audio_ext_eq_parameter_t &parameter);
    int setDpsEnabled(bool enabled) { return set(m_state.dpsEnabled, enabled); }
    int setStereoEnabled(bool enabled) { return set(m_state.stereoEnabled, enabled); }
    int setDpsUserGain(float gain) { return std::isfinite(gain) ? set(m_state.dpsUserGain, gain) : NotFinite; }
    int setSpeakerDelay(int channel, float delay);
    int setAecQuality(int quality) { return quality < 0 || quality > highestAecQuality ? QualityOutOfRange : set(m_state.aecQuality, quality); }
    int startDownlinkDelayEstimation() { return set(m_state.downlinkEstimationStarted, true); }

    /// For the simulator itself.
    void reset();

Q_SIGNALS:
    /// One item of the state really changed; the names are those of stateTable(). An invalid value: no longer set.
    void changed(const QString &group, const QString &name, const QVariant &value);
    /// Everything may be different.
    void wasReset();

private:
    static constexpr int maximumMasterVolume = 100;
    static constexpr int highestAecQuality = 2;

    using Pair = ChipValue<std::array<float, 2>>;

    /// Everything that a reset brings back.
    struct State
    {
        ChipValue<int> masterVolume = {"volume", "master"};
        ChipMap<QPair<QString, QString>, std::optional<int>> trackVolumes = {"volume"};
        ChipValue<int> alternativeVolume = {"volume", "all of alternative"};
        ChipMap<QString, bool> muted = {"mute"};
        ChipValue<unsigned int> duckingMode = {"ducking", "mode"};
        ChipValue<int> duckingGain = {"ducking", "gain"};
        ChipRow<int, gainChannelCount> channelGains = {"channel gain", {100, 100, 100, 100}};

        ChipMap<QString, QString> activeSources = {"active source"};
        ChipMap<QString, QString> outputSources = {"output source"};
        ChipMap<QString, quint32> outputChannelMasks = {"output channels"};
        ChipValue<int> frontRearMode = {"routing", "front/rear mode", 1};
        ChipValue<std::optional<int>> alternativeCount = {"routing", "alternative count"};
        ChipMap<QString, QString> inputDestinations = {"input destination"};
        ChipValue<int> auxiliaryPin = {"input pin", "1"};
        ChipValue<int> i2sPin = {"input pin", "2"};

        ChipValue<EqualizerRecords> equalizer = {"processing", "equalizer"};
        ChipValue<audio::audio_loudness_t> loudness = {"processing", "loudness"};
        ChipValue<bool> dpsEnabled = {"processing", "dps"};
        ChipValue<float> dpsUserGain = {"processing", "dps user gain"};
        ChipValue<bool> stereoEnabled = {"processing", "stereo"};
        ChipRow<std::optional<audio::audio_filter_t>> filters = {"filter"};
        ChipRow<float> speakerDelays = {"speaker delay"};

        ChipValue<float> micVolume = {"microphone", "volume"};
        Pair micPgaGain = {"microphone", "pga gain"};
        Pair micOpGain = {"microphone", "op gain"};
        Pair micAnalogGain = {"microphone", "analog gain"};
        ChipValue<Calibration> calibration = {"microphone", "calibration"};
        ChipValue<std::array<int, 2>> calibrationGains = {"microphone", "calibration gains"};
        ChipValue<bool> micLeftRightSwapped = {"microphone", "left/right swapped"};
        ChipValue<std::array<quint16, 8>> microphoneTest = {"microphone", "test values"};
        ChipValue<int> aecQuality = {"voice", "aec quality", 1};
        ChipValue<int> handsfreeDelay = {"voice", "handsfree delay"};
        ChipValue<bool> downlinkEstimationStarted = {"voice", "downlink estimation started"};
        ChipValue<short> downlinkDelay = {"voice", "downlink delay"};

        /// The values that the table shows, in its order.
        auto items() const
        {
            return std::tie(masterVolume,
                            trackVolumes,
                            alternativeVolume,
                            muted,
                            duckingMode,
                            duckingGain,
                            channelGains,
                            activeSources,
                            outputSources,
                            outputChannelMasks,
                            frontRearMode,
                            alternativeCount,
                            inputDestinations,
                            auxiliaryPin,
                            i2sPin,
                            equalizer,
                            loudness,
                            dpsEnabled,
                            dpsUserGain,
                            stereoEnabled,
                            filters,
                            speakerDelays,
                            micVolume,
                            micPgaGain,
                            micOpGain,
                            micAnalogGain,
                            calibration,
                            calibrationGains,
                            micLeftRightSwapped,
                            microphoneTest,
                            aecQuality,
                            handsfreeDelay,
                            downlinkEstimationStarted,
                            downlinkDelay);
        }

        audio::audio_channel_gain_t lastChannelGain = {};
        QString lastRoutedTrack = QStringLiteral("main");
    };

    static std::array<double, 2> decimals(const Pair &pair) { return {decimal(pair.value[0]), decimal(pair.value[1])}; }

    /// Makes the change and tells of it, if it is one.
    template<typename Value, typename NewValue>
    Refusal set(ChipValue<Value> &item, const NewValue &value)
    {
        return change(item.value, static_cast<Value>(value), item.group, QLatin1String(item.name));
    }

    template<typename Value, std::size_t count, typename NewValue>
    Refusal set(ChipRow<Value, count> &row, std::size_t channel, const NewValue &value)
    {
        return change(row.values[channel], static_cast<Value>(value), row.group, QLatin1String(outputChannels[channel].name));
    }

    template<typename Value, typename NewValue>
    Refusal setChannels(ChipRow<Value> &row, quint32 mask, const NewValue &value)
    {
        for (std::size_t channel = 0; channel < outputChannels.size(); ++channel) {
            if ((mask & outputChannels[channel].bit) != 0)
                set(row, channel, value);
        }
        return Accepted;
    }

    template<typename Key, typename Value, typename NewValue>
    Refusal set(ChipMap<Key, Value> &map, const Key &key, const NewValue &value)
    {
        return change(map.values[key], static_cast<Value>(value), map.group, itemName(key));
    }

    Refusal setGains(Pair &pair, float first, float second)
    {
        return std::isfinite(first) && std::isfinite(second) ? set(pair, std::array{first, second}) : NotFinite;
    }

    template<typename Value>
    Refusal change(Value &current, const Value &value, const char *group, const QString &name)
    {
        if (!isSame(current, value)) {
            current = value;
            tell(group, name, shown(value));
        }
        return Accepted;
    }

    void tell(const char *group, const QString &name, const QVariant &value) { Q_EMIT changed(QLatin1String(group), name, value); }

    State m_state;
};

} // namespace simulator

Q_DECLARE_METATYPE(simulator::StateItem)

#endif
