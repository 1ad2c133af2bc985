#ifndef QMLAUDIOPOLICY_H
#define QMLAUDIOPOLICY_H

#include <qzaudio/audiotypes.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QVariant>
#include <QtQml/QJSValue>

#include <functional>

class ZelAudioManager;
struct ScriptArgument;

/**
 * The audio policy for QML and JavaScript: the singleton AudioPolicy of the module QzAudio.
 *
 * Every public operation of ZelAudioManager under its own name, and its state as properties. The manager is made, and the audio
 * thereby started, when the first operation is called or the first property read: not by importing the module.
 *
 * Change signals come only when a value is another one, and also for changes that the manager's own timers bring (a timed mute
 * that ends, status 10 and 11 of CarPlay). What other code does to the manager directly shows with the next such moment.
 *
 * Arguments are checked as in AudioControl: what the operation's type cannot hold throws a JavaScript error. Reading a property
 * leaves no log line, unlike the manager's getters.
 *
 * Use it from the engine's thread, which is then the manager's.
 */
class QmlAudioPolicy : public QObject
{
    Q_OBJECT
    /// What sounds now, 0 to 19.
    Q_PROPERTY(int status READ status NOTIFY statusChanged)
    /// The channel last reported, 0 to 19.
    Q_PROPERTY(int channel READ channel NOTIFY channelChanged)
    Q_PROPERTY(bool muted READ muted NOTIFY mutedChanged)
    /// The six volumes by volume type, 0 to 25, saved or not.
    Q_PROPERTY(QVariantList volumes READ volumes NOTIFY volumesChanged)
    /// 0 to 7; 7 is the custom curve.
    Q_PROPERTY(int equalizerType READ equalizerType NOTIFY equalizerTypeChanged)
    /// The custom curve's sixteen bands as stored: twice what adjustCustomEq() was given.
    Q_PROPERTY(QVariantList customCurve READ customCurve NOTIFY customCurveChanged)

public:
    /// The volume types.
    enum VolumeType : int {
        Media = 0,
        Prompt = 1,
        Telephony = 2,
        Ring = 3,
        Speech = 4,
        HiCarCall = 5,
    };
    Q_ENUM(VolumeType)

    /// The statuses by the names of docs/policy.md.
    enum Status : int {
        StatusNone = AudioStatusNone,
        StatusBtRing = AudioStatusBtPhoneRing,
        StatusBtTelephony = AudioStatusBtPhoneTelephony,
        StatusBtTelephony3 = 3,
        StatusBtAtMediaVolume = 4,
        StatusCarPlayAlert = AudioStatusCarPlayAlert,
        StatusCarPlayTelephony = AudioStatusCarPlayTelephony,
        StatusNone7 = 7,
        StatusCarPlaySpeech = AudioStatusCarPlaySpeech,
        StatusCarPlaySpeechAtMediaVolume = 9,
        StatusCarPlayDuck = AudioStatusCarPlayDuck,
        StatusCarPlayRestore = AudioStatusCarPlayRestore,
        StatusAndroidAutoSpeech = AudioStatusAndroidAutoSpeech,
        StatusAndroidAutoAtMediaVolume = 13,
        StatusAndroidAutoDuck = AudioStatusAndroidAutoDuck,
        StatusAndroidAutoRestore = AudioStatusAndroidAutoRestore,
        StatusCarLifeSpeech = AudioStatusCarLifeSpeech,
        StatusCarLifeAtMediaVolume = 17,
        StatusCarLifeDuck = AudioStatusCarLifeDuck,
        StatusCarLifeRestore = AudioStatusCarLifeRestore,
    };
    Q_ENUM(Status)

    /// The channels by the names of docs/policy.md.
    enum Channel : int {
        ChannelNone = AudioChannelNone,
        ChannelUnassigned1 = 1,
        ChannelBtAudio = AudioChannelBtAudio,
        ChannelFilePlayer = AudioChannelFilePlayer,
        ChannelIosMirror = AudioChannelIosMirror,
        ChannelCarPlayMedia = AudioChannelCarPlayMedia,
        ChannelCarPlayAlert = AudioChannelCarPlayAlert,
        ChannelCarPlayTelephony = AudioChannelCarPlayTelephony,
        ChannelCarPlaySpeech = AudioChannelCarPlaySpeech,
        ChannelCarPlayDefault = AudioChannelCarPlayDefault,
        ChannelAndroidAuto = AudioChannelAndroidAuto,
        ChannelBtRingtone = AudioChannelBtRingtone,
        ChannelBtPhone = AudioChannelBtPhone,
        ChannelDiscPlayer = AudioChannelDiscPlayer,
        ChannelUnassigned14 = 14,
        ChannelAuxIn = AudioChannelAuxIn,
        ChannelUnassigned16 = 16,
        ChannelCarLife = AudioChannelCarLife,
        ChannelHiCar = 18,
        ChannelAirPlayMedia = AudioChannelAirPlayMedia,
    };
    Q_ENUM(Channel)

    /// Gives the manager to work with, making it where needed. Never null.
    using ManagerProvider = std::function<ZelAudioManager *()>;

    /// Works with ZelAudioManager::instance().
    explicit QmlAudioPolicy(QObject *parent = nullptr);
    /// For the bench, which switches its manager on and off.
    explicit QmlAudioPolicy(const ManagerProvider &giveManager, QObject *parent = nullptr);

    int status();
    int channel();
    bool muted();
    QVariantList volumes();
    int equalizerType();
    QVariantList customCurve();

    // Status, channel and volume
    Q_INVOKABLE void updateAudioStatus(const QJSValue &status);
    Q_INVOKABLE void updateAudioChannel(const QJSValue &channel);
    Q_INVOKABLE int currentAudioChannel();
    Q_INVOKABLE void setVolume(const QJSValue &type, const QJSValue &volume, const QJSValue &save);
    Q_INVOKABLE int getVolume(const QJSValue &type);
    Q_INVOKABLE void saveVolume();
    Q_INVOKABLE void updateCurrentAudioVolume(const QJSValue &up);
    Q_INVOKABLE void setVolResponse(const QJSValue &state, const QJSValue &on);
    /// The channels of a volume type, ascending.
    Q_INVOKABLE QVariantList _getAllChannelsFromCurrentType(const QJSValue &type);

    // Ducking and phone projection
    Q_INVOKABLE void duck(const QJSValue &level);
    Q_INVOKABLE void unDuck();
    Q_INVOKABLE void aaDuckAudio(const QJSValue &first, const QJSValue &second);
    Q_INVOKABLE void aaUnduckAudio(const QJSValue &value);
    Q_INVOKABLE void clDuckAudio(const QJSValue &first, const QJSValue &second);
    Q_INVOKABLE void clUnduckAudio(const QJSValue &value);
    Q_INVOKABLE void cpDuckAudio(const QJSValue &value, const QJSValue &level);
    Q_INVOKABLE void cpUnduckAudio(const QJSValue &value);
    Q_INVOKABLE void setCPConnected(const QJSValue &connected);
    Q_INVOKABLE bool getCPConnected();
    Q_INVOKABLE void updateCPAAStatus(const QJSValue &status);
    Q_INVOKABLE void setCpPhone(const QJSValue &on);
    Q_INVOKABLE void onCarplayAlertStart();
    Q_INVOKABLE void onCarplayAlertStop();

    // Mute, attenuation and reverse gear
    Q_INVOKABLE void setAudioMute(const QJSValue &mute, const QJSValue &count);
    Q_INVOKABLE void deMute();
    Q_INVOKABLE void setMute(const QJSValue &mute);
    Q_INVOKABLE bool isAttOn();
    Q_INVOKABLE void triggerAtt();
    Q_INVOKABLE void onRecvBackCar(const QJSValue &on);
    Q_INVOKABLE void setHCconnect(const QJSValue &on);

    // Equalizer
    /// The eight equalizer presets: [{type, tag, gains}, ...].
    Q_INVOKABLE QVariantList getEqBaseData();
    Q_INVOKABLE int customEq(const QJSValue &band);
    Q_INVOKABLE int eqType();
    Q_INVOKABLE void setEqType(const QJSValue &type);
    Q_INVOKABLE void eqTypePrev();
    Q_INVOKABLE void eqTypeNext();
    /// A band outside 0..15, which would stop the process, throws a RangeError.
    Q_INVOKABLE void adjustCustomEq(const QJSValue &value, const QJSValue &band);
    Q_INVOKABLE bool loudNess();
    Q_INVOKABLE void setLoudNess(const QJSValue &on);

    // Microphone
    Q_INVOKABLE int micInputValue();
    Q_INVOKABLE void setMicInputValue(const QJSValue &value);
    Q_INVOKABLE bool micTypeIsDefault();
    Q_INVOKABLE void setMicLeftRightSwitch(const QJSValue &sw);
    /// The stored gain in whole dB.
    Q_INVOKABLE double getMicAnalogGain();
    /// The platform's gains in dB: {result, left, right}.
    Q_INVOKABLE QVariantMap getPlatformMicAnalogGain();
    Q_INVOKABLE int setMicAnalogGain(const QJSValue &left, const QJSValue &right);
    /// {op, pga}
    Q_INVOKABLE QVariantMap getMicAnalogOpAndPga();
    Q_INVOKABLE int startMicGainCalibration();
    Q_INVOKABLE int setMicGainCalibration();
    /// {first, second}
    Q_INVOKABLE QVariantMap getMicCalibrationGain();
    Q_INVOKABLE int setHandsfreeDelay(const QJSValue &delay);
    Q_INVOKABLE void setDownlinkDelayEstimation();
    /// {result, delay}
    Q_INVOKABLE QVariantMap getDownlinkDelayEstimation();
    Q_INVOKABLE void setInputDestination(const QJSValue &tag, const QJSValue &name);

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
    Q_DISABLE_COPY(QmlAudioPolicy)

    struct State
    {
        int status = 0;
        int channel = 0;
        bool muted = false;
        QVariantList volumes;
        int equalizerType = 0;
        QVariantList customCurve;
    };

    ZelAudioManager &manager();
    State currentState();
    /// Emits the change signals of what is another value than at the last call.
    void refresh();

    template<typename Result, typename... Parameters>
    Result call(Result (ZelAudioManager::*operation)(Parameters...), const ScriptArgument (&arguments)[sizeof...(Parameters)]);
    template<typename Result>
    Result call(Result (ZelAudioManager::*operation)());

    ManagerProvider m_provider;
    QPointer<ZelAudioManager> m_known; // the manager that the signals are connected to
    State m_shown;
};

#endif
