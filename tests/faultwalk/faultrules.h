#ifndef FAULTRULES_H
#define FAULTRULES_H

/**
 * What a failing call on the platform changes, and nothing else may change.
 *
 * In general: a call that is refused changes no other call. An object that is null loses the calls on it, and no other. Failures are neither retried nor
 * reported by anything but one error line of the facade, and the caller's result. All that the tables here say is where a text stands, and
 * what goes beyond that.
 *
 * A step is what the facade does in one go; the policy manager's operations are made of such steps.
 */
namespace faultrules
{

/// Which step a call belongs to. The first row that fits counts; "" fits everything. A step without a row is called like its call on the platform, and
/// the making of an object belongs to the first call on it.
struct Step
{
    const char *call; ///< on the platform
    const char *operation; ///< that is walked
    const char *beside; ///< another call in the same step
    const char *argument; ///< the first one
    const char *name;
};

enum class Change {
    Becomes, ///< an information line turns into an error line
    Adds, ///< an error line directly after the call
    AddsOnce, ///< the same, one for all calls of its name that fail, with their codes combined
    AddsAfter, ///< an error line after an information line
    Drops, ///< lines of the facade, if they stood there, are not written
    TraceBecomes, ///< the values of a trace change
    TraceIsNeutral, ///< the same, unless the outputs were written
    TraceDrops, ///< a trace is not written
    TraceAdds, ///< a whole line after the line that changed before
};

/// How a failing call changes the log. A call without a row is silent, which is meant.
struct LogChange
{
    const char *step;
    const char *call; ///< that fails: an operation, which is refused, or "Volume.create", which gives null
    Change change;
    const char *from; ///< a regular expression for the whole text behind the line's beginning
    const char *to; ///< %1 what it captured first, %c the platform's code, or -1 where there is no object, %s the loudspeaker
};

/// Calls that are no longer made after one that fails, beside those on an object that is null.
struct Consequence
{
    const char *step;
    const char *call; ///< that fails
    const char *gone; ///< how the names of later calls of the step begin
    const char *reason;
};

enum class Gives {
    Same, ///< what it gives without a fault
    Code, ///< the platform's code, or -1 where there is no object
    MinusOne,
    Neutral, ///< 0, or nothing at all, even where the outputs were written
    Outputs, ///< what the platform wrote, or 0
    StepBefore, ///< the code or -1, and the step that holds before it goes up
};

/// The caller's result where it is not void.
struct Result
{
    const char *operation; ///< that is walked
    const char *step;
    const char *call; ///< that fails; an object that is null counts as its first call
    Gives gives;
    const char *reason;
};

/// Where the same call again, without a fault, works as the first one would have instead of as a second one.
struct Repetition
{
    const char *operation; ///< that is walked
    const char *step;
    const char *call; ///< that failed; an object that is null counts as its first call
    const char *reason;
};

// clang-format off
constexpr Step steps[] = {
    {"Volume.setTrackVolume", "", "Source.getActiveSource", "", "changeMainTrackStepVolume"},
    {"Volume.setTrackVolume", "", "Volume.setAlterTrackVolume", "", "setAlterVolume"},
    {"Volume.setTrackVolume", "initTrackStepVolume", "", "", "initTrackStepVolume"},
    {"Volume.setTrackVolume", "", "Volume.setTrackVolume", "", "initTrackStepVolume"},
    {"Volume.setTrackVolume", "", "", "", "setStreamVolume"},
    {"Volume.setAlterTrackVolume", "changeAlterStepVolume", "", "", "changeAlterStepVolume"},
    {"Volume.setAlterTrackVolume", "", "", "", "setAlterVolume"},
    {"Volume.unmuteTrack", "", "", "", "setMute"},
    {"Volume.muteTrack", "", "", "", "setMute"},
    {"Source.getActiveSource", "changeMainTrackStepVolume", "", "", "changeMainTrackStepVolume"},
    {"Source.setOutputSource", "", "Mixer.create", "", "setOutputFrontSource"},
    {"Source.setOutputChannelMask", "", "", "", "setOutputFrontSource"},
    {"Mixer.setFrontRearMode", "", "", "", "setOutputFrontSource"},
    {"Source.setInputSelectPin", "", "", "1", "setAuxinChannel"},
    {"Source.setInputSelectPin", "", "", "2", "setI2SINChannel"},
    {"App.setSpeakerDelay", "setSpeakerDealy", "", "", "setSpeakerDealy"},
};

constexpr LogChange logChanges[] = {
    // Volumes
    {"setStreamVolume", "Volume.setTrackVolume", Change::Becomes, "set stream (\\S+) \\d+", "set stream %1 err %c"},
    {"setStreamVolume", "Volume.create", Change::Becomes, "set stream (\\S+) \\d+", "create volume  %1  err"},
    {"", "Volume.getTrackVolume", Change::Becomes, "get stream (\\S+ \\S+) \\d+", "get stream %1 err %c"},
    {"getTrackVolume", "Volume.create", Change::Becomes, "get stream (\\S+ \\S+) \\d+", "create volume  %1 err"},
    {"", "Volume.setMasterVolume", Change::Becomes, "set master volume 100", "set master volume err %c"},
    {"", "Volume.getMasterVolume", Change::Becomes, "get master volume \\d+", "get master volume err %c"},
    {"initTrackStepVolume", "Volume.setTrackVolume", Change::Becomes, "(set stream .*)", "LINE %1 %c"}, // the line's number stands twice
    {"initTrackStepVolume", "Volume.create", Change::Drops, ".*", ""},
    {"initTrackStepVolume", "Volume.create", Change::Adds, "", "create volume err"},

    // Steps
    {"getActiveSource", "Source.getActiveSource", Change::Drops, ".*", ""},
    {"getActiveSource", "Source.getActiveSource", Change::Adds, "", "get getOutPutSource failed."},
    {"getActiveSource", "Source.create", Change::Drops, ".*", ""}, // silent
    {"changeMainTrackStepVolume", "Source.getActiveSource", Change::Drops, ".*", ""},
    {"changeMainTrackStepVolume", "Source.getActiveSource", Change::Adds, "", "get cur source name failed."},
    {"changeMainTrackStepVolume", "Source.create", Change::Drops, ".*", ""},
    {"changeMainTrackStepVolume", "Source.create", Change::Adds, "", "Create audio source failed."},
    {"changeMainTrackStepVolume", "Volume.setTrackVolume", Change::Becomes, ".* changed to  \\d+ \\d+", "setTrackVolume failed. %c"},
    {"changeMainTrackStepVolume", "Volume.create", Change::Becomes, ".* changed to  \\d+ \\d+", "Create volume failed."},
    {"queryAlterNumber", "Source.create", Change::Adds, "", "Create audio source failed."},
    {"changeAlterStepVolume", "Volume.setAlterTrackVolume", Change::Becomes, "changed to  \\d+ \\d+", "setAlterVolume failed. %c"},
    {"changeAlterStepVolume", "Volume.create", Change::Becomes, "changed to  \\d+ \\d+", "Create volume failed."},
    {"setAlterVolume", "Volume.setAlterTrackVolume", Change::Becomes, "set alter volume \\d+", "set alter volume err %c"},
    {"setAlterVolume", "Volume.create", Change::Becomes, "set alter volume \\d+", "Create volume failed."},
    {"setMute", "Volume.muteTrack", Change::Adds, "", "set back earphone error %c"}, // for every track
    {"setMute", "Volume.unmuteTrack", Change::Adds, "", "set back earphone error %c"},

    // Equalizer, loudness, fade and balance
    {"", "App.setEqParameter", Change::Becomes, "set eq channel \\d+", "set eq error %c"},
    {"", "App.setEqParameter", Change::Drops, "Fc:|\\d+", ""},
    {"", "App.setExtEqParameter", Change::Becomes, "set eq channel \\d+", "set eq error %c"},
    {"setExtEqParameter", "App.create", Change::Becomes, "set eq channel \\d+", "Create App failed."},
    {"", "App.setLoudness", Change::AddsAfter, "setLoudness", "set Loudness error %c"},
    {"", "Volume.setFadeBalance", Change::Adds, "", "set %sChannel gain err %c"},

    // Routing and inputs
    {"setOutputSource", "Source.setOutputSource", Change::Becomes, "Set Front seat audio stream success\\.", "Set Front seat audio stream error %c"},
    {"setOutputSource", "Source.setOutputSource", Change::TraceAdds, "",
     "void audio::AudioControl::setOutputSource(const char*, const char*) LINE -- setoutput failed"},
    {"setOutputSource", "Source.create", Change::Becomes, "Set Front seat audio stream success\\.", "Set Front seat audio stream error -1"},
    {"setOutputSource", "Source.create", Change::TraceAdds, "", "void audio::AudioControl::setOutputSource(const char*, const char*) LINE -- setoutput failed"},
    {"setOutputFrontSource", "Source.setOutputSource", Change::Becomes, "Set Front seat audio stream success, 0 0 0",
     "Set Front seat audio stream error, %c 0 0"},
    {"setOutputFrontSource", "Source.setOutputChannelMask", Change::Becomes, "Set Front seat audio stream success, 0 0 0",
     "Set Front seat audio stream error, 0 %c 0"},
    {"setOutputFrontSource", "Mixer.setFrontRearMode", Change::Becomes, "Set Front seat audio stream success, 0 0 0",
     "Set Front seat audio stream error, 0 0 %c"},
    {"setOutputFrontSource", "Source.create", Change::Drops, "set front channels|set front and rear channels", ""},
    {"setOutputFrontSource", "Source.create", Change::Becomes, "Set Front seat audio stream success, 0 0 0", "Set Front seat audio stream error, 0 0 -1"},
    {"setOutputFrontSource", "Mixer.create", Change::Drops, "set front channels|set front and rear channels", ""},
    {"setOutputFrontSource", "Mixer.create", Change::Becomes, "Set Front seat audio stream success, 0 0 0", "Set Front seat audio stream error, 0 0 -1"},
    {"setInputDestination", "Source.setInputDestination", Change::TraceBecomes, "0 return", "%c return"},
    {"setInputDestination", "Source.setInputDestination", Change::Becomes, "Set audio stream input source success\\.",
     "Set audio stream input source error. %c"},
    {"setInputDestination", "Source.create", Change::TraceDrops, ".* (tag|dest|return)", ""},
    {"setInputDestination", "Source.create", Change::Becomes, "Set audio stream input source success\\.", "Set audio stream input source error. -1"},
    {"setAuxinChannel", "Source.setInputSelectPin", Change::Becomes, "set auxin pin success \\d+", "Set auxin pin error %c"},
    {"setAuxinChannel", "Source.create", Change::Becomes, "set auxin pin success \\d+", "Set auxin pin error -1"},
    {"getInputSelectPin", "Source.getInputSelectPin", Change::Becomes, "get auxin pin success \\d+", "get auxin pin error %c"},
    {"getInputSelectPin", "Source.create", Change::Becomes, "get auxin pin success \\d+", "get auxin pin error -1"},
    {"setI2SINChannel", "Source.setInputSelectPin", Change::Becomes, "set I2SIN success \\d+", "Set I2SIN pin error %c"},
    {"setI2SINChannel", "Source.create", Change::Becomes, "set I2SIN success \\d+", "Set I2SIN pin error -1"},
    {"setDuckingMode", "Volume.setDuckingMode", Change::Becomes, "Set Front seat audio stream success\\.", "Set Front seat audio stream error %c"},
    {"setDuckingMode", "Volume.create", Change::Becomes, "Set Front seat audio stream success\\.", "Set Front seat audio stream error -1"},
    {"setDuckingTargetGain", "Volume.setDuckingTargetGain", Change::Becomes, "Set Front seat audio stream success\\.", "Set Front seat audio stream error %c"},
    {"setDuckingTargetGain", "Volume.create", Change::Becomes, "Set Front seat audio stream success\\.", "Set Front seat audio stream error -1"},

    // Microphone and voice: who gets the code is not told of a refusal by a line, too
    {"", "Volume.setMicVolume", Change::Becomes, "Set micro phone volume success\\. data: .*", "Set micro phone volume error %c"},
    {"getMicAnalogGain", "Volume.getMicAnalogGain", Change::TraceIsNeutral, "lgain: \\S+ rgain: \\S+", "lgain: 0 rgain: 0"},
    {"getMicAnalogGain", "Volume.create", Change::Adds, "", "Create audio source failed."}, // for every kind of object
    {"getMicAnalogGain", "Volume.create", Change::TraceIsNeutral, "lgain: \\S+ rgain: \\S+", "lgain: 0 rgain: 0"},
    {"setMicAnalogGain", "Volume.create", Change::Adds, "", "Create audio source failed."},
    {"setMicOpGain", "Volume.create", Change::Adds, "", "Create audio source failed."},
    {"startMicGainCalibration", "Volume.create", Change::Drops, "startMicGainCalibration", ""},
    {"startMicGainCalibration", "Volume.create", Change::Adds, "", "Create audio source failed."},
    {"setMicGainCalibration", "Volume.create", Change::Drops, "setMicGainCalibration", ""},
    {"setMicGainCalibration", "Volume.create", Change::Adds, "", "Create audio source failed."},
    {"getMicCalibrationGain", "Volume.getMicCalibrationGain", Change::TraceIsNeutral, "\\d+ \\d+", "0 0"},
    {"getMicCalibrationGain", "Volume.create", Change::Adds, "", "Create audio source failed."},
    {"getMicCalibrationGain", "Volume.create", Change::TraceIsNeutral, "\\d+ \\d+", "0 0"},
    {"startDownlinkDelayEstimation", "App.create", Change::Drops, "setDownlinkDelayEstimation", ""},
    {"startDownlinkDelayEstimation", "App.create", Change::Adds, "", "Create audio source failed."},
    {"getDownlinkDelayEstimation", "App.create", Change::Drops, "getDownlinkDelayEstimation", ""},
    {"getDownlinkDelayEstimation", "App.create", Change::Adds, "", "Create audio source failed."},
    {"setHandsfreeDelay", "Source.setHandsfreeDelay", Change::Becomes, "setHandsfreeDelaysuccess\\.", "setHandsfreeDelay error %c"},
    {"setHandsfreeDelay", "Source.create", Change::Drops, "set setHandsfreeDelay -?\\d+", ""},
    {"setHandsfreeDelay", "Source.create", Change::Becomes, "setHandsfreeDelaysuccess\\.", "Create audio source failed."},
    {"", "App.setAecQuality", Change::Becomes, "Set AEC Quality successful\\.", "Set AEC Quality successful error %c"},
    {"", "App.getMicrophoneTest", Change::Adds, "", "get microphone test error.ret: %c"},
    {"", "Source.setMicLeftRightSwitch", Change::Becomes, "ADC left right switch success", "ADC left right switch failed.ret: %c"},
    {"setMicLeftRightSwitch", "Source.create", Change::Becomes, "ADC left right switch success", "Create audio source failed."},

    // Output processing
    {"", "App.enableDps", Change::Becomes, "Set Dps successful\\.", "Set Dps error.ret: %c enable: true"},
    {"", "App.disableDps", Change::Becomes, "Set Dps successful\\.", "Set Dps error.ret: %c enable: false"},
    {"", "App.enableStereo", Change::Becomes, "Set Stereo successful\\.", "Set Stereo error.ret: %c enable: true"},
    {"", "App.disableStereo", Change::Becomes, "Set Stereo successful\\.", "Set Stereo error.ret: %c enable: false"},
    {"", "App.setDpsUserGain", Change::Becomes, "Set dps user gain successful\\.", "Set dps user gain error.ret: %c"},
    {"", "App.setFilter", Change::Becomes, "Set filter successful\\.", "Set filter error.ret: %c"},
    {"setSpeakerDelay", "App.setSpeakerDelay", Change::AddsOnce, "", "set speaker delay error.ret: %c"},
    {"setSpeakerDealy", "App.setSpeakerDelay", Change::Adds, "", "set speaker delay error.ret: %c"},
};

constexpr Consequence consequences[] = {
    {"changeMainTrackStepVolume", "Source.create", "Volume.", "what plays is not known"},
    {"changeMainTrackStepVolume", "Source.getActiveSource", "Volume.", "what plays is not known"},
    {"changeMainTrackStepVolume", "Volume.setTrackVolume", "Volume.setTrackVolume", "the group follows what plays, which did not change"},
    {"setOutputFrontSource", "Source.create", "Mixer.setFrontRearMode", "without a source there is nothing to place"},
    {"setOutputFrontSource", "Mixer.create", "Source.setOutputChannelMask", "mask and mode go together"},
};

constexpr Result results[] = {
    {"getStreamVolume", "", "Volume.getTrackVolume", Gives::Outputs, "what the platform wrote"},
    {"setMasterVolume", "", "Volume.setMasterVolume", Gives::MinusOne, "whatever the code"},
    {"setMasterStepVolume", "", "Volume.setMasterVolume", Gives::MinusOne, "whatever the code; the step stays as it was"},
    {"getMasterVolume", "", "Volume.getMasterVolume", Gives::Outputs, "what the platform wrote"},
    {"getCurMainTrackStepVolumeInfo", "", "Source.getActiveSource", Gives::MinusOne, "it gives a name instead of a code"},
    {"changeMainTrackStepVolume", "", "Source.getActiveSource", Gives::MinusOne, "it gives a name instead of a code"},
    {"changeMainTrackStepVolume", "changeMainTrackStepVolume", "Volume.setTrackVolume", Gives::StepBefore, "the step stays as it was"},
    {"changeMainTrackStepVolume", "changeMainTrackStepVolume, the group", "Volume.setTrackVolume", Gives::Same, "what becomes of the group is not told"},
    {"getActivedAlterNumber", "", "Source.queryAlterNumber", Gives::Code, "the number as it is"},
    {"changeAlterStepVolume", "", "Volume.setAlterTrackVolume", Gives::Code, ""},
    {"setAlterVolume", "", "Volume.setTrackVolume", Gives::Same, "-1 in every case"},
    {"setAlterVolume", "", "Volume.setAlterTrackVolume", Gives::Same, "-1 in every case"},
    {"setAlterStepVolume", "", "Volume.setTrackVolume", Gives::Same, "-1 in every case"},
    {"setAlterStepVolume", "", "Volume.setAlterTrackVolume", Gives::Same, "-1 in every case"},
    {"getAuxinChannel", "", "Source.getInputSelectPin", Gives::Neutral, "channel 0"},
    {"getMicAnalogGain", "", "Volume.getMicAnalogGain", Gives::Code, ""},
    {"getPlatformMicAnalogGain", "", "Volume.getMicAnalogGain", Gives::Code, ""},
    {"setMicAnalogGain", "", "Volume.setMicAnalogGain", Gives::Code, ""},
    {"setMicOpAndPga", "", "Volume.setMicOpGain", Gives::Same, "-1 in every case"},
    {"setMicOpAndPga", "", "Volume.setMicPgaGain", Gives::Same, "-1 in every case"},
    {"startMicGainCalibration", "", "Volume.startMicGainCalibration", Gives::Code, ""},
    {"setMicGainCalibration", "", "Volume.setMicGainCalibration", Gives::Code, ""},
    {"getMicCalibrationGain", "", "Volume.getMicCalibrationGain", Gives::Code, "the manager's has no code, only the gains"},
    {"getDownlinkDelayEstimation", "", "App.getDownlinkDelayEstimation", Gives::Code, ""},
    {"setHandsfreeDelay", "", "Source.setHandsfreeDelay", Gives::Code, ""},
    {"getMicrophoneTest", "", "App.getMicrophoneTest", Gives::Neutral, "the caller's list stays as it was"},
};

constexpr Repetition repetitions[] = {
    {"changeMainTrackStepVolume", "changeMainTrackStepVolume", "Source.getActiveSource", "the step stays as it was"},
    {"changeMainTrackStepVolume", "changeMainTrackStepVolume", "Volume.setTrackVolume", "the step stays as it was"},
    {"setMasterStepVolume", "", "Volume.setMasterVolume", "the step stays as it was"},
    {"a manager", "", "Volume.setMasterVolume", "the step stays as it was"},
};
// clang-format on

} // namespace faultrules

#endif
