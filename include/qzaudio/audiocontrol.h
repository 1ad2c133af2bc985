#ifndef QZAUDIO_AUDIOCONTROL_H
#define QZAUDIO_AUDIOCONTROL_H

#include <qzaudio/audioplatformrecords.h>
#include <qzaudio/export.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>

namespace audio
{

class AudioControlPrivate;

/**
 * The control facade: every request on the platform's audio-setting library goes through this class.
 *
 * It translates the system's Qt-side source names ("S+FilePlayer_APP", UTF-8) and stream tags into the platform's names (local 8-bit),
 * checks ranges, makes the platform calls and logs their outcome. Nothing is retried and nothing is stored on flash.
 *
 * Threads: no member is locked and the first getInstance() is not guarded. Use the object from one thread, the one that the
 * policy manager lives on.
 *
 * Logging: all lines go to Qt's message handler, category "default", at debug level, errors included: those carry "[Error]",
 * "line:" and the source line. A text in quotation marks in a description is what the line says that a failure leaves. A
 * platform object that cannot be made leaves a line of its own, or counts as the call failing with -1.
 *
 * Results: 0 is success. Traps, kept because clients know them: setAlterVolume(), setAlterStepVolume() and setMicOpAndPga()
 * give -1 on success too; setMasterVolume() holds the platform at 100 whatever it is given.
 *
 * Any int may arrive in an enumeration argument; values outside the documented range are refused or replaced as described.
 * A null name is treated as an empty one. Pointers that an operation writes to are not tested and must not be null.
 */
class QZAUDIO_EXPORT AudioControl : public QObject
{
    Q_OBJECT

public:
    /// The stream or track that a call addresses.
    enum AudioTag : int {
        Main = 0, ///< platform track "main"
        Second = 1, ///< "second", the rear seats
        Alternative = 2, ///< "alternative": prompts and calls over the main audio
        Uplink = 3, ///< "uplink"
        Input0 = 4, ///< "input0"
        Input1 = 5, ///< "input1"
        Input2 = 6, ///< "input2"
        MainIm = 7, ///< "main_im"
    };

    /// Equalizer mode, 0 to 6: a curve of the facade. Addressed by value only.
    enum EqMode : int {};

    /// Subwoofer curve, 0 or 1. Addressed by value only.
    enum SubMode : int {};

    /// Output channel n, 0 to 5, stands for the platform's channel bit 1 << n; any other value for all outputs.
    enum AudioOutChannel : int {
        LeftFront = 0, ///< bit 1
        RightFront = 1, ///< bit 2
        LeftRear = 2, ///< bit 4
        RightRear = 3, ///< bit 8
        FifthOutput = 4, ///< bit 16, outside fade and balance
        SixthOutput = 5, ///< bit 32, outside fade and balance
    };

    /// Input channel, 0 to 5: the ADC pin of the same number. Addressed by value only.
    enum AudioInChannel : int {};

    /// Echo-cancelling quality, 0 to 2; any other value is sent as 1. Addressed by value only.
    enum AudioQuality : int {};

    /// Filter of one output channel; the meaning of the four values is the platform's.
    struct AudioFilter_t
    {
        quint16 value1; ///< passed unchanged
        quint32 flag; ///< passed inverted: 0 becomes 1, anything else 0
        quint32 kind; ///< 0 or 1; anything else is sent as 0
        quint16 value2; ///< passed unchanged
        quint16 value3; ///< passed unchanged
        quint16 value4; ///< passed unchanged, but sent as 0 when kind is neither 0 nor 1
    };

    /**
     * The one facade of the process, made on first use and never destroyed. Never null. It serves the destructors of static objects, too,
     * as far as the platform does then.
     *
     * Its Volume and App objects of the platform therefore live until the process ends.
     */
    static AudioControl *getInstance();

    /// For tests and tools that need a facade of their own; applications use getInstance().
    explicit AudioControl(QObject *parent = nullptr);
    /// Releases the long-lived Volume object; the App object stays with the process, on purpose.
    ~AudioControl() override;

    // Small state -----------------------------------------------------------------------------------------------------------

    /**
     * Number of steps that step volumes are counted in; 100 until set. Not checked.
     *
     * With 0 every step is worth the platform value 0.
     */
    void setStepRange(quint8 range);
    /// The number of steps. The name is spelled so.
    quint8 getStepRang();
    /// Whether prompts play on the alternative track; true until set. Only remembered.
    void setAlterMode(bool on);
    /// What setAlterMode() was given last, true until then.
    bool getAlterMode();
    /// The step last accepted by setMasterStepVolume(), 0 until then.
    quint8 getMasterStepVolume();
    /// 0 for ever: setAlterStepVolume() never records its step. Kept as it is.
    quint8 getAlterStepVolume();
    /// The state last given to setMute(), whether or not the platform took it; false until set.
    bool isMute();
    /// Does nothing; kept for clients that call it.
    void setProfileMode(int mode);

    // Stream and master volume ----------------------------------------------------------------------------------------------

    /**
     * Sets the volume of one source on one track.
     *
     * @param tag the track; outside 0..7 nothing happens, silently
     * @param name Qt-side source name; an unknown one does nothing, silently
     * @param volume platform scale, 0 to 148; above, "input volume val more than 148" is logged and nothing is sent
     *
     * Telephony, ringtone, alert, speech and aux-in sources are boosted by 1.5 and held at 148. A refusal of the platform is
     * logged as "set stream" NAME "err".
     */
    void setStreamVolume(AudioTag tag, const char *name, quint8 volume);

    /**
     * The platform's volume of one source on one track, 0 to 148.
     *
     * A boosted source reads back boosted. A refusal is logged as "get stream" TRACK SOURCE "err" and gives what the platform
     * wrote all the same: 0 unless it wrote something. 0 for an unknown tag or name, silently.
     */
    quint8 getStreamVolume(AudioTag tag, const char *name);

    /**
     * Holds the platform's master volume at 100, on purpose, whatever @p volume (0 to 100) is: loudness is set per track.
     *
     * @return 0, or -1 where the platform fails ("set master volume err") or @p volume is above 100
     */
    int setMasterVolume(quint8 volume);

    /// The platform's master volume, 0 to 100. On failure ("get master volume err") what it wrote all the same, 0 unless it wrote something.
    quint8 getMasterVolume();

    /**
     * Loads step volumes (0 to the step range) per Qt-side source name and sends each to the platform.
     *
     * @param tag Second for the rear seats' table and track "second"; any other tag is the main one
     * @param volumes the step of each source
     *
     * Steps above the range are lowered to it, with an error line. A name that the platform does not know is kept in the
     * table and logged ("get sp track name failed."). A source that stands for a group sets all members.
     */
    void initTrackStepVolume(AudioTag tag, const QHash<QString, quint8> &volumes);

    // Step volume -----------------------------------------------------------------------------------------------------------

    /**
     * Name and step of what plays on the main track.
     *
     * @return 0, or -1 when the platform cannot tell or the source has no step yet (@p step is then left alone)
     */
    int getCurMainTrackStepVolumeInfo(QString &name, quint8 &step);

    /**
     * Moves the volume of what plays on the main track one step @p up or down, together with its volume group.
     *
     * @param up true for louder
     * @param name receives the Qt-side name whose step changed: a group's key for its members
     * @param step receives the step that now holds
     * @return 0 changed, 1 already at the limit (no platform call), -1 no object or no source, else the platform's code
     */
    int changeMainTrackStepVolume(bool up, QString &name, quint8 &step);

    /// The platform's count of active alternative streams, passed on as it is, or -1.
    int getActivedAlterNumber();

    /**
     * Moves the alternative track from step @p cur one step @p up or down; @p out receives the new step on success.
     *
     * @return 0, 1 at the limit, -1 without a platform object, else the platform's code
     */
    int changeAlterStepVolume(bool up, quint8 cur, quint8 &out);

    /**
     * Sets the alternative track's volume, 0 to 100, boosted by 1.5 and held at 148.
     *
     * @param volume above 100, "input volume val more than 100" is logged and nothing is sent
     * @param hicarCall also set the HiCar call's volume on the main track
     * @return -1 always, on success too
     */
    int setAlterVolume(quint8 volume, bool hicarCall);
    /// setAlterVolume() of the platform value of a step; -1 always.
    int setAlterStepVolume(quint8 step, bool hicarCall);

    /**
     * Sets the master step. The first call is never refused; later ones are when @p step is unchanged or above the range
     * (a "[Warning]" line, no platform call).
     *
     * @return 0, or non-zero when refused or where setMasterVolume() fails
     */
    int setMasterStepVolume(quint8 step);

    // Mute ------------------------------------------------------------------------------------------------------------------

    /// Mutes or unmutes the main and alternative tracks; an unchanged state does nothing. The state changes even on failure.
    void setMute(bool mute);
    /// Switches the rear seats' output on or off. Always reaches the platform.
    void setBackEarphone(bool on);
    /// setBackEarphone(), said the other way round.
    void muteBackEarphone(bool mute);

    // Equalizer and loudness ------------------------------------------------------------------------------------------------

    /// Applies a mode's curve, 0 to 6, through the platform's short record (its first eight gains). Others: "input eq mode error".
    void setEqMode(EqMode mode);
    /// The sixteen gains of a mode's curve in dB, truncated toward zero; empty for a mode outside 0..6.
    QList<int> getEqGain(EqMode mode);
    /// The nine gains of a subwoofer curve in dB; empty for a mode outside 0..1.
    QList<int> getSubGain(SubMode mode);
    /**
     * Sixteen free gains, each -12 to +12 dB.
     *
     * Another count ("input frequency count err") or a gain outside the range, NaN included ("input gain val err"), refuses
     * the whole list.
     */
    void setEqGain(const QList<float> &gains);
    /// Ten free gains, -12 to +12 dB. The refusal of another count names 16, not 10; clients match on that text.
    void setEqGain10(const QList<int> &gains);
    /// Sixteen free gains, -12 to +12 dB, on the value preset.
    void setEqValue(const QList<int> &gains);
    /// Appends the sixteen band frequencies in Hz to @p out, which is not emptied.
    void getEqInitValue(QList<int> &out);
    /// Switches loudness. A refusal is logged as "set Loudness error".
    void setLoudnessSwitch(bool on);

    // Fade and balance ------------------------------------------------------------------------------------------------------

    /**
     * Places the sound in the car.
     *
     * @param fade steps, -15 (rear) to +15 (front)
     * @param balance steps, -15 (right) to +15 (left)
     *
     * Outside the range nothing is sent ("input fade" ... "err"). One channel's failure is logged and stops no other.
     */
    void setFadeBalance(int fade, int balance);

    // Routing and inputs ----------------------------------------------------------------------------------------------------

    /// Routes a platform source to a platform track.
    void setOutputSource(const char *track, const char *source);
    /// The same with a tag and a Qt-side name. A tag without a track stops with "get spTag string error." and sends nothing.
    void setOutputSource(AudioTag tag, const char *source);
    /// Routes and chooses front only or front and rear.
    void setOutputFrontSource(const char *track, const char *source, bool frontOnly);
    /// The same with a tag and a Qt-side name. A tag without a track stops with "get spTag string error." and sends nothing.
    void setOutputFrontSource(AudioTag tag, const char *source, bool frontOnly);
    /// Feeds a platform input track to a platform destination.
    void setInputDestination(const char *track, const char *destination);
    /// The same with a tag and a Qt-side name. A tag without a track stops with "get spTag string error." and sends nothing.
    void setInputDestination(AudioTag tag, const char *destination);
    /// Puts the auxiliary input on the pin of @p channel; a channel outside 0..5 selects pin 0.
    void setAuxinChannel(AudioInChannel channel);
    /// The auxiliary input's channel, or 0 on failure ("get auxin pin error").
    AudioInChannel getAuxinChannel();
    /// Puts the I2S input on pin 5, whatever @p channel is: on purpose.
    void setI2SINChannel(AudioInChannel channel);
    /// Ducking of the main audio; the mode's values are the platform's. "Dunking" is the operation's name.
    void setMainAudioDunkingMode(unsigned int mode);
    /// Gain of the ducked main audio, in the platform's unit. Its log line names the mode operation; kept.
    void setMainAudioDunkingTargetGain(unsigned char gain);

    // Microphone and voice --------------------------------------------------------------------------------------------------

    /// Microphone input volume, 0 to 91; outside "input data error:" is logged and nothing is sent.
    void setMicroPhoneVolume(int volume);
    /// The analogue gains, in the platform's unit. 0, -1 without a platform object, else the platform's code.
    int getMicAnalogGain(float *first, float *second);
    /// Sets the analogue gains, in the platform's unit. 0, -1 without a platform object, else the platform's code.
    int setMicAnalogGain(float first, float second);
    /// Stage and programmable gain. -1 always, on success too.
    int setMicOpAndPga(float op, float pga);
    /// Starts the platform's calibration of the microphone gain. 0, -1 without a platform object, else the platform's code.
    int startMicGainCalibration();
    /// Takes what the calibration found. 0, -1 without a platform object, else the platform's code.
    int setMicGainCalibration();
    /**
     * What the calibration found, in the platform's unit. 0, -1 without a platform object, else the platform's code.
     *
     * Both values are written whatever the platform answers, unless there is no platform object.
     */
    int getMicCalibrationGain(int *first, int *second);
    /// Starts the estimation of the downlink delay.
    void setDownlinkDelayEstimation();
    /// The estimate, in the platform's unit. 0, -1 without a platform object, else the platform's code.
    int getDownlinkDelayEstimation(short *delay);
    /// Delay for the echo cancelling, in the platform's unit. 0, -1 without a platform object, else the platform's code.
    int setHandsfreeDelay(int delay);
    /// Echo-cancelling quality 0 to 2; anything else is sent as 1, with an error line.
    void setAECQuality(AudioQuality quality);
    /// Self-test: replaces @p out by eight values; on failure ("get microphone test error.ret:") leaves it alone.
    void getMicrophoneTest(QList<int> &out);
    /// Swaps the left and right ADC inputs.
    void setMicLeftRightSwitch(bool swap);

    // Output processing -----------------------------------------------------------------------------------------------------

    /// Switches the platform's DPS processing ("Set Dps error.ret:"). Always reaches the platform.
    void setDpsEnable(bool enable);
    /// Switches the platform's stereo processing ("Set Stereo error.ret:"). Always reaches the platform.
    void setStereoEnable(bool enable);
    /// Gain of the DPS processing, in the platform's unit ("Set dps user gain error.ret:").
    void setDpsUserGain(float gain);
    /// Sets the filter of one output; a channel outside 0..5 addresses all outputs ("Set filter error.ret:").
    void setFilter(AudioOutChannel channel, const AudioFilter_t &filter);
    /// Six delays in the platform's unit, for outputs 0 to 5. Another count does nothing, silently.
    void setSpeakerDelay(QList<float> delays);
    /// The delay of one output. Spelled so, beside the list form.
    void setSpeakerDealy(AudioOutChannel channel, float delay);

private:
    Q_DISABLE_COPY(AudioControl)

    AudioControlPrivate *d;
    bool alterMode = true;
    static AudioControl *adCtrl;
};

} // namespace audio

#endif
