#include "qmlaudiocontrol.h"

using audio::AudioControl;

template<>
AudioControl &scriptTarget<AudioControl>(QObject & /*callee*/)
{
    return *AudioControl::getInstance();
}

namespace
{

constexpr policynames::Number tags[] = {
    {AudioControl::Main, "Main", "main"},
    {AudioControl::Second, "Second", "second, the rear seats"},
    {AudioControl::Alternative, "Alternative", "alternative: prompts and calls over the main audio"},
    {AudioControl::Uplink, "Uplink", "uplink"},
    {AudioControl::Input0, "Input0", "input0"},
    {AudioControl::Input1, "Input1", "input1"},
    {AudioControl::Input2, "Input2", "input2"},
    {AudioControl::MainIm, "MainIm", "main_im"},
};

constexpr policynames::Number outputChannels[] = {
    {AudioControl::LeftFront, "LeftFront", "front left"},
    {AudioControl::RightFront, "RightFront", "front right"},
    {AudioControl::LeftRear, "LeftRear", "rear left"},
    {AudioControl::RightRear, "RightRear", "rear right"},
    {AudioControl::FifthOutput, "FifthOutput", "the fifth, outside fade and balance"},
    {AudioControl::SixthOutput, "SixthOutput", "the sixth, outside fade and balance"},
};

/// A number is a tag, anything else a platform track.
template<auto byTag, auto byTrack>
constexpr ScriptCall byTagOrTrack = [] {
    ScriptCall call = scriptCall<byTag>;
    call.run = [](QObject &callee, const ScriptOperation &operation, const QJSValue *given) {
        ScriptOperation named = operation;
        named.names[0] = given[0].isNumber() ? "tag" : "track";
        return (given[0].isNumber() ? scriptCall<byTag> : scriptCall<byTrack>).run(callee, named, given);
    };
    return call;
}();

constexpr ScriptRow operations[] = {
    {"small state"},
    {SCRIPT_CALL(AudioControl, setStepRange), "range", "how many steps step volumes are counted in; 100 until set"},
    {SCRIPT_CALL(AudioControl, getStepRang), "", "the number of steps; the name is spelled so"},
    {SCRIPT_CALL(AudioControl, setAlterMode), "on", "whether prompts play on the alternative track; only remembered"},
    {SCRIPT_CALL(AudioControl, getAlterMode), "", "what setAlterMode() was given; true until then"},
    {SCRIPT_CALL(AudioControl, getMasterStepVolume), "", "the step that setMasterStepVolume() took last; 0 until then"},
    {SCRIPT_CALL(AudioControl, getAlterStepVolume), "", "0 for ever"},
    {SCRIPT_CALL(AudioControl, isMute), "", "the state last given to setMute(), whether or not the platform took it"},
    {SCRIPT_CALL(AudioControl, setProfileMode), "mode", "does nothing"},
    {"volumes"},
    {SCRIPT_CALL(AudioControl, setStreamVolume), "tag, name, volume", "the volume of a source, 0 to 148; some sources are boosted by 1.5"},
    {SCRIPT_CALL(AudioControl, getStreamVolume), "tag, name", "the platform's volume of a source, 0 to 148; boosted ones read boosted"},
    {SCRIPT_CALL(AudioControl, setMasterVolume), "volume", "holds the platform's master volume at 100, whatever the volume is; 0, or -1 where it failed"},
    {SCRIPT_CALL(AudioControl, getMasterVolume), "", "the platform's master volume, 0 to 100"},
    {SCRIPT_CALL(AudioControl, initTrackStepVolume), "tag, volumes", "loads step volumes, {name: step, …}, and sends each to the platform"},
    {"steps"},
    {SCRIPT_CALL(AudioControl, getCurMainTrackStepVolumeInfo), "name, step", "name and step of what plays on the main track"},
    {SCRIPT_CALL(AudioControl, changeMainTrackStepVolume),
     "up, name, step",
     "moves what plays on the main track, with its group, by one step; result 1 at the limit"},
    {SCRIPT_CALL(AudioControl, getActivedAlterNumber), "", "the platform's count of active alternative streams, or -1"},
    {SCRIPT_CALL(AudioControl, changeAlterStepVolume), "up, current, step", "moves the alternative track from the current step by one; result 1 at the limit"},
    {SCRIPT_CALL(AudioControl, setAlterVolume),
     "volume, hicarCall",
     "the alternative track's volume, 0 to 100; with true also that of the HiCar call; -1 always"},
    {SCRIPT_CALL(AudioControl, setAlterStepVolume), "step, hicarCall", "setAlterVolume() of a step's value; -1 always"},
    {SCRIPT_CALL(AudioControl, setMasterStepVolume), "step", "the master step; 0, or not where it was refused"},
    {"mute"},
    {SCRIPT_CALL(AudioControl, setMute), "mute", "mutes or unmutes the main and the alternative track"},
    {SCRIPT_CALL(AudioControl, setBackEarphone), "on", "switches the rear seats' output on or off"},
    {SCRIPT_CALL(AudioControl, muteBackEarphone), "mute", "the same, said the other way round"},
    {"equalizer"},
    {SCRIPT_CALL(AudioControl, setEqMode), "mode", "applies a mode of the equalizer, 0 to 6"},
    {SCRIPT_CALL(AudioControl, getEqGain), "mode", "the sixteen gains of a mode in dB; none outside 0 to 6"},
    {SCRIPT_CALL(AudioControl, getSubGain), "mode", "the nine gains of a subwoofer curve, 0 or 1, in dB"},
    {SCRIPT_CALL(AudioControl, setEqGain), "gains", "sixteen free gains, -12 to 12 dB"},
    {SCRIPT_CALL(AudioControl, setEqGain10), "gains", "ten free gains, -12 to 12 dB"},
    {SCRIPT_CALL(AudioControl, setEqValue), "gains", "sixteen free gains, -12 to 12 dB, on the value preset"},
    {SCRIPT_CALL(AudioControl, getEqInitValue), "frequencies", "the sixteen band frequencies in Hz"},
    {SCRIPT_CALL(AudioControl, setLoudnessSwitch), "on", "switches loudness"},
    {"place"},
    {SCRIPT_CALL(AudioControl, setFadeBalance), "fade, balance", "places the sound: fade -15 (rear) to 15 (front), balance -15 (right) to 15 (left)"},
    {"routing"},
    {"setOutputSource",
     byTagOrTrack<qOverload<AudioControl::AudioTag, const char *>(&AudioControl::setOutputSource),
                  qOverload<const char *, const char *>(&AudioControl::setOutputSource)>,
     "trackOrTag, source",
     "routes a source; a number is a tag, a text a platform track"},
    {"setOutputFrontSource",
     byTagOrTrack<qOverload<AudioControl::AudioTag, const char *, bool>(&AudioControl::setOutputFrontSource),
                  qOverload<const char *, const char *, bool>(&AudioControl::setOutputFrontSource)>,
     "trackOrTag, source, frontOnly",
     "the same, and chooses front only or front and rear"},
    {"setInputDestination",
     byTagOrTrack<qOverload<AudioControl::AudioTag, const char *>(&AudioControl::setInputDestination),
                  qOverload<const char *, const char *>(&AudioControl::setInputDestination)>,
     "trackOrTag, destination",
     "feeds an input track to a destination; a number is a tag, a text a platform track"},
    {SCRIPT_CALL(AudioControl, setAuxinChannel), "channel", "puts the auxiliary input on a pin, 0 to 5; pin 0 for others"},
    {SCRIPT_CALL(AudioControl, getAuxinChannel), "", "the auxiliary input's channel; 0 where the platform fails"},
    {SCRIPT_CALL(AudioControl, setI2SINChannel), "channel", "puts the I2S input on pin 5, whatever the channel is"},
    {SCRIPT_CALL(AudioControl, setMainAudioDunkingMode), "mode", "ducking of the main audio; 0 is off"},
    {SCRIPT_CALL(AudioControl, setMainAudioDunkingTargetGain), "gain", "the gain that the main audio is ducked to"},
    {"microphone"},
    {SCRIPT_CALL(AudioControl, setMicroPhoneVolume), "volume", "the microphone's volume, 0 to 91"},
    {SCRIPT_CALL(AudioControl, getMicAnalogGain), "first, second", "the analogue gains"},
    {SCRIPT_CALL(AudioControl, setMicAnalogGain), "first, second", "sets the analogue gains; 0, -1 or the platform's code"},
    {SCRIPT_CALL(AudioControl, setMicOpAndPga), "op, pga", "the amplifier's stage and programmable gain; -1 always"},
    {SCRIPT_CALL(AudioControl, startMicGainCalibration), "", "starts the calibration; 0, -1 or the platform's code"},
    {SCRIPT_CALL(AudioControl, setMicGainCalibration), "", "takes what the calibration found; 0, -1 or the platform's code"},
    {SCRIPT_CALL(AudioControl, getMicCalibrationGain), "first, second", "what the calibration found"},
    {SCRIPT_CALL(AudioControl, setDownlinkDelayEstimation), "", "starts the estimation of the downlink delay"},
    {SCRIPT_CALL(AudioControl, getDownlinkDelayEstimation), "delay", "the estimated delay"},
    {SCRIPT_CALL(AudioControl, setHandsfreeDelay), "delay", "the delay for the echo cancelling; 0, -1 or the platform's code"},
    {SCRIPT_CALL(AudioControl, setAECQuality), "quality", "the quality of echo cancelling, 0 to 2; 1 for others"},
    {SCRIPT_CALL(AudioControl, getMicrophoneTest), "values", "the self-test's eight values; none where the platform fails"},
    {SCRIPT_CALL(AudioControl, setMicLeftRightSwitch), "swap", "swaps the left and right inputs"},
    {"processing"},
    {SCRIPT_CALL(AudioControl, setDpsEnable), "enable", "switches the platform's DPS processing"},
    {SCRIPT_CALL(AudioControl, setStereoEnable), "enable", "switches the platform's stereo processing"},
    {SCRIPT_CALL(AudioControl, setDpsUserGain), "gain", "the gain of DPS"},
    {SCRIPT_CALL(AudioControl, setFilter),
     "channel, filter",
     "the filter of one output, or of all for a channel outside 0 to 5; {value1, flag, kind, value2, value3, value4}"},
    {SCRIPT_CALL(AudioControl, setSpeakerDelay), "delays", "the delays of the six outputs"},
    {SCRIPT_CALL(AudioControl, setSpeakerDealy), "channel, delay", "the delay of one output; the name is spelled so"},
};

} // namespace

const ScriptType &QmlAudioControl::scriptType()
{
    static const ScriptType type("AudioControl", operations, {{"AudioTag", "", tags}, {"AudioOutChannel", "", outputChannels}});
    return type;
}
