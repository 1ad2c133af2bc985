#include "audiochip_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

// What can be heard, and the volumes. Routing, sound processing and microphone have files of their own.

namespace simulator
{

namespace
{

constexpr int maximumTrackVolume = 148;
constexpr int maximumMasterVolume = 100;
constexpr int maximumChannelGain = 100;
constexpr int maximumDuckingGain = 100; ///< full level; beyond it nothing gets louder

const QLatin1String mainTrack("main");
const QLatin1String alternativeTrack("alternative");

} // namespace

QString volumeName(const QString &track, const QString &source)
{
    return track + QLatin1Char(' ') + source;
}

QString channelName(int index)
{
    return QLatin1String(outputChannels[static_cast<std::size_t>(index)].name);
}

int channelIndex(quint32 channel)
{
    for (std::size_t index = 0; index < outputChannels.size(); ++index) {
        if (outputChannels[index].bit == channel)
            return static_cast<int>(index);
    }
    return -1;
}

bool isChannelMask(quint32 mask)
{
    return mask == everyOutput || (mask != 0 && (mask & ~allOutputBits) == 0);
}

bool isFinite(float value)
{
    return std::isfinite(value);
}

QVariant pairVariant(const std::array<float, 2> &pair)
{
    return QVariantList{pair[0], pair[1]};
}

QVariant pairVariant(const std::array<int, 2> &pair)
{
    return QVariantList{pair[0], pair[1]};
}

AudioChip::AudioChip(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<AudioChipPrivate>(this))
{
}

AudioChip::~AudioChip() = default;

void AudioChip::reset()
{
    d->state = AudioChipState();
    Q_EMIT wasReset();
}

double AudioChip::effectiveGain(const QString &track, const QString &source, quint32 channel) const
{
    const bool isSilent = channelIndex(channel) < 0 || isMuted(track) || (outputChannelMask(track) & channel) == 0;
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

int AudioChip::masterVolume() const
{
    return d->state.masterVolume;
}

int AudioChip::trackVolume(const QString &track, const QString &source) const
{
    return d->state.trackVolumes.value({track, source}, track == alternativeTrack ? d->state.alternativeVolume : 0);
}

int AudioChip::alternativeVolume() const
{
    return d->state.alternativeVolume;
}

bool AudioChip::isMuted(const QString &track) const
{
    return d->state.muted.value(track);
}

unsigned int AudioChip::duckingMode() const
{
    return d->state.duckingMode;
}

int AudioChip::duckingGain() const
{
    return d->state.duckingGain;
}

bool AudioChip::isDucked() const
{
    return d->state.duckingMode != 0;
}

int AudioChip::channelGain(quint32 channel) const
{
    const int index = channelIndex(channel);
    return index < 0 ? 0 : d->state.channelGains[static_cast<std::size_t>(index)];
}

audio::audio_channel_gain_t AudioChip::lastChannelGain() const
{
    return d->state.lastChannelGain;
}

int AudioChip::setDuckingMode(unsigned int mode)
{
    return d->assign(d->state.duckingMode, mode, "ducking", QStringLiteral("mode"), mode);
}

int AudioChip::setDuckingTargetGain(unsigned char gain)
{
    return d->assign(d->state.duckingGain, gain, "ducking", QStringLiteral("gain"), int(gain));
}

int AudioChip::setMasterVolume(unsigned char volume)
{
    if (volume > maximumMasterVolume)
        return VolumeOutOfRange;
    return d->assign(d->state.masterVolume, volume, "volume", QStringLiteral("master"), int(volume));
}

int AudioChip::setFadeBalance(const audio::audio_channel_gain_t &gain)
{
    const int index = channelIndex(gain.channel);
    if (index < 0 || !outputChannels[static_cast<std::size_t>(index)].hasGain)
        return UnknownChannel;
    if (gain.gain > maximumChannelGain)
        return GainOutOfRange;
    d->state.lastChannelGain = gain;
    return d->assign(d->state.channelGains[static_cast<std::size_t>(index)], gain.gain, "channel gain", channelName(index), int(gain.gain));
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
    if (volume > maximumTrackVolume)
        return VolumeOutOfRange;
    const QPair<QString, QString> key(track, source);
    const bool isUnchanged = d->state.trackVolumes.contains(key) && d->state.trackVolumes.value(key) == volume;
    if (!isUnchanged) {
        d->state.trackVolumes.insert(key, volume);
        d->tell("volume", volumeName(track, source), int(volume));
    }
    return Accepted;
}

int AudioChip::setAlterTrackVolume(unsigned char volume)
{
    if (volume > maximumTrackVolume)
        return VolumeOutOfRange;
    const QList<QPair<QString, QString>> keys = d->state.trackVolumes.keys();
    for (const QPair<QString, QString> &key : keys) {
        if (key.first == alternativeTrack) {
            d->state.trackVolumes.remove(key);
            d->tell("volume", volumeName(key.first, key.second), QVariant());
        }
    }
    return d->assign(d->state.alternativeVolume, volume, "volume", QStringLiteral("all of alternative"), int(volume));
}

int AudioChip::setMute(const QString &track, bool mute)
{
    if (!isTrack(track))
        return UnknownTrack;
    return d->assign(d->state.muted[track], mute, "mute", track, mute);
}

} // namespace simulator
