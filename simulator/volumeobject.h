#ifndef VOLUMEOBJECT_H
#define VOLUMEOBJECT_H

#include "bookedobject.h"

#include <spaudiosetting.h>

namespace simulator
{

/// The platform's Volume on the simulated chip.
class VolumeObject final : public audio::SPAudioSetting::Volume, public BookedObject
{
public:
    static constexpr ObjectKind staticKind = ObjectKind::Volume;

    VolumeObject();

    int setDuckingMode(unsigned int mode) override;
    int setDuckingTargetGain(unsigned char gain) override;
    int setMasterVolume(unsigned char volume) override;
    int getMasterVolume(unsigned char *volume, int zero) override;
    int setFadeBalance(audio::audio_channel_gain_t *gain) override;
    int setTrackVolume(const char *track, const char *source, unsigned char volume) override;
    int getTrackVolume(const char *track, const char *source, unsigned char *volume) override;
    int muteTrack(const char *track, int zero) override;
    int unmuteTrack(const char *track, int zero) override;
    int setMicVolume(float volume) override;
    int setMicPgaGain(int zero, float gain, float gainAgain) override;
    int setMicOpGain(int zero, float gain, float gainAgain) override;
    int setMicAnalogGain(float first, float second) override;
    int getMicAnalogGain(float *first, float *second) override;
    int setAlterTrackVolume(unsigned char volume) override;
    int startMicGainCalibration() override;
    int setMicGainCalibration() override;
    int getMicCalibrationGain(int *first, int *second) override;
};

} // namespace simulator

#endif
