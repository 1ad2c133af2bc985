#ifndef QZAUDIO_ZELAUDIOMANAGER_H
#define QZAUDIO_ZELAUDIOMANAGER_H

#include <qzaudio/audiocontrol.h>
#include <qzaudio/audiotypes.h>
#include <qzaudio/export.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QTimer>

namespace audio
{
class AudioDataBase;
}

/**
 * @file
 * The policy manager, and types of its arguments.
 */

/// Phone-projection status. The library only logs that it came.
enum CPAAStatus : int {};

/// Answer to a volume change. The library only logs that it came.
enum VolResponseState : int {};

/**
 * The audio policy of the head unit: which stored volume applies to which source in which situation, and when.
 *
 * Applications report the current audio status and channel, change volumes, mute, duck for phone projection and work the
 * equalizer and microphone. The manager drives audio::AudioControl and keeps an audio::AudioDataBase of its own.
 *
 * Volumes run from 0 to 25 and reach the platform as volume × 4. Operations report no error; what the platform refuses is
 * logged by the facade.
 *
 * Logging: operations leave a "[DBG]" line on entry, and those that they call leave theirs, with these exceptions: the empty
 * onCarplayAlertStart() and onCarplayAlertStop() leave none; setEqType(100) first leaves that of eqType(); what asks the
 * platform for microphone gains logs afterwards, with the answer. instance() itself logs nothing, the making of the manager does.
 *
 * Threads: only the first instance() is guarded. The manager belongs to the thread that made it, which must run a Qt event
 * loop: its six timers and the reverse-gear signal arrive there. Call its operations from that thread only. Made where no such loop
 * can be, before the QCoreApplication or on a thread that is not a QThread, it leaves one line at critical level, "no event loop on
 * this thread: timers will not run". A QThread that never calls exec() looks like any other, so there nothing is said.
 *
 * Each stored change rewrites the settings file before the call returns (see audio::AudioDataBase). Pointers that an
 * operation writes to must not be null.
 */
class QZAUDIO_EXPORT ZelAudioManager : public QObject
{
    Q_OBJECT

public:
    /**
     * The one manager of the process: made by the first call, which starts up the audio; destroyed at process exit.
     *
     * The static objects of the program are destroyed before it, so their destructors may use it, also to save. Timers do not run any more
     * then.
     */
    static ZelAudioManager *instance();

    /// For tests and tools that need a manager of their own; applications use instance().
    explicit ZelAudioManager(QObject *parent = nullptr);
    ~ZelAudioManager() override;

    // Status, channel and volume --------------------------------------------------------------------------------------------

    /**
     * Reports what sounds now and applies its stored volume.
     *
     * The current status again applies nothing. Every call, that one too, stops the timer of a CarPlay prompt (see cpDuckAudio()).
     */
    void updateAudioStatus(AudioStatus status);
    /**
     * Routes the channel to the main track. No volume is written.
     *
     * The first channel other than 0 in the life of the process also applies the stored equalizer type, and once more after 2000 ms.
     * From then on channels 3, 5, 10 and 17 apply it on every report. Each of these rewrites the settings file.
     */
    void updateAudioChannel(AudioChannel channel);
    /// The channel last reported, 0 until then.
    int currentAudioChannel();
    /**
     * Sets a volume for all channels of a type at once; types 1 and 5 are the alternative track's.
     *
     * @param type 0 to 5; another number is heard nowhere, but changes the store (see audio::AudioDataBase::setVolume())
     * @param volume usually 0 to 25
     * @param save also write it to the settings file
     *
     * A type with two channels or more becomes pending, and 500 ms after the last such call pending types are written to the
     * platform once more. Of several pending types only the first, third, fifth … are: of three the second is dropped and the
     * third, though written, stays for the next run. This is deliberate.
     */
    void setVolume(ZelAudioType type, int volume, bool save);
    /// The volume in memory, saved or not, usually 0 to 25. Other types than 0 to 5 are folded (see audio::AudioDataBase).
    int getVolume(ZelAudioType type);
    /// Writes all six volumes to the settings file.
    void saveVolume();
    /**
     * The volume key: one step up or down, 0 to 25, for what sounds now; saved. Emits zelvolumeChanged().
     *
     * In statuses 1, 2, 3, 5, 6, 10, 14 and 18 the status decides the type. In the others only channels of type 0 have one, and
     * with any other channel (0 is one of them) nothing happens at all. Channel 18 makes it type 5 in every status.
     */
    void updateCurrentAudioVolume(bool up);
    /// Only logs that it was called.
    void setVolResponse(VolResponseState state, bool on);
    /// Replaces the list by the channels of a volume type, ascending.
    void _getAllChannelsFromCurrentType(QList<AudioChannel> &channels, ZelAudioType type);

    // Ducking and phone projection ------------------------------------------------------------------------------------------

    /// Lowers the main audio to the fixed gain 60; @p level is only logged, on purpose.
    void duck(int level);
    /// Restores the main audio at once, whoever ducked it: there is one ducking mode.
    void unDuck();
    /// Android Auto prompt begins: ducks and applies the volume of status 14 at once. The arguments are not used.
    void aaDuckAudio(int, int);
    /// Android Auto prompt ends: applies the volume of status 15 and restores the main audio at once. The argument is not used.
    void aaUnduckAudio(int);
    /// CarLife prompt begins: ducks and applies the volume of status 18 at once. The arguments are not used.
    void clDuckAudio(int, int);
    /// CarLife prompt ends: applies the volume of status 19 and restores the main audio at once. The argument is not used; the log line
    /// names Android Auto, kept.
    void clUnduckAudio(int);
    /// CarPlay prompt begins: duck(@p level) at once; status 10 is applied when neither an unduck nor any updateAudioStatus() came within 1000 ms.
    void cpDuckAudio(int, int level);
    /// CarPlay prompt ends: after 500 ms without a new duck, status 11 is applied and the main audio restored.
    void cpUnduckAudio(int);
    /// Whether CarPlay is connected. Only remembered.
    void setCPConnected(bool connected);
    /// What setCPConnected() was last given, false until then.
    bool getCPConnected();
    /// Only logs that it was called.
    void updateCPAAStatus(CPAAStatus status);
    /// Only logs that it was called.
    void setCpPhone(bool on);

    // Mute, attenuation and reverse gear ------------------------------------------------------------------------------------

    /**
     * Mutes for @p count × 50 ms; a product that no int holds mutes for the longest time there is.
     *
     * With @p mute false, or a negative count, unmutes if muted. An unmute leaves a running timed mute's timer running.
     */
    void setAudioMute(bool mute, int count);
    /// Unmutes. A timed mute's timer keeps running.
    void deMute();
    /// Mutes or unmutes at once, without a time. The state that holds already does nothing; a timed mute's timer keeps running.
    void setMute(bool mute);
    /// Whether it is muted, as the facade remembers it.
    bool isAttOn();
    /// Mutes when audible, unmutes when muted.
    void triggerAtt();
    /// Reverse gear: engaged ducks the way a CarPlay prompt does, left restores.
    void onRecvBackCar(bool on);
    /// HiCar call connected or gone: switches the alternative track between the volumes of types 5 and 1.
    void setHCconnect(bool on);

    // Equalizer -------------------------------------------------------------------------------------------------------------

    /// The first of eight presets, owned by the manager's store.
    const EqBaseData *getEqBaseData();
    /// The custom curve's band 0 to 15 as stored: twice what adjustCustomEq() was given.
    int customEq(int band);
    /// The stored equalizer type, usually 0 to 7; 7 is the custom curve.
    int eqType();
    /// Applies and stores an equalizer type, 0 to 7; 100 applies the stored one. An unknown type sounds like type 0.
    void setEqType(int type);
    /// Applies and stores the type before the stored one, 7 before 0.
    void eqTypePrev();
    /// Applies and stores the type after the stored one, 0 after 7.
    void eqTypeNext();
    /**
     * Sets one band of the custom curve to value × 2 dB and selects the custom type.
     *
     * @param value -6 to +6; the facade refuses a curve with a gain beyond ±12 dB, but the value is stored all the same
     * @param band 0 to 15; any other band stops the process (fatal assertion "index out of range")
     *
     * The same value again within 500 ms of the last adjustment is ignored.
     */
    void adjustCustomEq(int value, int band);
    /// Whether loudness is on, as stored.
    bool loudNess();
    /// Switches loudness and stores it. It does not survive: every start switches it off, in the settings file too.
    void setLoudNess(bool on);

    // Microphone ------------------------------------------------------------------------------------------------------------

    /// The stored microphone input volume, usually 0 to 91.
    int micInputValue();
    /// 0 to 91; beyond it the facade refuses, but the value is stored all the same.
    void setMicInputValue(int value);
    /// True for the original microphone.
    bool micTypeIsDefault();
    /// Selects and stores the microphone, true for the original one, and applies its gain and delay. The platform is given the opposite.
    void setMicLeftRightSwitch(bool sw);
    /// The stored gain in whole dB.
    float getMicAnalogGain();
    /// The platform's gains in dB; 0, or the facade's failure.
    int getMicAnalogGain(float *left, float *right);
    /// Applies both, stores the left one only.
    int setMicAnalogGain(float left, float right);
    /// Splits the stored gain into an analogue stage (0 to 40 dB) and the programmable rest in whole dB, which may be negative.
    void getMicAnalogOpAndPga(float &op, int &pga);
    /// Starts the platform's calibration of the microphone gain; 0, or the facade's failure.
    int startMicGainCalibration();
    /// Applies what the calibration found; 0, or the facade's failure. The stored gain stays.
    int setMicGainCalibration();
    /// Writes the first calibration gain and gives the second, whatever the platform answers. Without a platform object it only gives 0.
    float getMicCalibrationGain(int *first);
    /// Applies and stores the delay, in the platform's unit; 0, or the facade's failure (stored all the same).
    int setHandsfreeDelay(int delay);
    /// Starts the estimation of the downlink delay.
    void setDownlinkDelayEstimation();
    /// Writes the estimated delay, in the platform's unit; 0, or the facade's failure.
    int getDownlinkDelayEstimation(short *delay);
    /// Feeds an input to a destination and applies the stored gain again.
    void setInputDestination(audio::AudioControl::AudioTag tag, const char *name);

Q_SIGNALS:
    /// Never emitted by the library; declared for clients.
    void audioChannel(int channel);
    /// Never emitted by the library; declared for clients.
    void volumeChanged();
    /// Never emitted by the library; declared for clients.
    void audioVolumeChanged(bool mute, int volume);
    /// updateCurrentAudioVolume() changed a volume: @p mute when it went below 1, the new volume 0 to 25, and its type.
    void zelvolumeChanged(bool mute, int volume, int volumeType);

public Q_SLOTS:
    /// Empty.
    void onCarplayAlertStart();
    /// Empty.
    void onCarplayAlertStop();

private:
    Q_DISABLE_COPY(ZelAudioManager)

    void _init();
    void _handleVolumeTypeChanged(AudioStatus status);
    void _handleChannelVolumeChanged(ZelAudioType type, int volume);
    void _delaysetVolume();
    void _handleNotComeCpAlte();
    void _delayCpTruelyUnduck();
    void onFirstSetEqType();
    void insertList(QList<float> &list, int type);
    audio::AudioControl::AudioTag currentTag();

    audio::AudioControl *control;
    audio::AudioDataBase *dataBase = nullptr;
    AudioStatus currentStatus = AudioStatusNone;
    AudioChannel currentChannel = AudioChannelNone;
    QTimer muteTimer;
    QTimer delayVolumeTimer;
    QTimer customEqTimer;
    QTimer firstEqTimer;
    QTimer cpAlertTimer;
    QTimer cpUnduckTimer;
    QList<ZelAudioType> pendingVolumeTypes;
    bool cpDucking = false;
    bool cpConnected = false;
    bool hcConnected = false;
};

#endif
