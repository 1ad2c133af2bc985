#include <mcuservice.h>
#include <settingsprovider.h>
#include <spaudiosetting.h>

namespace audio
{
namespace SPAudioSetting
{

namespace
{

constexpr unsigned char anyVolume = 40;
constexpr float anyGain = 20.0F;
constexpr int anyNumber = 1;

class IdleVolume final : public Volume
{
public:
    int setDuckingMode(unsigned int) override { return 0; }
    int setDuckingTargetGain(unsigned char) override { return 0; }
    int setMasterVolume(unsigned char) override { return 0; }
    int getMasterVolume(unsigned char *volume, int) override
    {
        *volume = anyVolume;
        return 0;
    }
    int setFadeBalance(audio::audio_channel_gain_t *) override { return 0; }
    int setTrackVolume(const char *, const char *, unsigned char) override { return 0; }
    int getTrackVolume(const char *, const char *, unsigned char *volume) override
    {
        *volume = anyVolume;
        return 0;
    }
    int muteTrack(const char *, int) override { return 0; }
    int unmuteTrack(const char *, int) override { return 0; }
    int setMicVolume(float) override { return 0; }
    int setMicPgaGain(int, float, float) override { return 0; }
    int setMicOpGain(int, float, float) override { return 0; }
    int setMicAnalogGain(float, float) override { return 0; }
    int getMicAnalogGain(float *first, float *second) override
    {
        *first = anyGain;
        *second = anyGain;
        return 0;
    }
    int setAlterTrackVolume(unsigned char) override { return 0; }
    int startMicGainCalibration() override { return 0; }
    int setMicGainCalibration() override { return 0; }
    int getMicCalibrationGain(int *first, int *second) override
    {
        *first = anyNumber;
        *second = anyNumber;
        return 0;
    }
};

class IdleSource final : public Source
{
public:
    int setOutputSource(const char *, const char *) override { return 0; }
    const char *getActiveSource(const char *) override { return "S+FilePlayer"; }
    int setInputDestination(const char *, const char *) override { return 0; }
    int setInputSelectPin(int, int) override { return 0; }
    int getInputSelectPin(int, unsigned char *pin) override
    {
        *pin = anyNumber;
        return 0;
    }
    int setMicLeftRightSwitch(bool) override { return 0; }
    int setOutputChannelMask(int) override { return 0; }
    int queryAlterNumber(const char *) override { return 0; }
    int setHandsfreeDelay(int) override { return 0; }
};

class IdleMixer final : public Mixer
{
public:
    int setFrontRearMode(int) override { return 0; }
};

class IdleApp final : public App
{
public:
    int setFilter(audio::audio_filter_t *) override { return 0; }
    int setLoudness(audio::audio_loudness_t *) override { return 0; }
    int setEqParameter(audio::audio_eq_parameter_t &) override { return 0; }
    int getMicrophoneTest(unsigned short *values, int count) override
    {
        for (int i = 0; i < count; ++i)
            values[i] = anyNumber;
        return 0;
    }
    int enableDps() override { return 0; }
    int disableDps() override { return 0; }
    int enableStereo() override { return 0; }
    int disableStereo() override { return 0; }
    int setDpsUserGain(float) override { return 0; }
    int setSpeakerDelay(int, float) override { return 0; }
    int setAecQuality(audio::audio_aec_quality_e) override { return 0; }
    int setExtEqParameter(audio::audio_ext_eq_parameter_t &) override { return 0; }
    int startDownlinkDelayEstimation() override { return 0; }
    int getDownlinkDelayEstimation(short *delay) override
    {
        *delay = anyNumber;
        return 0;
    }
};

} // namespace

App *createApp()
{
    return new IdleApp;
}

Mixer *createMixer()
{
    return new IdleMixer;
}

Source *createSource()
{
    return new IdleSource;
}

Volume *createVolume()
{
    return new IdleVolume;
}

void destroy(App *app)
{
    delete static_cast<IdleApp *>(app);
}

void destroy(Mixer *mixer)
{
    delete static_cast<IdleMixer *>(mixer);
}

void destroy(Source *source)
{
    delete static_cast<IdleSource *>(source);
}

void destroy(Volume *volume)
{
    delete static_cast<IdleVolume *>(volume);
}

} // namespace SPAudioSetting
} // namespace audio

vd::SettingsProvider *vd::SettingsProvider::instance()
{
    static SettingsProvider provider;
    return &provider;
}

int vd::SettingsProvider::getHomeUiType()
{
    return 0;
}

namespace
{

class IdleMcuService final : public zelmcu::ZEL_McuService
{
};

} // namespace

zelmcu::ZEL_McuService *zelmcu::ZEL_McuService::instance()
{
    static auto *const service = new IdleMcuService;
    return service;
}

zelmcu::ZEL_McuService::ZEL_McuService(QObject *parent)
    : QObject(parent)
{
}

zelmcu::ZEL_McuService::~ZEL_McuService() = default;
