#ifndef DRIVEMODEL_H
#define DRIVEMODEL_H

#include "countdown.h"
#include "roommodel.h"
#include "situations.h"
#include "timerlist.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariantList>

/**
 * The room Drive: what is heard, channel and status, situations, volumes, mute and timers.
 *
 * What changes the car gives the lines of the scenario that did it. Without a desk nothing is done, and the lines are given all the same.
 */
class DriveModel : public RoomModel
{
    Q_OBJECT
    /// Whether the ignition is on.
    Q_PROPERTY(bool on READ isOn NOTIFY soundChanged)
    Q_PROPERTY(QString heard READ heard NOTIFY soundChanged)
    Q_PROPERTY(bool reverseGear READ reverseGear NOTIFY soundChanged)
    Q_PROPERTY(bool ducked READ isDucked NOTIFY soundChanged)
    /// Percent that the main audio is lowered to while ducked.
    Q_PROPERTY(int duckGain READ duckGain NOTIFY soundChanged)

    /// Numbers with their words, {number, text, name, meaning}; the number is the index.
    Q_PROPERTY(QVariantList channels READ channels CONSTANT)
    Q_PROPERTY(QVariantList statuses READ statuses CONSTANT)
    Q_PROPERTY(QVariantList volumeTypes READ volumeTypes CONSTANT)
    Q_PROPERTY(int channel READ channel NOTIFY situationChanged)
    Q_PROPERTY(int status READ status NOTIFY situationChanged)
    /// Lines that state what is shown.
    Q_PROPERTY(QString expectedChannel READ expectedChannel NOTIFY situationChanged)
    Q_PROPERTY(QString expectedStatus READ expectedStatus NOTIFY situationChanged)
    /// The situations of a car by what they are about: {title, situations: [{name, title, explanation}, …]}.
    Q_PROPERTY(QVariantList situationGroups READ situationGroups CONSTANT)

    /// Six numbers, usually 0 to 25; empty where they are not known.
    Q_PROPERTY(QVariantList volumes READ volumes NOTIFY volumesChanged)
    /// The volume type that the volume keys work on; -1 for nothing.
    Q_PROPERTY(int keyType READ keyType NOTIFY volumesChanged)
    Q_PROPERTY(QString keyReason READ keyReason NOTIFY volumesChanged)
    /// Its volume, which steps that are still on their way to the car count for already; -1 for nothing.
    Q_PROPERTY(int keyVolume READ keyVolume NOTIFY keyVolumeChanged)

    Q_PROPERTY(bool muted READ isMuted NOTIFY muteChanged)
    /// ms of a timed mute; -1 without one.
    Q_PROPERTY(double muteLeft READ muteLeft NOTIFY muteChanged)
    /// The same of the time that it had, from 1 down to 0.
    Q_PROPERTY(double muteShare READ muteShare NOTIFY muteChanged)
    Q_PROPERTY(TimerList *timers READ timers CONSTANT)

public:
    /// ms of a count of AudioPolicy.setAudioMute().
    static constexpr int muteUnit = 50;

    explicit DriveModel(QObject *parent = nullptr);

    bool isOn() const { return m_sound.isOn; }
    QString heard() const { return m_sound.heard; }
    bool reverseGear() const { return m_sound.reverseGear; }
    bool isDucked() const { return m_sound.isDucked; }
    int duckGain() const { return m_sound.duckGain; }
    QVariantList channels() const;
    QVariantList statuses() const;
    QVariantList volumeTypes() const;
    int channel() const { return m_channel; }
    int status() const { return m_status; }
    QVariantList situationGroups() const;
    QVariantList volumes() const { return m_volumes; }
    int keyType() const { return m_keyType; }
    QString keyReason() const { return m_keyReason; }
    int keyVolume() const;
    bool isMuted() const { return m_isMuted; }
    double muteLeft() const { return double(m_mute.left()); }
    double muteShare() const { return m_mute.share(); }
    TimerList *timers() { return &m_timers; }

    Q_INVOKABLE QStringList chooseChannel(int channel);
    Q_INVOKABLE QStringList chooseStatus(int status);
    /// A situation by its name.
    Q_INVOKABLE QStringList perform(const QString &situation);
    /// One step of the volume key, also where it works on nothing.
    Q_INVOKABLE QStringList step(bool up);
    /// As many steps of the volume key as it takes; none where it works on nothing.
    Q_INVOKABLE QStringList turnTo(int volume);
    Q_INVOKABLE QStringList setVolume(int type, int volume);
    Q_INVOKABLE QStringList setMuted(bool muted);
    Q_INVOKABLE QStringList toggleMute();
    /// A timed mute, of whole units.
    Q_INVOKABLE QStringList muteFor(int milliseconds);

    QString expectedStatus() const;
    QString expectedChannel() const;
    /// A line that states a volume as it is shown.
    Q_INVOKABLE QString expectedVolume(int type) const;

Q_SIGNALS:
    void soundChanged();
    void situationChanged();
    void volumesChanged();
    void keyVolumeChanged();
    void muteChanged();

protected:
    void update(const QVariantMap &snapshot) override;

private:
    struct Sound
    {
        bool isOn = false;
        QString heard;
        bool reverseGear = false;
        bool isDucked = false;
        int duckGain = 0;

        bool operator==(const Sound &other) const;
    };

    void watchDesk();
    QStringList performed(const QStringList &lines);
    void noteChannel();
    void noteOutcome(const QString &line);
    void forgetSteps();

    Sound m_sound;
    int m_channel = 0;
    int m_status = 0;
    Situations m_situations;
    QVariantList m_volumes;
    int m_keyType = -1;
    QString m_keyReason;
    int m_wantedVolume = -1; // what the steps on their way lead to
    int m_stepsOnTheirWay = 0;
    bool m_isMuted = false;
    Countdown m_mute;
    TimerList m_timers;
    QPointer<Desk> m_watched;
};

#endif
