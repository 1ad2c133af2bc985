#include "volumeobject.h"

#include "audiochip.h"
#include "call.h"

namespace simulator
{

VolumeObject::VolumeObject()
    : BookedObject(staticKind)
{
}

int VolumeObject::setDuckingMode(unsigned int mode)
{
    return Call(*this, Operation::SetDuckingMode).with(mode).run([mode](AudioChip &chip) { return chip.setDuckingMode(mode); });
}

int VolumeObject::setDuckingTargetGain(unsigned char gain)
{
    return Call(*this, Operation::SetDuckingTargetGain).with(gain).run([gain](AudioChip &chip) { return chip.setDuckingTargetGain(gain); });
}

int VolumeObject::setMasterVolume(unsigned char volume)
{
    return Call(*this, Operation::SetMasterVolume).with(volume).run([volume](AudioChip &chip) { return chip.setMasterVolume(volume); });
}

int VolumeObject::getMasterVolume(unsigned char *volume, int zero)
{
    Call call(*this, Operation::GetMasterVolume);
    return call.with(zero).run([&call, volume](AudioChip &chip) -> int {
        if (!volume)
            return NullPointer;
        *volume = static_cast<unsigned char>(chip.masterVolume());
        call.output(int(*volume));
        return Accepted;
    });
}

int VolumeObject::setFadeBalance(audio::audio_channel_gain_t *gain)
{
    return Call(*this, Operation::SetFadeBalance).withRecord(gain).run([gain](AudioChip &chip) -> int {
        return !gain ? NullPointer : chip.setFadeBalance(*gain);
    });
}

int VolumeObject::setTrackVolume(const char *track, const char *source, unsigned char volume)
{
    const QString trackName = nameFromPlatform(track);
    const QString sourceName = nameFromPlatform(source);
    return Call(*this, Operation::SetTrackVolume).with(trackName).with(sourceName).with(volume).run([&trackName, &sourceName, volume](AudioChip &chip) {
        return chip.setTrackVolume(trackName, sourceName, volume);
    });
}

int VolumeObject::getTrackVolume(const char *track, const char *source, unsigned char *volume)
{
    const QString trackName = nameFromPlatform(track);
    const QString sourceName = nameFromPlatform(source);
    Call call(*this, Operation::GetTrackVolume);
    return call.with(trackName).with(sourceName).run([&call, &trackName, &sourceName, volume](AudioChip &chip) -> int {
        if (!volume)
            return NullPointer;
        if (const int refusal = chip.checkTrackAndSource(trackName, sourceName))
            return refusal;
        *volume = static_cast<unsigned char>(chip.trackVolume(trackName, sourceName));
        call.output(int(*volume));
        return Accepted;
    });
}

int VolumeObject::muteTrack(const char *track, int zero)
{
    const QString trackName = nameFromPlatform(track);
    return Call(*this, Operation::MuteTrack).with(trackName).with(zero).run([&trackName](AudioChip &chip) { return chip.setMute(trackName, true); });
}

int VolumeObject::unmuteTrack(const char *track, int zero)
{
    const QString trackName = nameFromPlatform(track);
    return Call(*this, Operation::UnmuteTrack).with(trackName).with(zero).run([&trackName](AudioChip &chip) { return chip.setMute(trackName, false); });
}

int VolumeObject::setMicVolume(float volume)
{
    return Call(*this, Operation::SetMicVolume).with(volume).run([volume](AudioChip &chip) { return chip.setMicVolume(volume); });
}

int VolumeObject::setMicPgaGain(int zero, float gain, float gainAgain)
{
    return Call(*this, Operation::SetMicPgaGain).with(zero).with(gain).with(gainAgain).run([gain, gainAgain](AudioChip &chip) {
        return chip.setMicPgaGain(gain, gainAgain);
    });
}

int VolumeObject::setMicOpGain(int zero, float gain, float gainAgain)
{
    return Call(*this, Operation::SetMicOpGain).with(zero).with(gain).with(gainAgain).run([gain, gainAgain](AudioChip &chip) {
        return chip.setMicOpGain(gain, gainAgain);
    });
}

int VolumeObject::setMicAnalogGain(float first, float second)
{
    return Call(*this, Operation::SetMicAnalogGain).with(first).with(second).run([first, second](AudioChip &chip) {
        return chip.setMicAnalogGain(first, second);
    });
}

int VolumeObject::getMicAnalogGain(float *first, float *second)
{
    Call call(*this, Operation::GetMicAnalogGain);
    return call.run([&call, first, second](AudioChip &chip) -> int {
        if (!first || !second)
            return NullPointer;
        *first = static_cast<float>(chip.micAnalogGain()[0]);
        *second = static_cast<float>(chip.micAnalogGain()[1]);
        call.output(*first);
        call.output(*second);
        return Accepted;
    });
}

int VolumeObject::setAlterTrackVolume(unsigned char volume)
{
    return Call(*this, Operation::SetAlterTrackVolume).with(volume).run([volume](AudioChip &chip) { return chip.setAlterTrackVolume(volume); });
}

int VolumeObject::startMicGainCalibration()
{
    return Call(*this, Operation::StartMicGainCalibration).run([](AudioChip &chip) { return chip.startMicGainCalibration(); });
}

int VolumeObject::setMicGainCalibration()
{
    return Call(*this, Operation::SetMicGainCalibration).run([](AudioChip &chip) { return chip.setMicGainCalibration(); });
}

int VolumeObject::getMicCalibrationGain(int *first, int *second)
{
    Call call(*this, Operation::GetMicCalibrationGain);
    return call.run([&call, first, second](AudioChip &chip) -> int {
        if (!first || !second)
            return NullPointer;
        *first = chip.calibrationGains()[0];
        *second = chip.calibrationGains()[1];
        call.output(*first);
        call.output(*second);
        return Accepted;
    });
}

} // namespace simulator
