#include "operationcalls.h"

#include "qmlaudiocontrol.h"
#include "qmlaudiopolicy.h"
#include "qmlaudiosettings.h"
#include "qmlplatform.h"

#include <QtCore/QHash>
#include <QtCore/QList>

#include <array>
#include <initializer_list>
#include <type_traits>
#include <utility>

using audio::AudioControl;
using audio::AudioDataBase;
using simulator::AudioChip;
using simulator::ObjectKind;
using simulator::Platform;

// The arguments of a call are all different, and what it meets is set up so that no two operations give the same.

namespace
{

/// 4.8 for 4.8F. None of the numbers here has more than six digits.
double decimal(float value)
{
    return QByteArray::number(double(value), 'g', 6).toDouble();
}

template<typename Value>
QVariant variant(const Value &value)
{
    if constexpr (std::is_same_v<Value, float>)
        return decimal(value);
    else if constexpr (std::is_enum_v<Value> || (std::is_integral_v<Value> && sizeof(Value) < sizeof(int) && !std::is_same_v<Value, bool>))
        return int(value);
    else
        return value;
}

template<typename Values>
QVariantList list(const Values &values)
{
    QVariantList items;
    for (const auto &value : values)
        items.append(variant(value));
    return items;
}

QVariantMap fields(std::initializer_list<std::pair<const char *, QVariant>> values)
{
    QVariantMap object;
    for (const auto &field : values)
        object.insert(QLatin1String(field.first), field.second);
    return object;
}

QVariantList presets(const EqBaseData *table)
{
    QVariantList items;
    for (int i = 0; i < 8; ++i)
        items.append(fields({{"type", table[i].type}, {"tag", table[i].tag}, {"gains", list(table[i].gains)}}));
    return items;
}

QString text(const char *name)
{
    return QString::fromLatin1(name);
}

/// Adds the calls of one object.
template<typename Target>
class Calls
{
public:
    Calls(const ScriptType &scriptType, QVector<OperationCall> &calls)
        : type(scriptType)
        , all(calls)
    {
    }

    template<typename Call>
    void acts(const char *signature, const char *arguments, Call call)
    {
        add(signature, arguments, ScriptKind::Acts, call);
    }
    template<typename Call>
    void looks(const char *signature, const char *arguments, Call call)
    {
        add(signature, arguments, ScriptKind::Looks, call);
    }

private:
    template<typename Call>
    void add(const char *signature, const char *arguments, ScriptKind kind, Call call)
    {
        all.append({&type, text(signature), text(arguments), kind, [call](Unit &unit) -> QVariant {
                        auto &target = *std::get<Target *>(unit);
                        if constexpr (std::is_void_v<std::invoke_result_t<Call, Target &>>) {
                            call(target);
                            return {};
                        } else {
                            return variant(call(target));
                        }
                    }});
    }

    const ScriptType &type;
    QVector<OperationCall> &all;
};

void addVolumes(Calls<AudioControl> &calls)
{
    using Control = AudioControl;
    calls.acts("setStepRange(range)", "40", [](Control &control) { control.setStepRange(40); });
    calls.acts("getStepRang()", "", [](Control &control) { return control.getStepRang(); });
    calls.acts("setAlterMode(on)", "false", [](Control &control) { control.setAlterMode(false); });
    calls.acts("getAlterMode()", "", [](Control &control) { return control.getAlterMode(); });
    calls.acts("getMasterStepVolume()", "", [](Control &control) { return control.getMasterStepVolume(); });
    calls.acts("getAlterStepVolume()", "", [](Control &control) { return control.getAlterStepVolume(); });
    calls.acts("isMute()", "", [](Control &control) { return control.isMute(); });
    calls.acts("setProfileMode(mode)", "3", [](Control &control) { control.setProfileMode(3); });
    calls.acts("setStreamVolume(tag, name, volume)", "1, 'S+CarLife_APP', 81", [](Control &control) {
        control.setStreamVolume(Control::Second, "S+CarLife_APP", 81);
    });
    calls.acts("getStreamVolume(tag, name)", "1, 'S+CarLife_APP'", [](Control &control) { return control.getStreamVolume(Control::Second, "S+CarLife_APP"); });
    calls.acts("setMasterVolume(volume)", "101", [](Control &control) { return control.setMasterVolume(101); });
    calls.acts("getMasterVolume()", "", [](Control &control) { return control.getMasterVolume(); });
    calls.acts("initTrackStepVolume(tag, volumes)", "1, {'S+DiscPlayer_APP': 21, 'S+GPS_APP': 22}", [](Control &control) {
        QHash<QString, quint8> volumes;
        volumes.insert(text("S+DiscPlayer_APP"), 21);
        volumes.insert(text("S+GPS_APP"), 22);
        control.initTrackStepVolume(Control::Second, volumes);
    });
    calls.acts("getCurMainTrackStepVolumeInfo()", "", [](Control &control) {
        QString name;
        quint8 step = 0;
        const int result = control.getCurMainTrackStepVolumeInfo(name, step);
        return fields({{"result", result}, {"name", name}, {"step", step}});
    });
    calls.acts("changeMainTrackStepVolume(up)", "true", [](Control &control) {
        QString name;
        quint8 step = 0;
        const int result = control.changeMainTrackStepVolume(true, name, step);
        return fields({{"result", result}, {"name", name}, {"step", step}});
    });
    calls.acts("getActivedAlterNumber()", "", [](Control &control) { return control.getActivedAlterNumber(); });
    calls.acts("changeAlterStepVolume(up, current)", "false, 9", [](Control &control) {
        quint8 step = 0;
        const int result = control.changeAlterStepVolume(false, 9, step);
        return fields({{"result", result}, {"step", step}});
    });
    calls.acts("setAlterVolume(volume, hicarCall)", "20, true", [](Control &control) { return control.setAlterVolume(20, true); });
    calls.acts("setAlterStepVolume(step, hicarCall)", "7, true", [](Control &control) { return control.setAlterStepVolume(7, true); });
    calls.acts("setMasterStepVolume(step)", "250", [](Control &control) { return control.setMasterStepVolume(250); });
    calls.acts("setMute(mute)", "false", [](Control &control) { control.setMute(false); });
    calls.acts("setBackEarphone(on)", "true", [](Control &control) { control.setBackEarphone(true); });
    calls.acts("muteBackEarphone(mute)", "true", [](Control &control) { control.muteBackEarphone(true); });
}

void addSound(Calls<AudioControl> &calls)
{
    using Control = AudioControl;
    calls.acts("setEqMode(mode)", "4", [](Control &control) { control.setEqMode(static_cast<Control::EqMode>(4)); });
    calls.acts("getEqGain(mode)", "1", [](Control &control) { return list(control.getEqGain(static_cast<Control::EqMode>(1))); });
    calls.acts("getSubGain(mode)", "1", [](Control &control) { return list(control.getSubGain(static_cast<Control::SubMode>(1))); });
    calls.acts("setEqGain(gains)", "[-8, -7.5, -6, -5, -4, -3, -2, -1, 0.5, 1, 2, 3, 4, 5, 6, 7]", [](Control &control) {
        control.setEqGain({-8, -7.5F, -6, -5, -4, -3, -2, -1, 0.5F, 1, 2, 3, 4, 5, 6, 7});
    });
    calls.acts("setEqGain10(gains)", "[1, 2, 3, 4, 5, 6, 7, 8, 9, 10]", [](Control &control) { control.setEqGain10({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}); });
    calls.acts("setEqValue(gains)", "[-7, -6, -5, -4, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8]", [](Control &control) {
        control.setEqValue({-7, -6, -5, -4, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8});
    });
    calls.acts("getEqInitValue()", "", [](Control &control) {
        QList<int> frequencies;
        control.getEqInitValue(frequencies);
        return list(frequencies);
    });
    calls.acts("setLoudnessSwitch(on)", "false", [](Control &control) { control.setLoudnessSwitch(false); });
    calls.acts("setFadeBalance(fade, balance)", "4, -7", [](Control &control) { control.setFadeBalance(4, -7); });
    calls.acts("setDpsEnable(enable)", "false", [](Control &control) { control.setDpsEnable(false); });
    calls.acts("setStereoEnable(enable)", "false", [](Control &control) { control.setStereoEnable(false); });
    calls.acts("setDpsUserGain(gain)", "2.5", [](Control &control) { control.setDpsUserGain(2.5F); });
    calls.acts("setFilter(channel, filter)", "2, {value1: 11, flag: 0, kind: 1, value2: 12, value3: 13, value4: 14}", [](Control &control) {
        Control::AudioFilter_t filter = {};
        filter.value1 = 11;
        filter.flag = 0;
        filter.kind = 1;
        filter.value2 = 12;
        filter.value3 = 13;
        filter.value4 = 14;
        control.setFilter(Control::LeftRear, filter);
    });
    calls.acts("setSpeakerDelay(delays)", "[1.5, 2.5, 3.5, 4.5, 5.5, 6.5]", [](Control &control) {
        control.setSpeakerDelay({1.5F, 2.5F, 3.5F, 4.5F, 5.5F, 6.5F});
    });
    calls.acts("setSpeakerDealy(channel, delay)", "3, 7.5", [](Control &control) { control.setSpeakerDealy(Control::RightRear, 7.5F); });
}

void addRouting(Calls<AudioControl> &calls)
{
    using Control = AudioControl;
    calls.acts("setOutputSource(trackOrTag, source)", "3, 'S+IPod_APP'", [](Control &control) { control.setOutputSource(Control::Uplink, "S+IPod_APP"); });
    calls.acts("setOutputSource(trackOrTag, source)", "'uplink', 'S+WebLink'", [](Control &control) { control.setOutputSource("uplink", "S+WebLink"); });
    calls.acts("setOutputFrontSource(trackOrTag, source, frontOnly)", "3, 'S+IPod_APP', true", [](Control &control) {
        control.setOutputFrontSource(Control::Uplink, "S+IPod_APP", true);
    });
    calls.acts("setOutputFrontSource(trackOrTag, source, frontOnly)", "'uplink', 'S+WebLink', true", [](Control &control) {
        control.setOutputFrontSource("uplink", "S+WebLink", true);
    });
    calls.acts(
        "setInputDestination(trackOrTag, destination)", "5, 'S+Mic_APP'", [](Control &control) { control.setInputDestination(Control::Input1, "S+Mic_APP"); });
    calls.acts("setInputDestination(trackOrTag, destination)", "'input1', 'S+BtPcmPhone'", [](Control &control) {
        control.setInputDestination("input1", "S+BtPcmPhone");
    });
    calls.acts("setAuxinChannel(channel)", "2", [](Control &control) { control.setAuxinChannel(static_cast<Control::AudioInChannel>(2)); });
    calls.acts("getAuxinChannel()", "", [](Control &control) { return control.getAuxinChannel(); });
    calls.acts("setI2SINChannel(channel)", "1", [](Control &control) { control.setI2SINChannel(static_cast<Control::AudioInChannel>(1)); });
    calls.acts("setMainAudioDunkingMode(mode)", "4294967290", [](Control &control) { control.setMainAudioDunkingMode(4294967290U); });
    calls.acts("setMainAudioDunkingTargetGain(gain)", "55", [](Control &control) { control.setMainAudioDunkingTargetGain(55); });
}

void addMicrophone(Calls<AudioControl> &calls)
{
    using Control = AudioControl;
    calls.acts("setMicroPhoneVolume(volume)", "34", [](Control &control) { control.setMicroPhoneVolume(34); });
    calls.acts("getMicAnalogGain()", "", [](Control &control) {
        float first = 0;
        float second = 0;
        const int result = control.getMicAnalogGain(&first, &second);
        return fields({{"result", result}, {"first", decimal(first)}, {"second", decimal(second)}});
    });
    calls.acts("setMicAnalogGain(first, second)", "2.5, 3.5", [](Control &control) { return control.setMicAnalogGain(2.5F, 3.5F); });
    calls.acts("setMicOpAndPga(op, pga)", "9.5, 1.25", [](Control &control) { return control.setMicOpAndPga(9.5F, 1.25F); });
    calls.acts("startMicGainCalibration()", "", [](Control &control) { return control.startMicGainCalibration(); });
    calls.acts("setMicGainCalibration()", "", [](Control &control) { return control.setMicGainCalibration(); });
    calls.acts("getMicCalibrationGain()", "", [](Control &control) {
        int first = 0;
        int second = 0;
        const int result = control.getMicCalibrationGain(&first, &second);
        return fields({{"result", result}, {"first", first}, {"second", second}});
    });
    calls.acts("setDownlinkDelayEstimation()", "", [](Control &control) { control.setDownlinkDelayEstimation(); });
    calls.acts("getDownlinkDelayEstimation()", "", [](Control &control) {
        short delay = 0;
        const int result = control.getDownlinkDelayEstimation(&delay);
        return fields({{"result", result}, {"delay", delay}});
    });
    calls.acts("setHandsfreeDelay(delay)", "-44", [](Control &control) { return control.setHandsfreeDelay(-44); });
    calls.acts("setAECQuality(quality)", "0", [](Control &control) { control.setAECQuality(static_cast<Control::AudioQuality>(0)); });
    calls.acts("getMicrophoneTest()", "", [](Control &control) {
        QList<int> values;
        control.getMicrophoneTest(values);
        return list(values);
    });
    calls.acts("setMicLeftRightSwitch(swap)", "true", [](Control &control) { control.setMicLeftRightSwitch(true); });
}

void addSituations(Calls<ZelAudioManager> &calls)
{
    using Policy = ZelAudioManager;
    calls.acts("updateAudioStatus(status)", "12", [](Policy &policy) { policy.updateAudioStatus(AudioStatusAndroidAutoSpeech); });
    calls.acts("updateAudioChannel(channel)", "17", [](Policy &policy) { policy.updateAudioChannel(AudioChannelCarLife); });
    calls.acts("currentAudioChannel()", "", [](Policy &policy) { return policy.currentAudioChannel(); });
    calls.acts("setVolume(type, volume, save)", "3, 19, true", [](Policy &policy) { policy.setVolume(ZelAudioTypeRing, 19, true); });
    calls.acts("getVolume(type)", "3", [](Policy &policy) { return policy.getVolume(ZelAudioTypeRing); });
    calls.acts("saveVolume()", "", [](Policy &policy) { policy.saveVolume(); });
    calls.acts("updateCurrentAudioVolume(up)", "true", [](Policy &policy) { policy.updateCurrentAudioVolume(true); });
    calls.acts("setVolResponse(state, on)", "6, true", [](Policy &policy) { policy.setVolResponse(static_cast<VolResponseState>(6), true); });
    calls.acts("_getAllChannelsFromCurrentType(type)", "3", [](Policy &policy) {
        QList<AudioChannel> channels;
        policy._getAllChannelsFromCurrentType(channels, ZelAudioTypeRing);
        return list(channels);
    });
    calls.acts("duck(level)", "35", [](Policy &policy) { policy.duck(35); });
    calls.acts("unDuck()", "", [](Policy &policy) { policy.unDuck(); });
    calls.acts("aaDuckAudio(first, second)", "31, 32", [](Policy &policy) { policy.aaDuckAudio(31, 32); });
    calls.acts("aaUnduckAudio(value)", "33", [](Policy &policy) { policy.aaUnduckAudio(33); });
    calls.acts("clDuckAudio(first, second)", "34, 35", [](Policy &policy) { policy.clDuckAudio(34, 35); });
    calls.acts("clUnduckAudio(value)", "36", [](Policy &policy) { policy.clUnduckAudio(36); });
    calls.acts("cpDuckAudio(value, level)", "37, 38", [](Policy &policy) { policy.cpDuckAudio(37, 38); });
    calls.acts("cpUnduckAudio(value)", "39", [](Policy &policy) { policy.cpUnduckAudio(39); });
    calls.acts("setCPConnected(connected)", "false", [](Policy &policy) { policy.setCPConnected(false); });
    calls.acts("getCPConnected()", "", [](Policy &policy) { return policy.getCPConnected(); });
    calls.acts("updateCPAAStatus(status)", "8", [](Policy &policy) { policy.updateCPAAStatus(static_cast<CPAAStatus>(8)); });
    calls.acts("setCpPhone(on)", "true", [](Policy &policy) { policy.setCpPhone(true); });
    calls.acts("onCarplayAlertStart()", "", [](Policy &policy) { policy.onCarplayAlertStart(); });
    calls.acts("onCarplayAlertStop()", "", [](Policy &policy) { policy.onCarplayAlertStop(); });
    calls.acts("setAudioMute(mute, count)", "true, 4", [](Policy &policy) { policy.setAudioMute(true, 4); });
    calls.acts("deMute()", "", [](Policy &policy) { policy.deMute(); });
    calls.acts("setMute(mute)", "false", [](Policy &policy) { policy.setMute(false); });
    calls.acts("isAttOn()", "", [](Policy &policy) { return policy.isAttOn(); });
    calls.acts("triggerAtt()", "", [](Policy &policy) { policy.triggerAtt(); });
    calls.acts("onRecvBackCar(on)", "true", [](Policy &policy) { policy.onRecvBackCar(true); });
    calls.acts("setHCconnect(on)", "true", [](Policy &policy) { policy.setHCconnect(true); });
}

void addSettings(Calls<ZelAudioManager> &calls)
{
    using Policy = ZelAudioManager;
    calls.acts("getEqBaseData()", "", [](Policy &policy) { return presets(policy.getEqBaseData()); });
    calls.acts("customEq(band)", "3", [](Policy &policy) { return policy.customEq(3); });
    calls.acts("eqType()", "", [](Policy &policy) { return policy.eqType(); });
    calls.acts("setEqType(type)", "5", [](Policy &policy) { policy.setEqType(5); });
    calls.acts("eqTypePrev()", "", [](Policy &policy) { policy.eqTypePrev(); });
    calls.acts("eqTypeNext()", "", [](Policy &policy) { policy.eqTypeNext(); });
    calls.acts("adjustCustomEq(value, band)", "5, 2", [](Policy &policy) { policy.adjustCustomEq(5, 2); });
    calls.acts("loudNess()", "", [](Policy &policy) { return policy.loudNess(); });
    calls.acts("setLoudNess(on)", "false", [](Policy &policy) { policy.setLoudNess(false); });
    calls.acts("micInputValue()", "", [](Policy &policy) { return policy.micInputValue(); });
    calls.acts("setMicInputValue(value)", "35", [](Policy &policy) { policy.setMicInputValue(35); });
    calls.acts("micTypeIsDefault()", "", [](Policy &policy) { return policy.micTypeIsDefault(); });
    calls.acts("setMicLeftRightSwitch(sw)", "false", [](Policy &policy) { policy.setMicLeftRightSwitch(false); });
    calls.acts("getMicAnalogGain()", "", [](Policy &policy) { return policy.getMicAnalogGain(); });
    calls.acts("getPlatformMicAnalogGain()", "", [](Policy &policy) {
        float left = 0;
        float right = 0;
        const int result = policy.getMicAnalogGain(&left, &right);
        return fields({{"result", result}, {"left", decimal(left)}, {"right", decimal(right)}});
    });
    calls.acts("setMicAnalogGain(left, right)", "12.5, 13.5", [](Policy &policy) { return policy.setMicAnalogGain(12.5F, 13.5F); });
    calls.acts("getMicAnalogOpAndPga()", "", [](Policy &policy) {
        float op = 0;
        int pga = 0;
        policy.getMicAnalogOpAndPga(op, pga);
        return fields({{"op", decimal(op)}, {"pga", pga}});
    });
    calls.acts("startMicGainCalibration()", "", [](Policy &policy) { return policy.startMicGainCalibration(); });
    calls.acts("setMicGainCalibration()", "", [](Policy &policy) { return policy.setMicGainCalibration(); });
    calls.acts("getMicCalibrationGain()", "", [](Policy &policy) {
        int first = 0;
        const float second = policy.getMicCalibrationGain(&first);
        return fields({{"first", first}, {"second", decimal(second)}});
    });
    calls.acts("setHandsfreeDelay(delay)", "-46", [](Policy &policy) { return policy.setHandsfreeDelay(-46); });
    calls.acts("setDownlinkDelayEstimation()", "", [](Policy &policy) { policy.setDownlinkDelayEstimation(); });
    calls.acts("getDownlinkDelayEstimation()", "", [](Policy &policy) {
        short delay = 0;
        const int result = policy.getDownlinkDelayEstimation(&delay);
        return fields({{"result", result}, {"delay", delay}});
    });
    calls.acts("setInputDestination(tag, name)", "6, 'S+Mic_APP'", [](Policy &policy) { policy.setInputDestination(AudioControl::Input2, "S+Mic_APP"); });
}

void addReaders(Calls<AudioDataBase> &calls)
{
    using Store = AudioDataBase;
    calls.looks("data(group, key, defaultValue)", "'EQ', 'Custom3', 66", [](Store &store) { return store.data(text("EQ"), text("Custom3"), 66); });
    calls.looks("data(group, key, defaultValue)", "'Custom3', 'EQ', 67", [](Store &store) { return store.data(text("Custom3"), text("EQ"), 67); });
    calls.looks("getVolume(type)", "4", [](Store &store) { return store.getVolume(ZelAudioTypeSpeech); });
    calls.looks("eqType()", "", [](Store &store) { return store.eqType(); });
    calls.looks("loudNess()", "", [](Store &store) { return store.loudNess(); });
    calls.looks("micType()", "", [](Store &store) { return store.micType(); });
    calls.looks("micInputValue()", "", [](Store &store) { return store.micInputValue(); });
    calls.looks("getCustomEQ(index)", "4", [](Store &store) { return store.getCustomEQ(4); });
    calls.looks("getAutoMicGain()", "", [](Store &store) { return store.getAutoMicGain(); });
    calls.looks("getHandsfreeDelay()", "", [](Store &store) { return store.getHandsfreeDelay(); });
    calls.looks("getEqBaseData()", "", [](Store &store) { return presets(store.getEqBaseData()); });
    calls.looks("getCurrentIndexInItem()", "", [](Store &store) { return store.getCurrentIndexInItem(); });
    calls.looks("getCurrentIndexInDefault(type)", "7", [](Store &store) { return store.getCurrentIndexInDefault(7); });
    calls.looks("getNextEqType(up)", "true", [](Store &store) { return store.getNextEqType(true); });
    calls.looks("getAudioStatusInfo(status)", "5", [](Store &store) {
        const ZelAudioInfo info = store.getAudioStatusInfo(AudioStatusCarPlayAlert);
        return fields({{"type", int(info.type)}, {"param", info.param}});
    });
    calls.looks("getStatusToSpName(status)", "8", [](Store &store) { return store.getStatusToSpName(AudioStatusCarPlaySpeech); });
    calls.looks("getChannelInfo(channel)", "7", [](Store &store) {
        const ZelAudioAChannelInfo info = store.getChannelInfo(AudioChannelCarPlayTelephony);
        return fields({{"type", int(info.type)}, {"spName", info.spName}});
    });
    calls.looks("getGroupDefaultData()", "", [](Store &store) {
        QHash<QString, uchar> volumes;
        store.getGroupDefaultData(volumes);
        QVariantMap object;
        for (auto entry = volumes.cbegin(); entry != volumes.cend(); ++entry)
            object.insert(entry.key(), int(entry.value()));
        return object;
    });
}

void addChip(Calls<Platform> &calls)
{
    calls.looks("effectiveGain(track, source, channel)", "'main', 'S+DiscPlayer', 8", [](Platform &platform) {
        return platform.chip()->effectiveGain(text("main"), text("S+DiscPlayer"), 8);
    });
    calls.looks("effectiveSound(track, source, channel, band)", "'main', 'S+DiscPlayer', 4, 9", [](Platform &platform) {
        const simulator::Sound sound = platform.chip()->effectiveSound(text("main"), text("S+DiscPlayer"), 4, 9);
        return fields({{"gain", sound.gain}, {"equalizer", decimal(float(sound.equalizer))}, {"delay", decimal(float(sound.delay))}});
    });
    calls.looks("effectiveGainDb(track, source, channel, band)", "'main', 'S+DiscPlayer', 2, 5", [](Platform &platform) {
        return platform.chip()->effectiveGainDb(text("main"), text("S+DiscPlayer"), 2, 5);
    });
    calls.looks("effectiveMainVolume()", "", [](Platform &platform) { return platform.chip()->effectiveMainVolume(); });
    calls.looks("equalizerGain(channel, band)", "2, 12", [](Platform &platform) { return platform.chip()->equalizerGain(2, 12); });
    calls.looks("masterVolume()", "", [](Platform &platform) { return platform.chip()->masterVolume(); });
    calls.looks("trackVolume(track, source)", "'second', 'S+CarLife'", [](Platform &platform) {
        return platform.chip()->trackVolume(text("second"), text("S+CarLife"));
    });
    calls.looks("alternativeVolume()", "", [](Platform &platform) { return platform.chip()->alternativeVolume(); });
    calls.looks("isMuted(track)", "'second'", [](Platform &platform) { return platform.chip()->isMuted(text("second")); });
    calls.looks("duckingMode()", "", [](Platform &platform) { return platform.chip()->duckingMode(); });
    calls.looks("duckingGain()", "", [](Platform &platform) { return platform.chip()->duckingGain(); });
    calls.looks("isDucked()", "", [](Platform &platform) { return platform.chip()->isDucked(); });
    calls.looks("channelGain(channel)", "8", [](Platform &platform) { return platform.chip()->channelGain(8); });
    calls.looks("activeSource(track)", "'second'", [](Platform &platform) { return platform.chip()->activeSource(text("second")); });
    calls.acts("setActiveSource(track, source)", "'second', 'S+IPod'", [](Platform &platform) {
        return platform.chip()->setActiveSource(text("second"), text("S+IPod"));
    });
    calls.looks("outputSource(track)", "'second'", [](Platform &platform) { return platform.chip()->outputSource(text("second")); });
    calls.looks("outputChannelMask(track)", "'second'", [](Platform &platform) { return platform.chip()->outputChannelMask(text("second")); });
    calls.looks("frontRearMode()", "", [](Platform &platform) { return platform.chip()->frontRearMode(); });
    calls.looks("inputDestination(track)", "'input1'", [](Platform &platform) { return platform.chip()->inputDestination(text("input1")); });
    calls.looks("inputSelectPin(input)", "2", [](Platform &platform) { return platform.chip()->inputSelectPin(2); });
    calls.looks("alternativeCount(track)", "'second'", [](Platform &platform) { return platform.chip()->alternativeCount(text("second")); });
    calls.acts("setAlternativeCount(count)", "9", [](Platform &platform) { platform.chip()->setAlternativeCount(9); });
    calls.looks("lastEqParameter()", "", [](Platform &platform) {
        const audio::audio_eq_parameter_t record = platform.chip()->lastEqParameter();
        return fields({{"channel", record.channel}, {"frequency", list(record.frequency)}, {"gain", list(record.gain)}, {"type", list(record.type)}});
    });
    calls.looks("lastExtEqParameter()", "", [](Platform &platform) {
        const audio::audio_ext_eq_parameter_t record = platform.chip()->lastExtEqParameter();
        QVariantList frequencies;
        QVariantList gains;
        QVariantList qualities;
        QVariantList types;
        for (const audio::audio_ext_eq_band_t &band : record.band) {
            frequencies.append(int(band.frequency));
            gains.append(decimal(band.gain));
            qualities.append(decimal(band.q));
            types.append(band.type);
        }
        return fields({{"channel", record.channel}, {"frequency", frequencies}, {"gain", gains}, {"q", qualities}, {"type", types}});
    });
    calls.looks("filter(channel)", "2", [](Platform &platform) {
        const auto record = platform.chip()->filter(2).value();
        return fields({{"channel", record.channel},
                       {"value1", int(record.value1)},
                       {"notFlag", int(record.notFlag)},
                       {"value2", int(record.value2)},
                       {"kind", int(record.kind)},
                       {"value3", int(record.value3)},
                       {"value4", int(record.value4)}});
    });
    calls.looks("isLoudnessOn()", "", [](Platform &platform) { return platform.chip()->isLoudnessOn(); });
    calls.looks("speakerDelay(channel)", "4", [](Platform &platform) { return platform.chip()->speakerDelay(4); });
    calls.looks("isDpsEnabled()", "", [](Platform &platform) { return platform.chip()->isDpsEnabled(); });
    calls.looks("dpsUserGain()", "", [](Platform &platform) { return platform.chip()->dpsUserGain(); });
    calls.looks("isStereoEnabled()", "", [](Platform &platform) { return platform.chip()->isStereoEnabled(); });
    calls.looks("micVolume()", "", [](Platform &platform) { return platform.chip()->micVolume(); });
    calls.looks("micPgaGain()", "", [](Platform &platform) { return list(platform.chip()->micPgaGain()); });
    calls.looks("micOpGain()", "", [](Platform &platform) { return list(platform.chip()->micOpGain()); });
    calls.looks("micAnalogGain()", "", [](Platform &platform) { return list(platform.chip()->micAnalogGain()); });
    calls.looks("calibration()", "", [](Platform &platform) { return platform.chip()->calibration(); });
    calls.looks("calibrationGains()", "", [](Platform &platform) { return list(platform.chip()->calibrationGains()); });
    calls.acts("setCalibrationGains(first, second)", "28, 29", [](Platform &platform) { platform.chip()->setCalibrationGains(28, 29); });
    calls.looks("downlinkDelay()", "", [](Platform &platform) { return platform.chip()->downlinkDelay(); });
    calls.acts("setDownlinkDelay(delay)", "-27", [](Platform &platform) { platform.chip()->setDownlinkDelay(-27); });
    calls.looks("handsfreeDelay()", "", [](Platform &platform) { return platform.chip()->handsfreeDelay(); });
    calls.looks("isMicLeftRightSwapped()", "", [](Platform &platform) { return platform.chip()->isMicLeftRightSwapped(); });
    calls.looks("aecQuality()", "", [](Platform &platform) { return platform.chip()->aecQuality(); });
    calls.looks("microphoneTest()", "", [](Platform &platform) { return list(platform.chip()->microphoneTest()); });
    calls.acts("setMicrophoneTest(values)", "[21, 22, 23, 24, 25, 26, 27, 65535]", [](Platform &platform) {
        platform.chip()->setMicrophoneTest({21, 22, 23, 24, 25, 26, 27, 65535});
    });
    calls.looks("state()", "", [](Platform &platform) {
        QVariantList items;
        const QVector<simulator::StateItem> table = platform.chip()->stateTable();
        for (const simulator::StateItem &item : table)
            items.append(fields({{"group", item.group}, {"name", item.name}, {"value", item.value}}));
        return items;
    });
}

void addCar(Calls<Platform> &calls)
{
    calls.acts("setReverseGear(engaged)", "true", [](Platform &platform) { platform.setReverseGear(true); });
    calls.acts("setHomeUiType(type)", "7", [](Platform &platform) { platform.setHomeUiType(7); });
    calls.acts("setCallDuration(milliseconds)", "12", [](Platform &platform) { platform.setCallDuration(12); });
    calls.acts("reset()", "", [](Platform &platform) { platform.reset(); });
    calls.looks("journal()", "", [](Platform &platform) { return platform.journal()->calls(); });
    calls.looks("journalText()", "", [](Platform &platform) { return platform.journal()->toText(); });
    calls.looks("clearJournal()", "", [](Platform &platform) { platform.journal()->clear(); });
    calls.acts("fail(operation, code)", "'Volume.setTrackVolume', 81", [](Platform &platform) { platform.faults()->fail(text("Volume.setTrackVolume"), 81); });
    calls.acts("failOnce(operation, code, n)", "'Volume.setTrackVolume', 82, 3", [](Platform &platform) {
        platform.faults()->fail(text("Volume.setTrackVolume"), 82, 3);
    });
    calls.acts("failAfterWriting(operation, code)", "'Volume.getTrackVolume', 83", [](Platform &platform) {
        platform.faults()->failAfterWriting(text("Volume.getTrackVolume"), 83);
    });
    calls.acts("failFactory(kind)", "'Mixer'", [](Platform &platform) { platform.faults()->failFactory(text("Mixer")); });
    calls.looks("pendingFaults()", "", [](Platform &platform) { return platform.faults()->pending(); });
    calls.acts("clearFaults()", "", [](Platform &platform) { platform.faults()->clear(); });
    calls.looks("alive(kind)", "'App'", [](Platform &platform) { return platform.books()->alive(ObjectKind::App); });
    calls.looks("made(kind)", "'Source'", [](Platform &platform) { return platform.books()->made(ObjectKind::Source); });
    calls.looks("problems()", "", [](Platform &platform) { return platform.books()->problems(); });
}

} // namespace

QString OperationCall::name() const
{
    return signature.left(signature.indexOf(QLatin1Char('(')));
}

QString OperationCall::script() const
{
    return type->name() + QLatin1Char('.') + name() + QLatin1Char('(') + arguments + QLatin1Char(')');
}

QVector<OperationCall> operationCalls()
{
    QVector<OperationCall> all;
    Calls<AudioControl> control(QmlAudioControl::scriptType(), all);
    addVolumes(control);
    addSound(control);
    addRouting(control);
    addMicrophone(control);
    Calls<ZelAudioManager> policy(QmlAudioPolicy::scriptType(), all);
    addSituations(policy);
    addSettings(policy);
    Calls<AudioDataBase> settings(QmlAudioSettings::scriptType(), all);
    addReaders(settings);
    Calls<Platform> platform(QmlPlatform::scriptType(), all);
    addChip(platform);
    addCar(platform);
    return all;
}
