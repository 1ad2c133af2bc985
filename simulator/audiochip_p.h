#ifndef AUDIOCHIP_P_H
#define AUDIOCHIP_P_H

#include "audiochip.h"
#include "tracks.h"

#include <QtCore/QMap>
#include <QtCore/QPair>

namespace simulator
{

/// Inputs that a pin can be selected for: 1 the auxiliary one, 2 I2S.
constexpr int firstInput = 1;
constexpr int inputCount = 2;

constexpr bool isInput(int input)
{
    return input >= firstInput && input < firstInput + inputCount;
}

/// Everything that a reset brings back.
struct AudioChipState
{
    int masterVolume = 0;
    QMap<QPair<QString, QString>, int> trackVolumes; ///< by track and source
    int alternativeVolume = 0;
    QMap<QString, bool> muted; ///< by track
    unsigned int duckingMode = 0;
    int duckingGain = 0;
    std::array<int, outputChannels.size()> channelGains = {100, 100, 100, 100, 100, 100};
    audio::audio_channel_gain_t lastChannelGain = {};

    QMap<QString, QString> activeSources; ///< by track
    QMap<QString, QString> outputSources; ///< by track
    QMap<QString, quint32> outputChannelMasks; ///< by track
    QString lastRoutedTrack = QStringLiteral("main");
    int frontRearMode = 1;
    QMap<QString, QString> inputDestinations; ///< by track
    std::array<int, inputCount> inputPins = {};
    std::optional<int> alternativeCount;

    enum class Curve { None, Short, Extended };
    Curve curve = Curve::None; ///< the equalizer record that was set last
    audio::audio_eq_parameter_t eqParameter = {};
    audio::audio_ext_eq_parameter_t extEqParameter = {};
    audio::audio_loudness_t loudness = {};
    std::array<std::optional<audio::audio_filter_t>, outputChannels.size()> filters;
    std::array<float, outputChannels.size()> speakerDelays = {};
    bool dpsEnabled = false;
    float dpsUserGain = 0;
    bool stereoEnabled = false;

    float micVolume = 0;
    std::array<float, 2> micPgaGain = {};
    std::array<float, 2> micOpGain = {};
    std::array<float, 2> micAnalogGain = {};
    Calibration calibration = Calibration::Idle;
    std::array<int, 2> calibrationGains = {};
    bool downlinkEstimationStarted = false;
    short downlinkDelay = 0;
    int handsfreeDelay = 0;
    bool micLeftRightSwapped = false;
    int aecQuality = 1;
    std::array<quint16, 8> microphoneTest = {};
};

struct AudioChipPrivate
{
    explicit AudioChipPrivate(AudioChip *chip)
        : q(chip)
    {
    }

    AudioChip *const q;
    AudioChipState state;

    /// Makes the change and tells of it, if it is one. Always Accepted.
    template<typename Value, typename NewValue>
    int assign(Value &current, const NewValue &value, const char *group, const QString &name, const QVariant &shown)
    {
        if (current == static_cast<Value>(value))
            return Accepted;
        current = static_cast<Value>(value);
        tell(group, name, shown);
        return Accepted;
    }

    void tell(const char *group, const QString &name, const QVariant &value) const { Q_EMIT q->changed(QString::fromLatin1(group), name, value); }
};

/// Place of a channel bit in the tables, -1 for anything but one of the six bits.
int channelIndex(quint32 channel);

/// Six channels, or a selection of them, or all.
bool isChannelMask(quint32 mask);

/// Names of state items.
QString volumeName(const QString &track, const QString &source);
QString channelName(int index);

/// Gains in dB of the curve in force, one per band.
QVariant equalizerVariant(const AudioChipState &state);

QVariant pairVariant(const std::array<float, 2> &pair);
QVariant pairVariant(const std::array<int, 2> &pair);

bool isFinite(float value);

} // namespace simulator

#endif
