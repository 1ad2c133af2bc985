#ifndef QMLPLATFORM_H
#define QMLPLATFORM_H

#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtQml/QJSValue>

struct ScriptArgument;

namespace simulator
{
class AudioChip;
}

/**
 * The simulated platform for QML and JavaScript: the singleton Platform of the module QzAudio.Simulator.
 *
 * What reads or sets the state of the chip is called as in simulator::AudioChip; of the car, the journal, the faults and the books there is what scripts
 * need. Records come as objects. Tracks and sources are the platform's ("main",
 * "S+FilePlayer"), channels are output channel bits (1, 2, 4, 8, 16, 32). Arguments are checked as in AudioControl; besides, a reader
 * throws a RangeError for a track, source, channel, input or band that there is none of. Sources are those of the library, and whatever was
 * set or routed so far.
 *
 * Use it from the engine's thread, which must be the one that calls the platform.
 */
class QmlPlatform : public QObject
{
    Q_OBJECT
    /// Reverse gear, as the MCU service reports it.
    Q_PROPERTY(bool reverseGear READ reverseGear NOTIFY reverseGearChanged)
    /// Home screen that the settings provider reports; 7 has volume defaults of its own.
    Q_PROPERTY(int homeUiType READ homeUiType NOTIFY homeUiTypeChanged)
    /// The platform itself, for bindings: what is read through it is read again after each change. "Platform.live.isDucked()"
    Q_PROPERTY(QObject *live READ live NOTIFY liveChanged)

public:
    explicit QmlPlatform(QObject *parent = nullptr);

    // The car
    bool reverseGear() const;
    int homeUiType() const;
    QObject *live();
    Q_INVOKABLE void setReverseGear(const QJSValue &engaged);
    Q_INVOKABLE void setHomeUiType(const QJSValue &type);
    /// Time in ms that each call on the platform takes.
    Q_INVOKABLE void setCallDuration(const QJSValue &milliseconds);
    /// Everything as at the start. All signals come that a view needs to follow.
    Q_INVOKABLE void reset();

    // What can be heard
    /// Linear, 0 to 1, without equalizer and delay.
    Q_INVOKABLE double effectiveGain(const QJSValue &track, const QJSValue &source, const QJSValue &channel);
    /// All of it: {gain, equalizer (dB of the band), delay}.
    Q_INVOKABLE QVariantMap effectiveSound(const QJSValue &track, const QJSValue &source, const QJSValue &channel, const QJSValue &band);
    /// Gain and equalizer as one level in dB.
    Q_INVOKABLE double effectiveGainDb(const QJSValue &track, const QJSValue &source, const QJSValue &channel, const QJSValue &band);
    Q_INVOKABLE int effectiveMainVolume();
    Q_INVOKABLE double equalizerGain(const QJSValue &channel, const QJSValue &band);

    // Volumes
    Q_INVOKABLE int masterVolume();
    Q_INVOKABLE int trackVolume(const QJSValue &track, const QJSValue &source);
    Q_INVOKABLE int alternativeVolume();
    Q_INVOKABLE bool isMuted(const QJSValue &track);
    Q_INVOKABLE double duckingMode();
    Q_INVOKABLE int duckingGain();
    Q_INVOKABLE bool isDucked();
    Q_INVOKABLE int channelGain(const QJSValue &channel);

    // Routing
    Q_INVOKABLE QString activeSource(const QJSValue &track);
    Q_INVOKABLE bool setActiveSource(const QJSValue &track, const QJSValue &source);
    Q_INVOKABLE QString outputSource(const QJSValue &track);
    Q_INVOKABLE int outputChannelMask(const QJSValue &track);
    Q_INVOKABLE int frontRearMode();
    Q_INVOKABLE QString inputDestination(const QJSValue &track);
    Q_INVOKABLE int inputSelectPin(const QJSValue &input);
    Q_INVOKABLE int alternativeCount(const QJSValue &track);
    Q_INVOKABLE void setAlternativeCount(const QJSValue &count);

    // Sound processing
    /// The short record set last: {channel, frequency, gain, type}, each of the last three with eight entries.
    Q_INVOKABLE QVariantMap lastEqParameter();
    /// The extended record set last: {channel, frequency, gain, q, type}, each of the last four with twenty entries.
    Q_INVOKABLE QVariantMap lastExtEqParameter();
    Q_INVOKABLE bool isLoudnessOn();
    /// {channel, value1, notFlag, value2, kind, value3, value4}; empty where no filter was set.
    Q_INVOKABLE QVariantMap filter(const QJSValue &channel);
    Q_INVOKABLE double speakerDelay(const QJSValue &channel);
    Q_INVOKABLE bool isDpsEnabled();
    Q_INVOKABLE double dpsUserGain();
    Q_INVOKABLE bool isStereoEnabled();

    // Microphone and voice
    Q_INVOKABLE double micVolume();
    Q_INVOKABLE QVariantList micPgaGain();
    Q_INVOKABLE QVariantList micOpGain();
    Q_INVOKABLE QVariantList micAnalogGain();
    /// 0 never started, 1 running, 2 applied.
    Q_INVOKABLE int calibration();
    Q_INVOKABLE QVariantList calibrationGains();
    Q_INVOKABLE void setCalibrationGains(const QJSValue &first, const QJSValue &second);
    Q_INVOKABLE int downlinkDelay();
    Q_INVOKABLE void setDownlinkDelay(const QJSValue &delay);
    Q_INVOKABLE int handsfreeDelay();
    Q_INVOKABLE bool isMicLeftRightSwapped();
    Q_INVOKABLE int aecQuality();
    Q_INVOKABLE QVariantList microphoneTest();
    /// @param values eight numbers, 0 to 65535
    Q_INVOKABLE void setMicrophoneTest(const QJSValue &values);

    /// The whole state: [{group, name, value}, ...].
    Q_INVOKABLE QVariantList state();

    // Journal
    /// Every call so far without object numbers: "Volume.setTrackVolume(\"main\", \"S+FilePlayer\", 80) -> 0".
    Q_INVOKABLE QStringList journal();
    /// The same for people, with times, object numbers, creates and destroys.
    Q_INVOKABLE QString journalText();
    Q_INVOKABLE void clearJournal();

    // Faults
    /// Each call of @p operation ("Volume.setTrackVolume") fails with @p code.
    Q_INVOKABLE void fail(const QJSValue &operation, const QJSValue &code);
    /// Only the @p n th call from now.
    Q_INVOKABLE void failOnce(const QJSValue &operation, const QJSValue &code, const QJSValue &n);
    /// Each "App", "Mixer", "Source" or "Volume" that is asked for is null.
    Q_INVOKABLE void failFactory(const QJSValue &kind);
    Q_INVOKABLE QStringList pendingFaults();
    Q_INVOKABLE void clearFaults();

    // Books
    /// Objects of a kind ("Volume") that exist now.
    Q_INVOKABLE int alive(const QJSValue &kind);
    Q_INVOKABLE int made(const QJSValue &kind);
    /// Double destroys and uses after destroy, in words.
    Q_INVOKABLE QStringList problems();

Q_SIGNALS:
    void reverseGearChanged();
    void homeUiTypeChanged();
    /// Something that the functions read may be different, journal, faults and books included.
    void liveChanged();
    /// One item of state() really changed; an invalid value: it is no longer set.
    void stateChanged(const QString &group, const QString &name, const QVariant &value);
    /// A call reached the platform, as a line of journal().
    void called(const QString &call);

private:
    Q_DISABLE_COPY(QmlPlatform)

    template<typename Result, typename... Parameters>
    Result askChip(Result (simulator::AudioChip::*operation)(Parameters...) const, const ScriptArgument (&arguments)[sizeof...(Parameters)]);
    int objects(const QJSValue &kind, bool alive);
    /// @param group the group of a state item, with its name and value
    void learnSource(const QString &group, const QString &name, const QVariant &value);

    QSet<QString> m_sourcesInUse;
};

#endif
