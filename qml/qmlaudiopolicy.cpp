#include "qmlaudiopolicy.h"

#include "audiopolicyinspector.h"
#include "scriptvalues.h"
#include "settingsfile.h"

#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtCore/QScopeGuard>

#include <utility>

namespace
{

/// The manager saves when it starts: what that finds is told, once, with what to do about it. The store tells only what went wrong.
ZelAudioManager *managerOfProcess()
{
    ZelAudioManager *const manager = ZelAudioManager::instance();
    static bool isTold = false;
    if (!std::exchange(isTold, true) && !SettingsFile::canBeSaved()) {
        qWarning(
            "QzAudio: settings cannot be saved: there is no folder %s that can be written; on a desk start the program with \"qzaudio-with-flash COMMAND\".",
            qUtf8Printable(QFileInfo(SettingsFile::path()).path()));
    }
    return manager;
}

QVariantList array(const QList<int> &values)
{
    return {values.cbegin(), values.cend()};
}

} // namespace

AudioPolicyState::AudioPolicyState(QObject *parent)
    : AudioPolicyState(&managerOfProcess, parent)
{
}

AudioPolicyState::AudioPolicyState(const ManagerProvider &giveManager, QObject *parent)
    : QObject(parent)
    , m_provider(giveManager)
{
}

ZelAudioManager &AudioPolicyState::manager()
{
    ZelAudioManager *const current = m_provider();
    if (current != m_known) {
        const bool first = m_shown.volumes.isEmpty();
        m_known = current;
        connect(current, &ZelAudioManager::zelvolumeChanged, this, &AudioPolicyState::zelvolumeChanged);
        // The manager's own slots were connected first, so these see what the time-out has brought.
        const auto timers = AudioPolicyInspector(*current).timers();
        for (const AudioPolicyInspector::Timer &entry : timers)
            connect(entry.timer, &QTimer::timeout, this, &AudioPolicyState::refresh);
        if (first)
            m_shown = currentState();
        else
            refresh();
    }
    return *current;
}

AudioPolicyState::State AudioPolicyState::currentState()
{
    const AudioPolicyInspector inspector(*m_known);
    return {inspector.status(),
            inspector.channel(),
            audio::AudioControl::getInstance()->isMute(),
            array(inspector.volumes()),
            inspector.equalizerType(),
            array(inspector.customCurve())};
}

void AudioPolicyState::refresh()
{
    if (!m_known)
        return;
    const State before = m_shown;
    m_shown = currentState();
    if (m_shown.status != before.status)
        Q_EMIT statusChanged();
    if (m_shown.channel != before.channel)
        Q_EMIT channelChanged();
    if (m_shown.muted != before.muted)
        Q_EMIT mutedChanged();
    if (m_shown.volumes != before.volumes)
        Q_EMIT volumesChanged();
    if (m_shown.equalizerType != before.equalizerType)
        Q_EMIT equalizerTypeChanged();
    if (m_shown.customCurve != before.customCurve)
        Q_EMIT customCurveChanged();
}

int AudioPolicyState::status()
{
    return AudioPolicyInspector(manager()).status();
}

int AudioPolicyState::channel()
{
    return AudioPolicyInspector(manager()).channel();
}

bool AudioPolicyState::muted()
{
    manager();
    return audio::AudioControl::getInstance()->isMute();
}

QVariantList AudioPolicyState::volumes()
{
    return array(AudioPolicyInspector(manager()).volumes());
}

int AudioPolicyState::equalizerType()
{
    return AudioPolicyInspector(manager()).equalizerType();
}

QVariantList AudioPolicyState::customCurve()
{
    return array(AudioPolicyInspector(manager()).customCurve());
}

template<>
ZelAudioManager &scriptTarget<ZelAudioManager>(QObject &callee)
{
    return static_cast<QmlAudioPolicy &>(callee).manager();
}

namespace
{

/// Another band would stop the process.
void adjustCustomEq(ZelAudioManager &manager, int value, ScriptRange<0, 15> band)
{
    manager.adjustCustomEq(value, band.value);
}

constexpr ScriptRow operations[] = {
    {"status and volume"},
    {SCRIPT_CALL(ZelAudioManager, updateAudioStatus), "status", "reports what sounds now and applies its volume"},
    {SCRIPT_CALL(ZelAudioManager, updateAudioChannel), "channel", "reports the channel chosen and routes it to the main track"},
    {SCRIPT_CALL(ZelAudioManager, currentAudioChannel), "", "the channel last reported, 0 until then"},
    {SCRIPT_CALL(ZelAudioManager, setVolume), "type, volume, save", "the volume of all channels of a type, usually 0 to 25; true saves it, too"},
    {SCRIPT_CALL(ZelAudioManager, getVolume), "type", "the volume of a type, saved or not"},
    {SCRIPT_CALL(ZelAudioManager, saveVolume), "", "saves all six volumes"},
    {SCRIPT_CALL(ZelAudioManager, updateCurrentAudioVolume), "up", "the volume key: one step up or down for what sounds now, saved"},
    {SCRIPT_CALL(ZelAudioManager, setVolResponse), "state, on", "only logs that it was called"},
    {SCRIPT_CALL(ZelAudioManager, _getAllChannelsFromCurrentType), "channels, type", "the channels of a volume type, ascending"},
    {"ducking and phone projection"},
    {SCRIPT_CALL(ZelAudioManager, duck), "level", "lowers the main audio to a fixed gain; the level is only logged"},
    {SCRIPT_CALL(ZelAudioManager, unDuck), "", "restores the main audio at once, whoever lowered it"},
    {SCRIPT_CALL(ZelAudioManager, aaDuckAudio), "first, second", "an Android Auto prompt begins; the arguments are not used"},
    {SCRIPT_CALL(ZelAudioManager, aaUnduckAudio), "value", "it ends; the argument is not used"},
    {SCRIPT_CALL(ZelAudioManager, clDuckAudio), "first, second", "a CarLife prompt begins; the arguments are not used"},
    {SCRIPT_CALL(ZelAudioManager, clUnduckAudio), "value", "it ends; the argument is not used"},
    {SCRIPT_CALL(ZelAudioManager, cpDuckAudio), "value, level", "a CarPlay prompt begins: lowers at once, applies the prompts' volume after 1000 ms"},
    {SCRIPT_CALL(ZelAudioManager, cpUnduckAudio), "value", "a CarPlay prompt ends: restores after 500 ms without a new one"},
    {SCRIPT_CALL(ZelAudioManager, setCPConnected), "connected", "whether CarPlay is connected; only remembered"},
    {SCRIPT_CALL(ZelAudioManager, getCPConnected), "", "what setCPConnected() was given last"},
    {SCRIPT_CALL(ZelAudioManager, updateCPAAStatus), "status", "only logs that it was called"},
    {SCRIPT_CALL(ZelAudioManager, setCpPhone), "on", "only logs that it was called"},
    {SCRIPT_CALL(ZelAudioManager, onCarplayAlertStart), "", "does nothing"},
    {SCRIPT_CALL(ZelAudioManager, onCarplayAlertStop), "", "does nothing"},
    {"mute, attenuation and reverse gear"},
    {SCRIPT_CALL(ZelAudioManager, setAudioMute), "mute, count", "mutes for count times 50 ms; with false, or a negative count, unmutes"},
    {SCRIPT_CALL(ZelAudioManager, deMute), "", "unmutes; the timer of a timed mute keeps running"},
    {SCRIPT_CALL(ZelAudioManager, setMute), "mute", "mutes or unmutes at once, without a time"},
    {SCRIPT_CALL(ZelAudioManager, isAttOn), "", "whether it is muted"},
    {SCRIPT_CALL(ZelAudioManager, triggerAtt), "", "mutes when audible, unmutes when muted"},
    {SCRIPT_CALL(ZelAudioManager, onRecvBackCar), "on", "reverse gear: lowers the main audio as a CarPlay prompt does, or restores it"},
    {SCRIPT_CALL(ZelAudioManager, setHCconnect), "on", "a HiCar call is connected or gone"},
    {"equalizer"},
    {SCRIPT_CALL(ZelAudioManager, getEqBaseData), "", "the eight presets: [{type, tag, gains}, …]"},
    {SCRIPT_CALL(ZelAudioManager, customEq), "band", "a band, 0 to 15, of the custom curve as stored: twice what adjustCustomEq() was given"},
    {SCRIPT_CALL(ZelAudioManager, eqType), "", "the stored equalizer type, usually 0 to 7; 7 is the custom curve"},
    {SCRIPT_CALL(ZelAudioManager, setEqType), "type", "applies and stores an equalizer type, 0 to 7; 100 applies the stored one"},
    {SCRIPT_CALL(ZelAudioManager, eqTypePrev), "", "applies and stores the type before the stored one"},
    {SCRIPT_CALL(ZelAudioManager, eqTypeNext), "", "applies and stores the type after the stored one"},
    {"adjustCustomEq",
     scriptCall<&adjustCustomEq>,
     "value, band",
     "a band of the custom curve to value times 2 dB; another band throws a RangeError, where the library would stop the process"},
    {SCRIPT_CALL(ZelAudioManager, loudNess), "", "whether loudness is on, as stored"},
    {SCRIPT_CALL(ZelAudioManager, setLoudNess), "on", "switches loudness and stores it; every start switches it off"},
    {"microphone"},
    {SCRIPT_CALL(ZelAudioManager, micInputValue), "", "the stored microphone volume, usually 0 to 91"},
    {SCRIPT_CALL(ZelAudioManager, setMicInputValue), "value", "sets and stores the microphone volume, 0 to 91"},
    {SCRIPT_CALL(ZelAudioManager, micTypeIsDefault), "", "whether the original microphone is chosen"},
    {SCRIPT_CALL(ZelAudioManager, setMicLeftRightSwitch), "sw", "chooses and stores the microphone, true for the original one, and applies its gain and delay"},
    {"getMicAnalogGain", scriptCall<qOverload<>(&ZelAudioManager::getMicAnalogGain)>, "", "the stored gain in whole dB"},
    {"getPlatformMicAnalogGain", scriptCall<qOverload<float *, float *>(&ZelAudioManager::getMicAnalogGain)>, "left, right", "the platform's gains in dB"},
    {SCRIPT_CALL(ZelAudioManager, setMicAnalogGain), "left, right", "applies both gains in dB, stores the left one; 0, or the facade's failure"},
    {SCRIPT_CALL(ZelAudioManager, getMicAnalogOpAndPga), "op, pga", "the stored gain as an analogue stage and the programmable rest, in dB"},
    {SCRIPT_CALL(ZelAudioManager, startMicGainCalibration), "", "starts the calibration; 0, or the facade's failure"},
    {SCRIPT_CALL(ZelAudioManager, setMicGainCalibration), "", "applies what the calibration found; 0, or the facade's failure"},
    {SCRIPT_CALL(ZelAudioManager, getMicCalibrationGain), "first, second", "what the calibration found"},
    {SCRIPT_CALL(ZelAudioManager, setHandsfreeDelay), "delay", "applies and stores the delay; 0, or the facade's failure"},
    {SCRIPT_CALL(ZelAudioManager, setDownlinkDelayEstimation), "", "starts the estimation of the downlink delay"},
    {SCRIPT_CALL(ZelAudioManager, getDownlinkDelayEstimation), "delay", "the estimated delay"},
    {SCRIPT_CALL(ZelAudioManager, setInputDestination), "tag, name", "feeds an input to a destination and applies the stored gain again"},
};

} // namespace

const ScriptType &QmlAudioPolicy::scriptType()
{
    static const ScriptType type(
        "AudioPolicy",
        operations,
        {{"VolumeType", "", policynames::volumeTypes}, {"Status", "Status", policynames::statuses}, {"Channel", "Channel", policynames::channels}},
        nullptr,
        [](QObject &callee) { static_cast<QmlAudioPolicy &>(callee).refresh(); });
    return type;
}
