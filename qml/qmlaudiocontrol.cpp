#include "qmlaudiocontrol.h"

#include "scriptcall.h"
#include "scriptvalues.h"

using audio::AudioControl;

namespace
{

template<typename Result, typename... Parameters, std::size_t count>
Result call(const QObject *callee, Result (AudioControl::*operation)(Parameters...), const ScriptArgument (&arguments)[count])
{
    static_assert(count == sizeof...(Parameters), "one named argument for each parameter");
    return callFromScript(callee, &AudioControl::getInstance, operation, arguments);
}

} // namespace

QmlAudioControl::QmlAudioControl(QObject *parent)
    : QObject(parent)
{
}

// Small state ---------------------------------------------------------------------------------------------------------------

void QmlAudioControl::setStepRange(const QJSValue &range)
{
    call(this, &AudioControl::setStepRange, {{"range", range}});
}

int QmlAudioControl::getStepRang()
{
    return AudioControl::getInstance()->getStepRang();
}

void QmlAudioControl::setAlterMode(const QJSValue &on)
{
    call(this, &AudioControl::setAlterMode, {{"on", on}});
}

bool QmlAudioControl::getAlterMode()
{
    return AudioControl::getInstance()->getAlterMode();
}

int QmlAudioControl::getMasterStepVolume()
{
    return AudioControl::getInstance()->getMasterStepVolume();
}

int QmlAudioControl::getAlterStepVolume()
{
    return AudioControl::getInstance()->getAlterStepVolume();
}

bool QmlAudioControl::isMute()
{
    return AudioControl::getInstance()->isMute();
}

void QmlAudioControl::setProfileMode(const QJSValue &mode)
{
    call(this, &AudioControl::setProfileMode, {{"mode", mode}});
}

// Stream and master volume --------------------------------------------------------------------------------------------------

void QmlAudioControl::setStreamVolume(const QJSValue &tag, const QJSValue &name, const QJSValue &volume)
{
    call(this, &AudioControl::setStreamVolume, {{"tag", tag}, {"name", name}, {"volume", volume}});
}

int QmlAudioControl::getStreamVolume(const QJSValue &tag, const QJSValue &name)
{
    return call(this, &AudioControl::getStreamVolume, {{"tag", tag}, {"name", name}});
}

int QmlAudioControl::setMasterVolume(const QJSValue &volume)
{
    return call(this, &AudioControl::setMasterVolume, {{"volume", volume}});
}

int QmlAudioControl::getMasterVolume()
{
    return AudioControl::getInstance()->getMasterVolume();
}

void QmlAudioControl::initTrackStepVolume(const QJSValue &tag, const QJSValue &volumes)
{
    call(this, &AudioControl::initTrackStepVolume, {{"tag", tag}, {"volumes", volumes}});
}

// Step volume ---------------------------------------------------------------------------------------------------------------

QVariantMap QmlAudioControl::getCurMainTrackStepVolumeInfo()
{
    QString name;
    quint8 step = 0;
    const int result = AudioControl::getInstance()->getCurMainTrackStepVolumeInfo(name, step);
    return {{QStringLiteral("result"), result}, {QStringLiteral("name"), name}, {QStringLiteral("step"), int(step)}};
}

QVariantMap QmlAudioControl::changeMainTrackStepVolume(const QJSValue &up)
{
    ScriptArguments arguments(this);
    const auto goUp = ScriptCall::read<bool>(arguments, {"up", up});
    if (arguments.failed())
        return {};
    QString name;
    quint8 step = 0;
    const int result = AudioControl::getInstance()->changeMainTrackStepVolume(goUp, name, step);
    return {{QStringLiteral("result"), result}, {QStringLiteral("name"), name}, {QStringLiteral("step"), int(step)}};
}

int QmlAudioControl::getActivedAlterNumber()
{
    return AudioControl::getInstance()->getActivedAlterNumber();
}

QVariantMap QmlAudioControl::changeAlterStepVolume(const QJSValue &up, const QJSValue &current)
{
    ScriptArguments arguments(this);
    const auto goUp = ScriptCall::read<bool>(arguments, {"up", up});
    const auto from = ScriptCall::read<quint8>(arguments, {"current", current});
    if (arguments.failed())
        return {};
    quint8 step = 0;
    const int result = AudioControl::getInstance()->changeAlterStepVolume(goUp, from, step);
    return {{QStringLiteral("result"), result}, {QStringLiteral("step"), int(step)}};
}

int QmlAudioControl::setAlterVolume(const QJSValue &volume, const QJSValue &hicarCall)
{
    return call(this, &AudioControl::setAlterVolume, {{"volume", volume}, {"hicarCall", hicarCall}});
}

int QmlAudioControl::setAlterStepVolume(const QJSValue &step, const QJSValue &hicarCall)
{
    return call(this, &AudioControl::setAlterStepVolume, {{"step", step}, {"hicarCall", hicarCall}});
}

int QmlAudioControl::setMasterStepVolume(const QJSValue &step)
{
    return call(this, &AudioControl::setMasterStepVolume, {{"step", step}});
}

// Mute ----------------------------------------------------------------------------------------------------------------------

void QmlAudioControl::setMute(const QJSValue &mute)
{
    call(this, &AudioControl::setMute, {{"mute", mute}});
}

void QmlAudioControl::setBackEarphone(const QJSValue &on)
{
    call(this, &AudioControl::setBackEarphone, {{"on", on}});
}

void QmlAudioControl::muteBackEarphone(const QJSValue &mute)
{
    call(this, &AudioControl::muteBackEarphone, {{"mute", mute}});
}

// Equalizer and loudness ----------------------------------------------------------------------------------------------------

void QmlAudioControl::setEqMode(const QJSValue &mode)
{
    call(this, &AudioControl::setEqMode, {{"mode", mode}});
}

QVariantList QmlAudioControl::getEqGain(const QJSValue &mode)
{
    return ScriptValues::array(call(this, &AudioControl::getEqGain, {{"mode", mode}}));
}

QVariantList QmlAudioControl::getSubGain(const QJSValue &mode)
{
    return ScriptValues::array(call(this, &AudioControl::getSubGain, {{"mode", mode}}));
}

void QmlAudioControl::setEqGain(const QJSValue &gains)
{
    call(this, &AudioControl::setEqGain, {{"gains", gains}});
}

void QmlAudioControl::setEqGain10(const QJSValue &gains)
{
    call(this, &AudioControl::setEqGain10, {{"gains", gains}});
}

void QmlAudioControl::setEqValue(const QJSValue &gains)
{
    call(this, &AudioControl::setEqValue, {{"gains", gains}});
}

QVariantList QmlAudioControl::getEqInitValue()
{
    QList<int> frequencies;
    AudioControl::getInstance()->getEqInitValue(frequencies);
    return ScriptValues::array(frequencies);
}

void QmlAudioControl::setLoudnessSwitch(const QJSValue &on)
{
    call(this, &AudioControl::setLoudnessSwitch, {{"on", on}});
}

// Fade and balance ----------------------------------------------------------------------------------------------------------

void QmlAudioControl::setFadeBalance(const QJSValue &fade, const QJSValue &balance)
{
    call(this, &AudioControl::setFadeBalance, {{"fade", fade}, {"balance", balance}});
}

// Routing and inputs --------------------------------------------------------------------------------------------------------

void QmlAudioControl::setOutputSource(const QJSValue &trackOrTag, const QJSValue &source)
{
    if (trackOrTag.isNumber())
        call(this, qOverload<AudioControl::AudioTag, const char *>(&AudioControl::setOutputSource), {{"tag", trackOrTag}, {"source", source}});
    else
        call(this, qOverload<const char *, const char *>(&AudioControl::setOutputSource), {{"track", trackOrTag}, {"source", source}});
}

void QmlAudioControl::setOutputFrontSource(const QJSValue &trackOrTag, const QJSValue &source, const QJSValue &frontOnly)
{
    if (trackOrTag.isNumber()) {
        call(this,
             qOverload<AudioControl::AudioTag, const char *, bool>(&AudioControl::setOutputFrontSource),
             {{"tag", trackOrTag}, {"source", source}, {"frontOnly", frontOnly}});
    } else {
        call(this,
             qOverload<const char *, const char *, bool>(&AudioControl::setOutputFrontSource),
             {{"track", trackOrTag}, {"source", source}, {"frontOnly", frontOnly}});
    }
}

void QmlAudioControl::setInputDestination(const QJSValue &trackOrTag, const QJSValue &destination)
{
    if (trackOrTag.isNumber())
        call(this, qOverload<AudioControl::AudioTag, const char *>(&AudioControl::setInputDestination), {{"tag", trackOrTag}, {"destination", destination}});
    else
        call(this, qOverload<const char *, const char *>(&AudioControl::setInputDestination), {{"track", trackOrTag}, {"destination", destination}});
}

void QmlAudioControl::setAuxinChannel(const QJSValue &channel)
{
    call(this, &AudioControl::setAuxinChannel, {{"channel", channel}});
}

int QmlAudioControl::getAuxinChannel()
{
    return AudioControl::getInstance()->getAuxinChannel();
}

void QmlAudioControl::setI2SINChannel(const QJSValue &channel)
{
    call(this, &AudioControl::setI2SINChannel, {{"channel", channel}});
}

void QmlAudioControl::setMainAudioDunkingMode(const QJSValue &mode)
{
    call(this, &AudioControl::setMainAudioDunkingMode, {{"mode", mode}});
}

void QmlAudioControl::setMainAudioDunkingTargetGain(const QJSValue &gain)
{
    call(this, &AudioControl::setMainAudioDunkingTargetGain, {{"gain", gain}});
}

// Microphone and voice ------------------------------------------------------------------------------------------------------

void QmlAudioControl::setMicroPhoneVolume(const QJSValue &volume)
{
    call(this, &AudioControl::setMicroPhoneVolume, {{"volume", volume}});
}

QVariantMap QmlAudioControl::getMicAnalogGain()
{
    float first = 0;
    float second = 0;
    const int result = AudioControl::getInstance()->getMicAnalogGain(&first, &second);
    return {
        {QStringLiteral("result"), result}, {QStringLiteral("first"), ScriptValues::decimal(first)}, {QStringLiteral("second"), ScriptValues::decimal(second)}};
}

int QmlAudioControl::setMicAnalogGain(const QJSValue &first, const QJSValue &second)
{
    return call(this, &AudioControl::setMicAnalogGain, {{"first", first}, {"second", second}});
}

int QmlAudioControl::setMicOpAndPga(const QJSValue &op, const QJSValue &pga)
{
    return call(this, &AudioControl::setMicOpAndPga, {{"op", op}, {"pga", pga}});
}

int QmlAudioControl::startMicGainCalibration()
{
    return AudioControl::getInstance()->startMicGainCalibration();
}

int QmlAudioControl::setMicGainCalibration()
{
    return AudioControl::getInstance()->setMicGainCalibration();
}

QVariantMap QmlAudioControl::getMicCalibrationGain()
{
    int first = 0;
    int second = 0;
    const int result = AudioControl::getInstance()->getMicCalibrationGain(&first, &second);
    return {{QStringLiteral("result"), result}, {QStringLiteral("first"), first}, {QStringLiteral("second"), second}};
}

void QmlAudioControl::setDownlinkDelayEstimation()
{
    AudioControl::getInstance()->setDownlinkDelayEstimation();
}

QVariantMap QmlAudioControl::getDownlinkDelayEstimation()
{
    short delay = 0;
    const int result = AudioControl::getInstance()->getDownlinkDelayEstimation(&delay);
    return {{QStringLiteral("result"), result}, {QStringLiteral("delay"), int(delay)}};
}

int QmlAudioControl::setHandsfreeDelay(const QJSValue &delay)
{
    return call(this, &AudioControl::setHandsfreeDelay, {{"delay", delay}});
}

void QmlAudioControl::setAECQuality(const QJSValue &quality)
{
    call(this, &AudioControl::setAECQuality, {{"quality", quality}});
}

QVariantList QmlAudioControl::getMicrophoneTest()
{
    QList<int> values;
    AudioControl::getInstance()->getMicrophoneTest(values);
    return ScriptValues::array(values);
}

void QmlAudioControl::setMicLeftRightSwitch(const QJSValue &swap)
{
    call(this, &AudioControl::setMicLeftRightSwitch, {{"swap", swap}});
}

// Output processing ---------------------------------------------------------------------------------------------------------

void QmlAudioControl::setDpsEnable(const QJSValue &enable)
{
    call(this, &AudioControl::setDpsEnable, {{"enable", enable}});
}

void QmlAudioControl::setStereoEnable(const QJSValue &enable)
{
    call(this, &AudioControl::setStereoEnable, {{"enable", enable}});
}

void QmlAudioControl::setDpsUserGain(const QJSValue &gain)
{
    call(this, &AudioControl::setDpsUserGain, {{"gain", gain}});
}

void QmlAudioControl::setFilter(const QJSValue &channel, const QJSValue &filter)
{
    ScriptArguments arguments(this);
    const auto output = ScriptCall::read<AudioControl::AudioOutChannel>(arguments, {"channel", channel});
    AudioControl::AudioFilter_t record = {};
    const ScriptArgument fields = {"filter", filter};
    arguments.readField(fields, "value1", record.value1);
    arguments.readField(fields, "flag", record.flag);
    arguments.readField(fields, "kind", record.kind);
    arguments.readField(fields, "value2", record.value2);
    arguments.readField(fields, "value3", record.value3);
    arguments.readField(fields, "value4", record.value4);
    if (!arguments.failed())
        AudioControl::getInstance()->setFilter(output, record);
}

void QmlAudioControl::setSpeakerDelay(const QJSValue &delays)
{
    call(this, &AudioControl::setSpeakerDelay, {{"delays", delays}});
}

void QmlAudioControl::setSpeakerDealy(const QJSValue &channel, const QJSValue &delay)
{
    call(this, &AudioControl::setSpeakerDealy, {{"channel", channel}, {"delay", delay}});
}
