#ifndef VOLUMEOBJECT_H
#define VOLUMEOBJECT_H

#include "bookedobject.h"

#include <spaudiosetting.h>

#include <QtCore/QObject>

namespace simulator
{

/// The platform's Volume on the simulated chip.
class VolumeObject final : public audio::SPAudioSetting::Volume, public BookedObject
{
    Q_GADGET

public:
    static constexpr ObjectKind staticKind = ObjectKind::Volume;

    VolumeObject()
        : BookedObject(staticKind)
    {
    }

public Q_SLOTS:
    int setDuckingMode(unsigned int mode) override { return call(__func__, &AudioChip::setDuckingMode, mode); }
    int setDuckingTargetGain(unsigned char gain) override { return call(__func__, &AudioChip::setDuckingTargetGain, gain); }
    int setMasterVolume(unsigned char volume) override { return call(__func__, &AudioChip::setMasterVolume, volume); }
    int getMasterVolume(unsigned char *volume, int zero) override
    {
        const auto read = [](const AudioChip &chip, unsigned char *out, int) {
            *out = static_cast<unsigned char>(chip.masterVolume());
            return Accepted;
        };
        return call(__func__, read, volume, zero);
    }
    int setFadeBalance(audio::audio_channel_gain_t *gain) override { return call(__func__, &AudioChip::setFadeBalance, gain); }
    int setTrackVolume(const char *track, const char *source, unsigned char volume) override
    {
        return call(__func__, &AudioChip::setTrackVolume, track, source, volume);
    }
    int getTrackVolume(const char *track, const char *source, unsigned char *volume) override
    {
        const auto read = [](const AudioChip &chip, const QString &trackName, const QString &sourceName, unsigned char *out) {
            const int refusal = chip.checkTrackAndSource(trackName, sourceName);
            if (refusal == Accepted)
                *out = static_cast<unsigned char>(chip.trackVolume(trackName, sourceName));
            return refusal;
        };
        return call(__func__, read, track, source, volume);
    }
    int muteTrack(const char *track, int zero) override
    {
        return call(
            __func__, [](AudioChip &chip, const QString &name, int) { return chip.setMute(name, true); }, track, zero);
    }
    int unmuteTrack(const char *track, int zero) override
    {
        return call(
            __func__, [](AudioChip &chip, const QString &name, int) { return chip.setMute(name, false); }, track, zero);
    }
    int setMicVolume(float volume) override { return call(__func__, &AudioChip::setMicVolume, volume); }
    int setMicPgaGain(int zero, float gain, float gainAgain) override
    {
        return call(
            __func__, [](AudioChip &chip, int, float one, float other) { return chip.setMicPgaGain(one, other); }, zero, gain, gainAgain);
    }
    int setMicOpGain(int zero, float gain, float gainAgain) override
    {
        return call(
            __func__, [](AudioChip &chip, int, float one, float other) { return chip.setMicOpGain(one, other); }, zero, gain, gainAgain);
    }
    int setMicAnalogGain(float first, float second) override { return call(__func__, &AudioChip::setMicAnalogGain, first, second); }
    int getMicAnalogGain(float *first, float *second) override
    {
        const auto read = [](const AudioChip &chip, float *firstOut, float *secondOut) {
            *firstOut = static_cast<float>(chip.micAnalogGain()[0]);
            *secondOut = static_cast<float>(chip.micAnalogGain()[1]);
            return Accepted;
        };
        return call(__func__, read, first, second);
    }
    int setAlterTrackVolume(unsigned char volume) override { return call(__func__, &AudioChip::setAlterTrackVolume, volume); }
    int startMicGainCalibration() override { return call(__func__, &AudioChip::startMicGainCalibration); }
    int setMicGainCalibration() override { return call(__func__, &AudioChip::setMicGainCalibration); }
    int getMicCalibrationGain(int *first, int *second) override
    {
        const auto read = [](const AudioChip &chip, int *firstOut, int *secondOut) {
            *firstOut = chip.calibrationGains()[0];
            *secondOut = chip.calibrationGains()[1];
            return Accepted;
        };
        return call(__func__, read, first, second);
    }
};

} // namespace simulator

#endif
