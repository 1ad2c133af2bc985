#ifndef AUDIOCHIP_H
#define AUDIOCHIP_H

#include "refusal.h"

#include <qzaudio/audioplatformrecords.h>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <array>
#include <memory>
#include <optional>

namespace simulator
{

struct AudioChipPrivate;

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
 * The readers answer for any argument: an unknown track or channel reads as silent or unset.
 *
 * Threads: use it from the thread that calls the platform.
 */
class AudioChip : public QObject
{
    Q_OBJECT

public:
    explicit AudioChip(QObject *parent = nullptr);
    ~AudioChip() override;

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

    int masterVolume() const;
    /// 0 until set; on track "alternative" the volume that was set for all of it, until a source got its own again.
    int trackVolume(const QString &track, const QString &source) const;
    int alternativeVolume() const;
    bool isMuted(const QString &track) const;
    unsigned int duckingMode() const;
    int duckingGain() const;
    bool isDucked() const; ///< the ducking mode is not 0
    int channelGain(quint32 channel) const; ///< percent
    /// The record set last, all zero until then.
    audio::audio_channel_gain_t lastChannelGain() const;

    // Routing ---------------------------------------------------------------------------------------------------------------

    /// What plays on a track: null when nothing does.
    QString activeSource(const QString &track) const;
    /// By hand, as when a player stops by itself. Null, empty and "S+none" are all kept as they are. False for an unknown track.
    bool setActiveSource(const QString &track, const QString &source);

    QString outputSource(const QString &track) const; ///< as routed last; null until then
    quint32 outputChannelMask(const QString &track) const;
    /// Track that setOutputChannelMask() applies to: the one whose output source was set last, "main" until then.
    QString lastRoutedTrack() const;
    int frontRearMode() const; ///< 0 front only, 1 front and rear
    QString inputDestination(const QString &track) const; ///< null until set
    int inputSelectPin(int input) const; ///< 0..5; -1 for an input other than 1 and 2

    /// Number that queryAlterNumber() reports: that set by hand, else 1 while something plays on the track, 0 while nothing does.
    int alternativeCount(const QString &track) const;
    void setAlternativeCount(int count);

    // Sound processing ------------------------------------------------------------------------------------------------------

    audio::audio_eq_parameter_t lastEqParameter() const; ///< all zero until set
    audio::audio_ext_eq_parameter_t lastExtEqParameter() const; ///< all zero until set
    audio::audio_loudness_t lastLoudness() const; ///< all zero until set
    bool isLoudnessOn() const;
    /// The filter set last for a channel bit; empty for none.
    std::optional<audio::audio_filter_t> filter(quint32 channel) const;
    double speakerDelay(quint32 channel) const;
    bool isDpsEnabled() const;
    double dpsUserGain() const;
    bool isStereoEnabled() const;

    // Microphone and voice --------------------------------------------------------------------------------------------------

    double micVolume() const;
    std::array<double, 2> micPgaGain() const;
    std::array<double, 2> micOpGain() const;
    std::array<double, 2> micAnalogGain() const;
    Calibration calibration() const;
    std::array<int, 2> calibrationGains() const;
    /// What the next calibrations find.
    void setCalibrationGains(int first, int second);
    bool isDownlinkEstimationStarted() const;
    short downlinkDelay() const;
    /// What the estimation finds.
    void setDownlinkDelay(short delay);
    int handsfreeDelay() const;
    bool isMicLeftRightSwapped() const;
    int aecQuality() const;
    std::array<quint16, 8> microphoneTest() const;
    /// What the self-test reads.
    void setMicrophoneTest(const std::array<quint16, 8> &values);

    // As a table ------------------------------------------------------------------------------------------------------------

    /// The whole state in a fixed order, volumes and routes of what was never set left out.
    QVector<StateItem> stateTable() const;

    // What the platform's objects ask of the chip: Accepted, or a Refusal and no change ----------------------------------------

    int setDuckingMode(unsigned int mode);
    int setDuckingTargetGain(unsigned char gain);
    int setMasterVolume(unsigned char volume);
    int setFadeBalance(const audio::audio_channel_gain_t &gain);
    int setTrackVolume(const QString &track, const QString &source, unsigned char volume);
    /// An unknown track or empty source is refused, as for setTrackVolume().
    int checkTrackAndSource(const QString &track, const QString &source) const;
    int setMute(const QString &track, bool mute);
    int setMicVolume(float volume);
    int setMicPgaGain(float gain, float gainAgain);
    int setMicOpGain(float gain, float gainAgain);
    int setMicAnalogGain(float first, float second);
    /// Sets the volume of all of the alternative track: volumes of its single sources are forgotten.
    int setAlterTrackVolume(unsigned char volume);
    int startMicGainCalibration();
    int setMicGainCalibration();
    int setOutputSource(const QString &track, const QString &source);
    int setInputDestination(const QString &track, const QString &destination);
    int setInputSelectPin(int input, int pin);
    int setMicLeftRightSwitch(bool swap);
    int setOutputChannelMask(int mask);
    int setHandsfreeDelay(int delay);
    int setFrontRearMode(int mode);
    int setFilter(const audio::audio_filter_t &filter);
    int setLoudness(const audio::audio_loudness_t &loudness);
    int setEqParameter(const audio::audio_eq_parameter_t &parameter);
    int setExtEqParameter(const audio::audio_ext_eq_parameter_t &parameter);
    int setDpsEnabled(bool enabled);
    int setStereoEnabled(bool enabled);
    int setDpsUserGain(float gain);
    int setSpeakerDelay(int channel, float delay);
    int setAecQuality(int quality);
    int startDownlinkDelayEstimation();

    /// For the simulator itself.
    void reset();

Q_SIGNALS:
    /// One item of the state really changed; the names are those of stateTable(). An invalid value: no longer set.
    void changed(const QString &group, const QString &name, const QVariant &value);
    /// Everything may be different.
    void wasReset();

private:
    const std::unique_ptr<AudioChipPrivate> d;
};

} // namespace simulator

Q_DECLARE_METATYPE(simulator::StateItem)

#endif
