/*
 * A platform that answers everything with 0, but for one call, and a flash whose fsync() is one of those calls. Which one, and what it does, the
 * environment says: SICK_CALL ("Volume.getMasterVolume", "create App", "fsync") and SICK_WAY ("refuses", "hangs", "crashes", "ends", "gives none").
 * An operation that changes something ends the process: nobody may call it here.
 *
 * A program that is linked with this in front of the library has its functions in front of the simulator's and the C library's.
 */

#include <spaudiosetting.h>

#include <QtCore/QByteArray>

#include <cerrno>
#include <cstdlib>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

bool isSick(const QByteArray &call, const char *way)
{
    const QByteArray sick = qgetenv("SICK_CALL");
    // Those that ask have a name like "App.getMicrophoneTest".
    const bool isMeant = sick == call || (sick == "each call" && call.contains('.'));
    return isMeant && qgetenv("SICK_WAY") == way;
}

int answer(const char *call)
{
    constexpr int refusal = 7;
    constexpr int someStatus = 3;
    if (isSick(call, "crashes"))
        std::abort();
    if (isSick(call, "ends"))
        ::_exit(someStatus);
    while (isSick(call, "hangs"))
        ::pause();
    return isSick(call, "refuses") ? refusal : 0;
}

int change()
{
    std::abort();
}

} // namespace

// The C library's own declaration has names for its parameters that nobody else may use.
extern "C" __attribute__((visibility("default"))) int sickFsync(int file) __asm__("fsync");

int sickFsync(int file)
{
    if (answer("fsync") == 0)
        return static_cast<int>(::syscall(SYS_fsync, file));
    errno = EIO;
    return -1;
}

namespace audio
{
namespace SPAudioSetting
{

namespace
{

class SickVolume final : public Volume
{
public:
    int setDuckingMode(unsigned int) override { return change(); }
    int setDuckingTargetGain(unsigned char) override { return change(); }
    int setMasterVolume(unsigned char) override { return change(); }
    int getMasterVolume(unsigned char *, int) override { return answer("Volume.getMasterVolume"); }
    int setFadeBalance(audio::audio_channel_gain_t *) override { return change(); }
    int setTrackVolume(const char *, const char *, unsigned char) override { return change(); }
    int getTrackVolume(const char *, const char *, unsigned char *) override { return answer("Volume.getTrackVolume"); }
    int muteTrack(const char *, int) override { return change(); }
    int unmuteTrack(const char *, int) override { return change(); }
    int setMicVolume(float) override { return change(); }
    int setMicPgaGain(int, float, float) override { return change(); }
    int setMicOpGain(int, float, float) override { return change(); }
    int setMicAnalogGain(float, float) override { return change(); }
    int getMicAnalogGain(float *, float *) override { return answer("Volume.getMicAnalogGain"); }
    int setAlterTrackVolume(unsigned char) override { return change(); }
    int startMicGainCalibration() override { return change(); }
    int setMicGainCalibration() override { return change(); }
    int getMicCalibrationGain(int *, int *) override { return answer("Volume.getMicCalibrationGain"); }
};

class SickSource final : public Source
{
public:
    int setOutputSource(const char *, const char *) override { return change(); }
    const char *getActiveSource(const char *) override
    {
        answer("Source.getActiveSource");
        return nullptr;
    }
    int setInputDestination(const char *, const char *) override { return change(); }
    int setInputSelectPin(int, int) override { return change(); }
    int getInputSelectPin(int, unsigned char *) override { return answer("Source.getInputSelectPin"); }
    int setMicLeftRightSwitch(bool) override { return change(); }
    int setOutputChannelMask(int) override { return change(); }
    int queryAlterNumber(const char *) override { return answer("Source.queryAlterNumber"); }
    int setHandsfreeDelay(int) override { return change(); }
};

class SickApp final : public App
{
public:
    int setFilter(audio::audio_filter_t *) override { return change(); }
    int setLoudness(audio::audio_loudness_t *) override { return change(); }
    int setEqParameter(audio::audio_eq_parameter_t &) override { return change(); }
    int getMicrophoneTest(unsigned short *, int) override { return answer("App.getMicrophoneTest"); }
    int enableDps() override { return change(); }
    int disableDps() override { return change(); }
    int enableStereo() override { return change(); }
    int disableStereo() override { return change(); }
    int setDpsUserGain(float) override { return change(); }
    int setSpeakerDelay(int, float) override { return change(); }
    int setAecQuality(audio::audio_aec_quality_e) override { return change(); }
    int setExtEqParameter(audio::audio_ext_eq_parameter_t &) override { return change(); }
    int startDownlinkDelayEstimation() override { return change(); }
    int getDownlinkDelayEstimation(short *) override { return answer("App.getDownlinkDelayEstimation"); }
};

template<typename Kind>
Kind *create(const char *call)
{
    static Kind object;
    answer(call);
    return isSick(call, "gives none") ? nullptr : &object;
}

} // namespace

App *createApp()
{
    return create<SickApp>("create App");
}

Source *createSource()
{
    return create<SickSource>("create Source");
}

Volume *createVolume()
{
    return create<SickVolume>("create Volume");
}

void destroy(App *)
{
    answer("destroy");
}

void destroy(Source *)
{
}

void destroy(Volume *)
{
}

} // namespace SPAudioSetting
} // namespace audio
