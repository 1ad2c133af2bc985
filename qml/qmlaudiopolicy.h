#ifndef QMLAUDIOPOLICY_H
#define QMLAUDIOPOLICY_H

#include "scriptobject.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QVariant>

#include <functional>

class ZelAudioManager;

/**
 * The policy's state as properties, and its signals.
 *
 * The manager is made, and the audio thereby started, when the first operation is called or the first property read: not by importing the
 * module. Change signals come only when a value is another one, and also for changes that the manager's own timers bring (a timed mute
 * that ends, a status that becomes another). What other code does to the manager directly shows with the next such moment. Reading a property
 * leaves no log line, unlike the manager's getters.
 */
class AudioPolicyState : public QObject
{
    Q_OBJECT
    /// What sounds now, a status of docs/policy.md.
    Q_PROPERTY(int status READ status NOTIFY statusChanged)
    /// The channel last reported, of docs/policy.md.
    Q_PROPERTY(int channel READ channel NOTIFY channelChanged)
    Q_PROPERTY(bool muted READ muted NOTIFY mutedChanged)
    /// The six volumes by volume type, 0 to 25, saved or not.
    Q_PROPERTY(QVariantList volumes READ volumes NOTIFY volumesChanged)
    /// 0 to 7; 7 is the custom curve.
    Q_PROPERTY(int equalizerType READ equalizerType NOTIFY equalizerTypeChanged)
    /// The custom curve's sixteen bands as stored: twice what adjustCustomEq() was given.
    Q_PROPERTY(QVariantList customCurve READ customCurve NOTIFY customCurveChanged)

public:
    /// Gives the manager to work with, making it where needed. Never null.
    using ManagerProvider = std::function<ZelAudioManager *()>;

    /// Works with ZelAudioManager::instance().
    explicit AudioPolicyState(QObject *parent = nullptr);
    /// For the bench, which switches its manager on and off.
    explicit AudioPolicyState(const ManagerProvider &giveManager, QObject *parent = nullptr);

    int status();
    int channel();
    bool muted();
    QVariantList volumes();
    int equalizerType();
    QVariantList customCurve();

    ZelAudioManager &manager();
    /// Emits the change signals of what is another value than at the last call.
    void refresh();

Q_SIGNALS:
    void statusChanged();
    void channelChanged();
    void mutedChanged();
    void volumesChanged();
    void equalizerTypeChanged();
    void customCurveChanged();
    /// The volume key changed a volume: @p mute when it went below 1, the new volume 0 to 25 and its type.
    void zelvolumeChanged(bool mute, int volume, int volumeType);

private:
    Q_DISABLE_COPY(AudioPolicyState)

    struct State
    {
        int status = 0;
        int channel = 0;
        bool muted = false;
        QVariantList volumes;
        int equalizerType = 0;
        QVariantList customCurve;
    };

    State currentState();

    ManagerProvider m_provider;
    QPointer<ZelAudioManager> m_known; // the manager that the signals are connected to
    State m_shown;
};

/**
 * The audio policy for QML and JavaScript: the singleton AudioPolicy of the module QzAudio.
 *
 * Every public operation of ZelAudioManager under its own name. Arguments are checked as in AudioControl.
 *
 * Use it from the engine's thread, which is then the manager's.
 */
class QmlAudioPolicy : public ScriptObject<QmlAudioPolicy, AudioPolicyState>
{
public:
    using ScriptObject::ScriptObject;

    static const ScriptType &scriptType();
};

#endif
