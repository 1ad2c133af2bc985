#include "qmlaudiopolicy.h"

#include "audiopolicyinspector.h"
#include "scriptcall.h"
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

} // namespace

QmlAudioPolicy::QmlAudioPolicy(QObject *parent)
    : QmlAudioPolicy(&managerOfProcess, parent)
{
}

QmlAudioPolicy::QmlAudioPolicy(const ManagerProvider &giveManager, QObject *parent)
    : QObject(parent)
    , m_provider(giveManager)
{
}

ZelAudioManager &QmlAudioPolicy::manager()
{
    ZelAudioManager *const current = m_provider();
    if (current != m_known) {
        const bool first = m_shown.volumes.isEmpty();
        m_known = current;
        connect(current, &ZelAudioManager::zelvolumeChanged, this, &QmlAudioPolicy::zelvolumeChanged);
        // The manager's own slots were connected first, so these see what the time-out has brought.
        const auto timers = AudioPolicyInspector(*current).timers();
        for (const AudioPolicyInspector::Timer &entry : timers)
            connect(entry.timer, &QTimer::timeout, this, &QmlAudioPolicy::refresh);
        if (first)
            m_shown = currentState();
        else
            refresh();
    }
    return *current;
}

QmlAudioPolicy::State QmlAudioPolicy::currentState()
{
    const AudioPolicyInspector inspector(*m_known);
    return {inspector.status(),
            inspector.channel(),
            audio::AudioControl::getInstance()->isMute(),
            ScriptValues::array(inspector.volumes()),
            inspector.equalizerType(),
            ScriptValues::array(inspector.customCurve())};
}

void QmlAudioPolicy::refresh()
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

template<typename Result, typename... Parameters>
Result QmlAudioPolicy::call(Result (ZelAudioManager::*operation)(Parameters...), const ScriptArgument (&arguments)[sizeof...(Parameters)])
{
    const auto refreshAfterwards = qScopeGuard([this] { refresh(); });
    return callFromScript(
        this, [this] { return &manager(); }, operation, arguments);
}

template<typename Result>
Result QmlAudioPolicy::call(Result (ZelAudioManager::*operation)())
{
    const auto refreshAfterwards = qScopeGuard([this] { refresh(); });
    return (manager().*operation)();
}

// Properties ----------------------------------------------------------------------------------------------------------------

int QmlAudioPolicy::status()
{
    return AudioPolicyInspector(manager()).status();
}

int QmlAudioPolicy::channel()
{
    return AudioPolicyInspector(manager()).channel();
}

bool QmlAudioPolicy::muted()
{
    manager();
    return audio::AudioControl::getInstance()->isMute();
}

QVariantList QmlAudioPolicy::volumes()
{
    return ScriptValues::array(AudioPolicyInspector(manager()).volumes());
}

int QmlAudioPolicy::equalizerType()
{
    return AudioPolicyInspector(manager()).equalizerType();
}

QVariantList QmlAudioPolicy::customCurve()
{
    return ScriptValues::array(AudioPolicyInspector(manager()).customCurve());
}

// Status, channel and volume ------------------------------------------------------------------------------------------------

void QmlAudioPolicy::updateAudioStatus(const QJSValue &status)
{
    call(&ZelAudioManager::updateAudioStatus, {{"status", status}});
}

void QmlAudioPolicy::updateAudioChannel(const QJSValue &channel)
{
    call(&ZelAudioManager::updateAudioChannel, {{"channel", channel}});
}

int QmlAudioPolicy::currentAudioChannel()
{
    return call(&ZelAudioManager::currentAudioChannel);
}

void QmlAudioPolicy::setVolume(const QJSValue &type, const QJSValue &volume, const QJSValue &save)
{
    call(&ZelAudioManager::setVolume, {{"type", type}, {"volume", volume}, {"save", save}});
}

int QmlAudioPolicy::getVolume(const QJSValue &type)
{
    return call(&ZelAudioManager::getVolume, {{"type", type}});
}

void QmlAudioPolicy::saveVolume()
{
    call(&ZelAudioManager::saveVolume);
}

void QmlAudioPolicy::updateCurrentAudioVolume(const QJSValue &up)
{
    call(&ZelAudioManager::updateCurrentAudioVolume, {{"up", up}});
}

void QmlAudioPolicy::setVolResponse(const QJSValue &state, const QJSValue &on)
{
    call(&ZelAudioManager::setVolResponse, {{"state", state}, {"on", on}});
}

QVariantList QmlAudioPolicy::_getAllChannelsFromCurrentType(const QJSValue &type)
{
    ScriptArguments arguments(this);
    const auto volumeType = ScriptCall::read<ZelAudioType>(arguments, {"type", type});
    if (arguments.failed())
        return {};
    QList<AudioChannel> channels;
    manager()._getAllChannelsFromCurrentType(channels, volumeType);
    return {channels.cbegin(), channels.cend()};
}

// Ducking and phone projection ----------------------------------------------------------------------------------------------

void QmlAudioPolicy::duck(const QJSValue &level)
{
    call(&ZelAudioManager::duck, {{"level", level}});
}

void QmlAudioPolicy::unDuck()
{
    call(&ZelAudioManager::unDuck);
}

void QmlAudioPolicy::aaDuckAudio(const QJSValue &first, const QJSValue &second)
{
    call(&ZelAudioManager::aaDuckAudio, {{"first", first}, {"second", second}});
}

void QmlAudioPolicy::aaUnduckAudio(const QJSValue &value)
{
    call(&ZelAudioManager::aaUnduckAudio, {{"value", value}});
}

void QmlAudioPolicy::clDuckAudio(const QJSValue &first, const QJSValue &second)
{
    call(&ZelAudioManager::clDuckAudio, {{"first", first}, {"second", second}});
}

void QmlAudioPolicy::clUnduckAudio(const QJSValue &value)
{
    call(&ZelAudioManager::clUnduckAudio, {{"value", value}});
}

void QmlAudioPolicy::cpDuckAudio(const QJSValue &value, const QJSValue &level)
{
    call(&ZelAudioManager::cpDuckAudio, {{"value", value}, {"level", level}});
}

void QmlAudioPolicy::cpUnduckAudio(const QJSValue &value)
{
    call(&ZelAudioManager::cpUnduckAudio, {{"value", value}});
}

void QmlAudioPolicy::setCPConnected(const QJSValue &connected)
{
    call(&ZelAudioManager::setCPConnected, {{"connected", connected}});
}

bool QmlAudioPolicy::getCPConnected()
{
    return call(&ZelAudioManager::getCPConnected);
}

void QmlAudioPolicy::updateCPAAStatus(const QJSValue &status)
{
    call(&ZelAudioManager::updateCPAAStatus, {{"status", status}});
}

void QmlAudioPolicy::setCpPhone(const QJSValue &on)
{
    call(&ZelAudioManager::setCpPhone, {{"on", on}});
}

void QmlAudioPolicy::onCarplayAlertStart()
{
    call(&ZelAudioManager::onCarplayAlertStart);
}

void QmlAudioPolicy::onCarplayAlertStop()
{
    call(&ZelAudioManager::onCarplayAlertStop);
}

// Mute, attenuation and reverse gear ----------------------------------------------------------------------------------------

void QmlAudioPolicy::setAudioMute(const QJSValue &mute, const QJSValue &count)
{
    call(&ZelAudioManager::setAudioMute, {{"mute", mute}, {"count", count}});
}

void QmlAudioPolicy::deMute()
{
    call(&ZelAudioManager::deMute);
}

void QmlAudioPolicy::setMute(const QJSValue &mute)
{
    call(&ZelAudioManager::setMute, {{"mute", mute}});
}

bool QmlAudioPolicy::isAttOn()
{
    return call(&ZelAudioManager::isAttOn);
}

void QmlAudioPolicy::triggerAtt()
{
    call(&ZelAudioManager::triggerAtt);
}

void QmlAudioPolicy::onRecvBackCar(const QJSValue &on)
{
    call(&ZelAudioManager::onRecvBackCar, {{"on", on}});
}

void QmlAudioPolicy::setHCconnect(const QJSValue &on)
{
    call(&ZelAudioManager::setHCconnect, {{"on", on}});
}

// Equalizer -----------------------------------------------------------------------------------------------------------------

QVariantList QmlAudioPolicy::getEqBaseData()
{
    return ScriptValues::equalizerPresets(call(&ZelAudioManager::getEqBaseData));
}

int QmlAudioPolicy::customEq(const QJSValue &band)
{
    return call(&ZelAudioManager::customEq, {{"band", band}});
}

int QmlAudioPolicy::eqType()
{
    return call(&ZelAudioManager::eqType);
}

void QmlAudioPolicy::setEqType(const QJSValue &type)
{
    call(&ZelAudioManager::setEqType, {{"type", type}});
}

void QmlAudioPolicy::eqTypePrev()
{
    call(&ZelAudioManager::eqTypePrev);
}

void QmlAudioPolicy::eqTypeNext()
{
    call(&ZelAudioManager::eqTypeNext);
}

void QmlAudioPolicy::adjustCustomEq(const QJSValue &value, const QJSValue &band)
{
    constexpr int lastBand = 15;
    ScriptArguments arguments(this);
    const auto step = ScriptCall::read<int>(arguments, {"value", value});
    const auto index = static_cast<int>(arguments.failed() ? 0 : arguments.integer({"band", band}, 0, lastBand));
    if (!arguments.failed()) {
        manager().adjustCustomEq(step, index);
        refresh();
    }
}

bool QmlAudioPolicy::loudNess()
{
    return call(&ZelAudioManager::loudNess);
}

void QmlAudioPolicy::setLoudNess(const QJSValue &on)
{
    call(&ZelAudioManager::setLoudNess, {{"on", on}});
}

// Microphone ----------------------------------------------------------------------------------------------------------------

int QmlAudioPolicy::micInputValue()
{
    return call(&ZelAudioManager::micInputValue);
}

void QmlAudioPolicy::setMicInputValue(const QJSValue &value)
{
    call(&ZelAudioManager::setMicInputValue, {{"value", value}});
}

bool QmlAudioPolicy::micTypeIsDefault()
{
    return call(&ZelAudioManager::micTypeIsDefault);
}

void QmlAudioPolicy::setMicLeftRightSwitch(const QJSValue &sw)
{
    call(&ZelAudioManager::setMicLeftRightSwitch, {{"sw", sw}});
}

double QmlAudioPolicy::getMicAnalogGain()
{
    return double(call(qOverload<>(&ZelAudioManager::getMicAnalogGain)));
}

QVariantMap QmlAudioPolicy::getPlatformMicAnalogGain()
{
    float left = 0;
    float right = 0;
    const int result = manager().getMicAnalogGain(&left, &right);
    return {{QStringLiteral("result"), result}, {QStringLiteral("left"), ScriptValues::decimal(left)}, {QStringLiteral("right"), ScriptValues::decimal(right)}};
}

int QmlAudioPolicy::setMicAnalogGain(const QJSValue &left, const QJSValue &right)
{
    return call(&ZelAudioManager::setMicAnalogGain, {{"left", left}, {"right", right}});
}

QVariantMap QmlAudioPolicy::getMicAnalogOpAndPga()
{
    float op = 0;
    int pga = 0;
    manager().getMicAnalogOpAndPga(op, pga);
    return {{QStringLiteral("op"), ScriptValues::decimal(op)}, {QStringLiteral("pga"), pga}};
}

int QmlAudioPolicy::startMicGainCalibration()
{
    return call(&ZelAudioManager::startMicGainCalibration);
}

int QmlAudioPolicy::setMicGainCalibration()
{
    return call(&ZelAudioManager::setMicGainCalibration);
}

QVariantMap QmlAudioPolicy::getMicCalibrationGain()
{
    int first = 0;
    const float second = manager().getMicCalibrationGain(&first);
    return {{QStringLiteral("first"), first}, {QStringLiteral("second"), ScriptValues::decimal(second)}};
}

int QmlAudioPolicy::setHandsfreeDelay(const QJSValue &delay)
{
    return call(&ZelAudioManager::setHandsfreeDelay, {{"delay", delay}});
}

void QmlAudioPolicy::setDownlinkDelayEstimation()
{
    call(&ZelAudioManager::setDownlinkDelayEstimation);
}

QVariantMap QmlAudioPolicy::getDownlinkDelayEstimation()
{
    short delay = 0;
    const int result = manager().getDownlinkDelayEstimation(&delay);
    return {{QStringLiteral("result"), result}, {QStringLiteral("delay"), int(delay)}};
}

void QmlAudioPolicy::setInputDestination(const QJSValue &tag, const QJSValue &name)
{
    call(&ZelAudioManager::setInputDestination, {{"tag", tag}, {"name", name}});
}
