#include "audiochip_p.h"

namespace simulator
{

namespace
{

constexpr float maximumMicVolume = 91;
constexpr int highestAecQuality = 2;

std::array<double, 2> widened(const std::array<float, 2> &pair)
{
    return {pair[0], pair[1]};
}

} // namespace

double AudioChip::micVolume() const
{
    return d->state.micVolume;
}

std::array<double, 2> AudioChip::micPgaGain() const
{
    return widened(d->state.micPgaGain);
}

std::array<double, 2> AudioChip::micOpGain() const
{
    return widened(d->state.micOpGain);
}

std::array<double, 2> AudioChip::micAnalogGain() const
{
    return widened(d->state.micAnalogGain);
}

Calibration AudioChip::calibration() const
{
    return d->state.calibration;
}

std::array<int, 2> AudioChip::calibrationGains() const
{
    return d->state.calibrationGains;
}

void AudioChip::setCalibrationGains(int first, int second)
{
    const std::array<int, 2> gains = {first, second};
    d->assign(d->state.calibrationGains, gains, "microphone", QStringLiteral("calibration gains"), pairVariant(gains));
}

bool AudioChip::isDownlinkEstimationStarted() const
{
    return d->state.downlinkEstimationStarted;
}

short AudioChip::downlinkDelay() const
{
    return d->state.downlinkDelay;
}

void AudioChip::setDownlinkDelay(short delay)
{
    d->assign(d->state.downlinkDelay, delay, "voice", QStringLiteral("downlink delay"), int(delay));
}

int AudioChip::handsfreeDelay() const
{
    return d->state.handsfreeDelay;
}

bool AudioChip::isMicLeftRightSwapped() const
{
    return d->state.micLeftRightSwapped;
}

int AudioChip::aecQuality() const
{
    return d->state.aecQuality;
}

std::array<quint16, 8> AudioChip::microphoneTest() const
{
    return d->state.microphoneTest;
}

void AudioChip::setMicrophoneTest(const std::array<quint16, 8> &values)
{
    QVariantList shown;
    for (const quint16 value : values)
        shown += int(value);
    d->assign(d->state.microphoneTest, values, "microphone", QStringLiteral("test values"), shown);
}

int AudioChip::setMicVolume(float volume)
{
    if (!isFinite(volume))
        return NotFinite;
    if (volume < 0 || volume > maximumMicVolume)
        return VolumeOutOfRange;
    return d->assign(d->state.micVolume, volume, "microphone", QStringLiteral("volume"), volume);
}

int AudioChip::setMicPgaGain(float gain, float gainAgain)
{
    if (!isFinite(gain) || !isFinite(gainAgain))
        return NotFinite;
    const std::array<float, 2> gains = {gain, gainAgain};
    return d->assign(d->state.micPgaGain, gains, "microphone", QStringLiteral("pga gain"), pairVariant(gains));
}

int AudioChip::setMicOpGain(float gain, float gainAgain)
{
    if (!isFinite(gain) || !isFinite(gainAgain))
        return NotFinite;
    const std::array<float, 2> gains = {gain, gainAgain};
    return d->assign(d->state.micOpGain, gains, "microphone", QStringLiteral("op gain"), pairVariant(gains));
}

int AudioChip::setMicAnalogGain(float first, float second)
{
    if (!isFinite(first) || !isFinite(second))
        return NotFinite;
    const std::array<float, 2> gains = {first, second};
    return d->assign(d->state.micAnalogGain, gains, "microphone", QStringLiteral("analog gain"), pairVariant(gains));
}

int AudioChip::startMicGainCalibration()
{
    return d->assign(d->state.calibration, Calibration::Running, "microphone", QStringLiteral("calibration"), static_cast<int>(Calibration::Running));
}

int AudioChip::setMicGainCalibration()
{
    return d->assign(d->state.calibration, Calibration::Applied, "microphone", QStringLiteral("calibration"), static_cast<int>(Calibration::Applied));
}

int AudioChip::setMicLeftRightSwitch(bool swap)
{
    return d->assign(d->state.micLeftRightSwapped, swap, "microphone", QStringLiteral("left/right swapped"), swap);
}

int AudioChip::setHandsfreeDelay(int delay)
{
    return d->assign(d->state.handsfreeDelay, delay, "voice", QStringLiteral("handsfree delay"), delay);
}

int AudioChip::setAecQuality(int quality)
{
    if (quality < 0 || quality > highestAecQuality)
        return QualityOutOfRange;
    return d->assign(d->state.aecQuality, quality, "voice", QStringLiteral("aec quality"), quality);
}

int AudioChip::startDownlinkDelayEstimation()
{
    return d->assign(d->state.downlinkEstimationStarted, true, "voice", QStringLiteral("downlink estimation started"), true);
}

} // namespace simulator
