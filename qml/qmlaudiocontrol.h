#ifndef QMLAUDIOCONTROL_H
#define QMLAUDIOCONTROL_H

#include <qzaudio/audiocontrol.h>

#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtQml/QJSValue>

/**
 * The control facade for QML and JavaScript: the singleton AudioControl of the module QzAudio.
 *
 * Every public operation of audio::AudioControl under its own name, on the process's one facade, which is made by the first
 * call. Ranges, results and traps are those of audio::AudioControl. What differs:
 *
 * - A number that the operation's type cannot hold (300 or NaN for a volume) throws a RangeError, a value of another kind a
 *   TypeError; nothing is called then.
 * - Values that the operation writes to its arguments come back as fields of an object: {result: 0, name: "S+FilePlayer_APP",
 *   step: 12}. Where the operation leaves them alone, they are 0 or empty.
 * - Lists are arrays.
 * - The two overloads of setOutputSource(), setOutputFrontSource() and setInputDestination() are told apart by the first
 *   argument: a number is a tag, a text a platform track.
 *
 * Use it from the engine's thread, which must be the one that the policy manager lives on.
 */
class QmlAudioControl : public QObject
{
    Q_OBJECT

public:
    /// See audio::AudioControl::AudioTag.
    enum AudioTag : int {
        Main = audio::AudioControl::Main,
        Second = audio::AudioControl::Second,
        Alternative = audio::AudioControl::Alternative,
        Uplink = audio::AudioControl::Uplink,
        Input0 = audio::AudioControl::Input0,
        Input1 = audio::AudioControl::Input1,
        Input2 = audio::AudioControl::Input2,
        MainIm = audio::AudioControl::MainIm,
    };
    Q_ENUM(AudioTag)

    /// See audio::AudioControl::AudioOutChannel.
    enum AudioOutChannel : int {
        LeftFront = audio::AudioControl::LeftFront,
        RightFront = audio::AudioControl::RightFront,
        LeftRear = audio::AudioControl::LeftRear,
        RightRear = audio::AudioControl::RightRear,
        FifthOutput = audio::AudioControl::FifthOutput,
        SixthOutput = audio::AudioControl::SixthOutput,
    };
    Q_ENUM(AudioOutChannel)

    explicit QmlAudioControl(QObject *parent = nullptr);

    // Small state
    Q_INVOKABLE void setStepRange(const QJSValue &range);
    Q_INVOKABLE int getStepRang();
    Q_INVOKABLE void setAlterMode(const QJSValue &on);
    Q_INVOKABLE bool getAlterMode();
    Q_INVOKABLE int getMasterStepVolume();
    Q_INVOKABLE int getAlterStepVolume();
    Q_INVOKABLE bool isMute();
    Q_INVOKABLE void setProfileMode(const QJSValue &mode);

    // Stream and master volume
    Q_INVOKABLE void setStreamVolume(const QJSValue &tag, const QJSValue &name, const QJSValue &volume);
    Q_INVOKABLE int getStreamVolume(const QJSValue &tag, const QJSValue &name);
    Q_INVOKABLE int setMasterVolume(const QJSValue &volume);
    Q_INVOKABLE int getMasterVolume();
    /// @param volumes an object of Qt-side source names and steps
    Q_INVOKABLE void initTrackStepVolume(const QJSValue &tag, const QJSValue &volumes);

    // Step volume
    /// {result, name, step}
    Q_INVOKABLE QVariantMap getCurMainTrackStepVolumeInfo();
    /// {result, name, step}
    Q_INVOKABLE QVariantMap changeMainTrackStepVolume(const QJSValue &up);
    Q_INVOKABLE int getActivedAlterNumber();
    /// {result, step}
    Q_INVOKABLE QVariantMap changeAlterStepVolume(const QJSValue &up, const QJSValue &current);
    Q_INVOKABLE int setAlterVolume(const QJSValue &volume, const QJSValue &hicarCall);
    Q_INVOKABLE int setAlterStepVolume(const QJSValue &step, const QJSValue &hicarCall);
    Q_INVOKABLE int setMasterStepVolume(const QJSValue &step);

    // Mute
    Q_INVOKABLE void setMute(const QJSValue &mute);
    Q_INVOKABLE void setBackEarphone(const QJSValue &on);
    Q_INVOKABLE void muteBackEarphone(const QJSValue &mute);

    // Equalizer and loudness
    Q_INVOKABLE void setEqMode(const QJSValue &mode);
    Q_INVOKABLE QVariantList getEqGain(const QJSValue &mode);
    Q_INVOKABLE QVariantList getSubGain(const QJSValue &mode);
    Q_INVOKABLE void setEqGain(const QJSValue &gains);
    Q_INVOKABLE void setEqGain10(const QJSValue &gains);
    Q_INVOKABLE void setEqValue(const QJSValue &gains);
    /// The sixteen band frequencies in Hz.
    Q_INVOKABLE QVariantList getEqInitValue();
    Q_INVOKABLE void setLoudnessSwitch(const QJSValue &on);

    // Fade and balance
    Q_INVOKABLE void setFadeBalance(const QJSValue &fade, const QJSValue &balance);

    // Routing and inputs
    Q_INVOKABLE void setOutputSource(const QJSValue &trackOrTag, const QJSValue &source);
    Q_INVOKABLE void setOutputFrontSource(const QJSValue &trackOrTag, const QJSValue &source, const QJSValue &frontOnly);
    Q_INVOKABLE void setInputDestination(const QJSValue &trackOrTag, const QJSValue &destination);
    Q_INVOKABLE void setAuxinChannel(const QJSValue &channel);
    Q_INVOKABLE int getAuxinChannel();
    Q_INVOKABLE void setI2SINChannel(const QJSValue &channel);
    Q_INVOKABLE void setMainAudioDunkingMode(const QJSValue &mode);
    Q_INVOKABLE void setMainAudioDunkingTargetGain(const QJSValue &gain);

    // Microphone and voice
    Q_INVOKABLE void setMicroPhoneVolume(const QJSValue &volume);
    /// {result, first, second}
    Q_INVOKABLE QVariantMap getMicAnalogGain();
    Q_INVOKABLE int setMicAnalogGain(const QJSValue &first, const QJSValue &second);
    Q_INVOKABLE int setMicOpAndPga(const QJSValue &op, const QJSValue &pga);
    Q_INVOKABLE int startMicGainCalibration();
    Q_INVOKABLE int setMicGainCalibration();
    /// {result, first, second}
    Q_INVOKABLE QVariantMap getMicCalibrationGain();
    Q_INVOKABLE void setDownlinkDelayEstimation();
    /// {result, delay}
    Q_INVOKABLE QVariantMap getDownlinkDelayEstimation();
    Q_INVOKABLE int setHandsfreeDelay(const QJSValue &delay);
    Q_INVOKABLE void setAECQuality(const QJSValue &quality);
    /// Eight values; empty on failure.
    Q_INVOKABLE QVariantList getMicrophoneTest();
    Q_INVOKABLE void setMicLeftRightSwitch(const QJSValue &swap);

    // Output processing
    Q_INVOKABLE void setDpsEnable(const QJSValue &enable);
    Q_INVOKABLE void setStereoEnable(const QJSValue &enable);
    Q_INVOKABLE void setDpsUserGain(const QJSValue &gain);
    /// @param filter {value1, flag, kind, value2, value3, value4}, all whole numbers
    Q_INVOKABLE void setFilter(const QJSValue &channel, const QJSValue &filter);
    Q_INVOKABLE void setSpeakerDelay(const QJSValue &delays);
    Q_INVOKABLE void setSpeakerDealy(const QJSValue &channel, const QJSValue &delay);

private:
    Q_DISABLE_COPY(QmlAudioControl)
};

#endif
