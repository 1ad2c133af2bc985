// Every operation of the platform that the library uses, reached through the facade: each must land in its own table entry.

#include <qzaudio/audiocontrol.h>

#include <QtCore/QCoreApplication>

#include <cstdio>
#include <cstring>

extern "C" const char *takeReached();

using audio::AudioControl;

namespace
{

struct Row
{
    void (*act)(AudioControl &control);
    const char *reached;
};

float first = 0;
float second = 0;
int one = 0;
int two = 0;
short delay = 0;
quint8 step = 0;
QString name;
QList<int> values;

const Row rows[] = {
    {[](AudioControl &c) { c.setMainAudioDunkingMode(1); }, "Volume.setDuckingMode "},
    {[](AudioControl &c) { c.setMainAudioDunkingTargetGain(60); }, "Volume.setDuckingTargetGain "},
    {[](AudioControl &c) { c.setMasterVolume(30); }, "Volume.setMasterVolume "},
    {[](AudioControl &c) { c.getMasterVolume(); }, "Volume.getMasterVolume "},
    {[](AudioControl &c) { c.setFadeBalance(0, 0); }, "Volume.setFadeBalance Volume.setFadeBalance Volume.setFadeBalance Volume.setFadeBalance "},
    {[](AudioControl &c) { c.setStreamVolume(AudioControl::Main, "S+FilePlayer_APP", 80); }, "Volume.setTrackVolume "},
    {[](AudioControl &c) { c.getStreamVolume(AudioControl::Main, "S+FilePlayer_APP"); }, "Volume.getTrackVolume "},
    {[](AudioControl &c) { c.muteBackEarphone(true); }, "Volume.muteTrack "},
    {[](AudioControl &c) { c.muteBackEarphone(false); }, "Volume.unmuteTrack "},
    {[](AudioControl &c) { c.setMicroPhoneVolume(12); }, "Volume.setMicVolume "},
    {[](AudioControl &c) { c.setMicOpAndPga(9, 1); }, "Volume.setMicOpGain Volume.setMicPgaGain "},
    {[](AudioControl &c) { c.setMicAnalogGain(1, 2); }, "Volume.setMicAnalogGain "},
    {[](AudioControl &c) { c.getMicAnalogGain(&first, &second); }, "Volume.getMicAnalogGain "},
    {[](AudioControl &c) { c.setAlterVolume(10, false); }, "Volume.setAlterTrackVolume "},
    {[](AudioControl &c) { c.startMicGainCalibration(); }, "Volume.startMicGainCalibration "},
    {[](AudioControl &c) { c.setMicGainCalibration(); }, "Volume.setMicGainCalibration "},
    {[](AudioControl &c) { c.getMicCalibrationGain(&one, &two); }, "Volume.getMicCalibrationGain "},
    {[](AudioControl &c) { c.setOutputSource("main", "S+FilePlayer"); }, "Source.setOutputSource "},
    {[](AudioControl &c) { c.getCurMainTrackStepVolumeInfo(name, step); }, "Source.getActiveSource "},
    {[](AudioControl &c) { c.setInputDestination("input0", "S+Mic"); }, "Source.setInputDestination "},
    {[](AudioControl &c) { c.setI2SINChannel(static_cast<AudioControl::AudioInChannel>(0)); }, "Source.setInputSelectPin "},
    {[](AudioControl &c) { c.getAuxinChannel(); }, "Source.getInputSelectPin "},
    {[](AudioControl &c) { c.setMicLeftRightSwitch(true); }, "Source.setMicLeftRightSwitch "},
    {[](AudioControl &c) { c.setOutputFrontSource("main", "S+FilePlayer", true); },
     "Source.setOutputSource Source.setOutputChannelMask Mixer.setFrontRearMode "},
    {[](AudioControl &c) { c.getActivedAlterNumber(); }, "Source.queryAlterNumber "},
    {[](AudioControl &c) { c.setHandsfreeDelay(1); }, "Source.setHandsfreeDelay "},
    {[](AudioControl &c) { c.setFilter(AudioControl::LeftFront, {}); }, "App.setFilter "},
    {[](AudioControl &c) { c.setLoudnessSwitch(true); }, "App.setLoudness "},
    {[](AudioControl &c) { c.setEqMode(static_cast<AudioControl::EqMode>(0)); }, "App.setEqParameter "},
    {[](AudioControl &c) { c.getMicrophoneTest(values); }, "App.getMicrophoneTest "},
    {[](AudioControl &c) { c.setDpsEnable(true); }, "App.enableDps "},
    {[](AudioControl &c) { c.setDpsEnable(false); }, "App.disableDps "},
    {[](AudioControl &c) { c.setStereoEnable(true); }, "App.enableStereo "},
    {[](AudioControl &c) { c.setStereoEnable(false); }, "App.disableStereo "},
    {[](AudioControl &c) { c.setDpsUserGain(1); }, "App.setDpsUserGain "},
    {[](AudioControl &c) { c.setSpeakerDealy(AudioControl::LeftFront, 1); }, "App.setSpeakerDelay "},
    {[](AudioControl &c) { c.setAECQuality(static_cast<AudioControl::AudioQuality>(1)); }, "App.setAecQuality "},
    {[](AudioControl &c) {
         c.setEqValue({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
     },
     "App.setExtEqParameter "},
    {[](AudioControl &c) { c.setDownlinkDelayEstimation(); }, "App.startDownlinkDelayEstimation "},
    {[](AudioControl &c) { c.getDownlinkDelayEstimation(&delay); }, "App.getDownlinkDelayEstimation "},
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    AudioControl control;
    int failed = 0;
    for (const Row &row : rows) {
        takeReached();
        row.act(control);
        const char *reached = takeReached();
        if (std::strcmp(reached, row.reached) != 0) {
            std::printf("reached \"%s\" instead of \"%s\"\n", reached, row.reached);
            ++failed;
        }
    }
    std::printf("%zu operations, %d failed\n", sizeof rows / sizeof rows[0], failed);
    return failed == 0 ? 0 : 1;
}
