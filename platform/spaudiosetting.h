#ifndef SPAUDIOSETTING_H
#define SPAUDIOSETTING_H

#include <qzaudio/audioplatformrecords.h>

/**
 * The platform's closed audio-setting library, as far as this system calls it.
 *
 * The order of the operations is the order of the vendor's tables of virtual operations: never sort them. Each class has no
 * other virtual function, its destructor included, so that its first operation is the first entry of the table; objects are
 * released with destroy(), never with delete. The vendor's own header, with the operations that this system never calls in
 * their places, stands in for this one when the library is built for the head unit.
 *
 * Every operation gives 0 on success and any other value on failure, except where noted. Track and source names are plain
 * 8-bit strings. Track volumes run from 0 to 148, the master volume from 0 to 100.
 */
namespace audio
{
namespace SPAudioSetting
{

class Volume
{
public:
    virtual int setDuckingMode(unsigned int mode) = 0;
    virtual int setDuckingTargetGain(unsigned char gain) = 0;
    virtual int setMasterVolume(unsigned char volume) = 0;
    virtual int getMasterVolume(unsigned char *volume, int zero) = 0;
    virtual int setFadeBalance(audio::audio_channel_gain_t *gain) = 0;
    virtual int setTrackVolume(const char *track, const char *source, unsigned char volume) = 0;
    virtual int getTrackVolume(const char *track, const char *source, unsigned char *volume) = 0;
    virtual int muteTrack(const char *track, int zero) = 0;
    virtual int unmuteTrack(const char *track, int zero) = 0;
    virtual int setMicVolume(float volume) = 0;
    virtual int setMicPgaGain(int zero, float gain, float gainAgain) = 0;
    virtual int setMicOpGain(int zero, float gain, float gainAgain) = 0;
    virtual int setMicAnalogGain(float first, float second) = 0;
    virtual int getMicAnalogGain(float *first, float *second) = 0;
    virtual int setAlterTrackVolume(unsigned char volume) = 0;
    virtual int startMicGainCalibration() = 0;
    virtual int setMicGainCalibration() = 0;
    virtual int getMicCalibrationGain(int *first, int *second) = 0;

protected:
    ~Volume() = default;
};

class Source
{
public:
    virtual int setOutputSource(const char *track, const char *source) = 0;
    /// The platform source name that plays on the track now; null or empty when none does.
    virtual const char *getActiveSource(const char *track) = 0;
    virtual int setInputDestination(const char *track, const char *destination) = 0;
    virtual int setInputSelectPin(int input, int pin) = 0;
    virtual int getInputSelectPin(int input, unsigned char *pin) = 0;
    virtual int setMicLeftRightSwitch(bool swap) = 0;
    virtual int setOutputChannelMask(int mask) = 0;
    /// A number that the callers only pass on, not a result code.
    virtual int queryAlterNumber(const char *track) = 0;
    virtual int setHandsfreeDelay(int delay) = 0;

protected:
    ~Source() = default;
};

class Mixer
{
public:
    virtual int setFrontRearMode(int mode) = 0;

protected:
    ~Mixer() = default;
};

class App
{
public:
    virtual int setFilter(audio::audio_filter_t *filter) = 0;
    virtual int setLoudness(audio::audio_loudness_t *loudness) = 0;
    virtual int setEqParameter(audio::audio_eq_parameter_t &parameter) = 0;
    virtual int getMicrophoneTest(unsigned short *values, int count) = 0;
    virtual int enableDps() = 0;
    virtual int disableDps() = 0;
    virtual int enableStereo() = 0;
    virtual int disableStereo() = 0;
    virtual int setDpsUserGain(float gain) = 0;
    virtual int setSpeakerDelay(int channel, float delay) = 0;
    virtual int setAecQuality(audio::audio_aec_quality_e quality) = 0;
    virtual int setExtEqParameter(audio::audio_ext_eq_parameter_t &parameter) = 0;
    virtual int startDownlinkDelayEstimation() = 0;
    virtual int getDownlinkDelayEstimation(short *delay) = 0;

protected:
    ~App() = default;
};

/// A new object, owned by the caller until destroyed; null on failure.
App *createApp();
Mixer *createMixer();
Source *createSource();
Volume *createVolume();

void destroy(App *app);
void destroy(Mixer *mixer);
void destroy(Source *source);
void destroy(Volume *volume);

} // namespace SPAudioSetting
} // namespace audio

#endif
