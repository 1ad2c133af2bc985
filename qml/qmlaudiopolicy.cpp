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
    {SCRIPT_CALL(ZelAudioManager, updateAudioStatus), "status", "reports what sounds now"},
    {SCRIPT_CALL(ZelAudioManager, updateAudioChannel), "channel", "reports the channel that the user chose"},
    {SCRIPT_CALL(ZelAudioManager, currentAudioChannel), "", "the channel last reported"},
    {SCRIPT_CALL(ZelAudioManager, setVolume), "type, volume, save", "the volume of a type, 0 to 25, saved or not"},
    {SCRIPT_CALL(ZelAudioManager, getVolume), "type", "the volume of a type, 0 to 25"},
    {SCRIPT_CALL(ZelAudioManager, saveVolume), "", "saves the volumes that were set without saving"},
    {SCRIPT_CALL(ZelAudioManager, updateCurrentAudioVolume), "up", "a press of the volume key, for what sounds now"},
    {SCRIPT_CALL(ZelAudioManager, setVolResponse), "state, on", "whether the volume keys are answered in a state"},
    {SCRIPT_CALL(ZelAudioManager, _getAllChannelsFromCurrentType), "channels, type", "the channels of a volume type, ascending"},
    {"ducking and phone projection"},
    {SCRIPT_CALL(ZelAudioManager, duck), "level", "lowers the main audio"},
    {SCRIPT_CALL(ZelAudioManager, unDuck), "", "ends the lowering"},
    {SCRIPT_CALL(ZelAudioManager, aaDuckAudio), "first, second", "Android Auto lowers the main audio"},
    {SCRIPT_CALL(ZelAudioManager, aaUnduckAudio), "value", "Android Auto ends the lowering"},
    {SCRIPT_CALL(ZelAudioManager, clDuckAudio), "first, second", "CarLife lowers the main audio"},
    {SCRIPT_CALL(ZelAudioManager, clUnduckAudio), "value", "CarLife ends the lowering"},
    {SCRIPT_CALL(ZelAudioManager, cpDuckAudio), "value, level", "CarPlay lowers the main audio"},
    {SCRIPT_CALL(ZelAudioManager, cpUnduckAudio), "value", "CarPlay ends the lowering, half a second later"},
    {SCRIPT_CALL(ZelAudioManager, setCPConnected), "connected", "tells whether CarPlay is connected"},
    {SCRIPT_CALL(ZelAudioManager, getCPConnected), "", "what setCPConnected() was told"},
    {SCRIPT_CALL(ZelAudioManager, updateCPAAStatus), "status", "tells of CarPlay's or Android Auto's session"},
    {SCRIPT_CALL(ZelAudioManager, setCpPhone), "on", "tells of a telephone call over CarPlay"},
    {SCRIPT_CALL(ZelAudioManager, onCarplayAlertStart), "", "a CarPlay alert begins"},
    {SCRIPT_CALL(ZelAudioManager, onCarplayAlertStop), "", "a CarPlay alert ends"},
    {"mute, attenuation and reverse gear"},
    {SCRIPT_CALL(ZelAudioManager, setAudioMute), "mute, count", "mutes for count times 50 ms, or unmutes"},
    {SCRIPT_CALL(ZelAudioManager, deMute), "", "unmutes"},
    {SCRIPT_CALL(ZelAudioManager, setMute), "mute", "mutes or unmutes for good"},
    {SCRIPT_CALL(ZelAudioManager, isAttOn), "", "whether the attenuation is on"},
    {SCRIPT_CALL(ZelAudioManager, triggerAtt), "", "switches the attenuation"},
    {SCRIPT_CALL(ZelAudioManager, onRecvBackCar), "on", "reverse gear"},
    {SCRIPT_CALL(ZelAudioManager, setHCconnect), "on", "tells whether HiCar is connected"},
    {"equalizer"},
    {SCRIPT_CALL(ZelAudioManager, getEqBaseData), "", "the eight presets: [{type, tag, gains}, …]"},
    {SCRIPT_CALL(ZelAudioManager, customEq), "band", "a band of the custom curve, as stored"},
    {SCRIPT_CALL(ZelAudioManager, eqType), "", "the equalizer type, 0 to 7; 7 is the custom curve"},
    {SCRIPT_CALL(ZelAudioManager, setEqType), "type", "chooses an equalizer type"},
    {SCRIPT_CALL(ZelAudioManager, eqTypePrev), "", "the type before"},
    {SCRIPT_CALL(ZelAudioManager, eqTypeNext), "", "the type after"},
    {"adjustCustomEq",
     scriptCall<&adjustCustomEq>,
     "value, band",
     "a band, 0 to 15, of the custom curve; another throws a RangeError instead of stopping the process"},
    {SCRIPT_CALL(ZelAudioManager, loudNess), "", "whether loudness is on"},
    {SCRIPT_CALL(ZelAudioManager, setLoudNess), "on", "switches loudness, and stores it"},
    {"microphone"},
    {SCRIPT_CALL(ZelAudioManager, micInputValue), "", "the stored microphone volume"},
    {SCRIPT_CALL(ZelAudioManager, setMicInputValue), "value", "sets and stores the microphone volume"},
    {SCRIPT_CALL(ZelAudioManager, micTypeIsDefault), "", "whether the microphone is the default one"},
    {SCRIPT_CALL(ZelAudioManager, setMicLeftRightSwitch), "sw", "chooses and stores the microphone's type"},
    {"getMicAnalogGain", scriptCall<qOverload<>(&ZelAudioManager::getMicAnalogGain)>, "", "the stored gain in whole dB"},
    {"getPlatformMicAnalogGain", scriptCall<qOverload<float *, float *>(&ZelAudioManager::getMicAnalogGain)>, "left, right", "the platform's gains in dB"},
    {SCRIPT_CALL(ZelAudioManager, setMicAnalogGain), "left, right", "sets and stores the gains in dB; 0, -1 or the platform's code"},
    {SCRIPT_CALL(ZelAudioManager, getMicAnalogOpAndPga), "op, pga", "the amplifier's stage and programmable gain for the stored gain, in dB"},
    {SCRIPT_CALL(ZelAudioManager, startMicGainCalibration), "", "starts the calibration; 0, -1 or the platform's code"},
    {SCRIPT_CALL(ZelAudioManager, setMicGainCalibration), "", "takes what the calibration found; 0, -1 or the platform's code"},
    {SCRIPT_CALL(ZelAudioManager, getMicCalibrationGain), "first, second", "what the calibration found"},
    {SCRIPT_CALL(ZelAudioManager, setHandsfreeDelay), "delay", "sets and stores the delay for the echo cancelling; 0, -1 or the platform's code"},
    {SCRIPT_CALL(ZelAudioManager, setDownlinkDelayEstimation), "", "starts the estimation of the downlink delay"},
    {SCRIPT_CALL(ZelAudioManager, getDownlinkDelayEstimation), "delay", "the estimated delay"},
    {SCRIPT_CALL(ZelAudioManager, setInputDestination), "tag, name", "feeds an input track to a destination, with the stored gain and delay"},
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
