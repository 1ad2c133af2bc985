#ifndef CARMODEL_H
#define CARMODEL_H

#include "roommodel.h"

#include <QtCore/QString>
#include <QtCore/QVariantList>

/// The room Car: where the sound is in it, how loud each loudspeaker is, and what the platform does to each output.
class CarModel : public RoomModel
{
    Q_OBJECT
    /**
     * The outputs in the order of their bits, none before the car has answered:
     * {name, gain (percent), gainText, level (dB of what plays on main), levelText, loudness (0 to 1, of the level), delay, filter}.
     */
    Q_PROPERTY(QVariantList outputs READ outputs NOTIFY outputsChanged)
    /// Steps, from rear -15 to front 15, as last asked for.
    Q_PROPERTY(int fade READ fade NOTIFY placeChanged)
    /// Steps, from right -15 to left 15: the left is positive, which is meant so.
    Q_PROPERTY(int balance READ balance NOTIFY placeChanged)
    /// "front 3, left 5"
    Q_PROPERTY(QString placeText READ placeText NOTIFY placeChanged)
    /// 0 front only, 1 front and rear; -1 where it is not known.
    Q_PROPERTY(int frontRearMode READ frontRearMode NOTIFY frontRearModeChanged)
    /// 0 to 100; -1 where it is not known.
    Q_PROPERTY(int masterVolume READ masterVolume NOTIFY masterVolumeChanged)
    /// What plays, and how loud it is at the driver's ear: {track, source, text, level, levelText, muted}.
    Q_PROPERTY(QVariantList sources READ sources NOTIFY sourcesChanged)
    /// The platform's source on the main track, which front and rear are chosen for; empty for none.
    Q_PROPERTY(QString mainSource READ mainSource NOTIFY sourcesChanged)

    /// Of fade and balance, up and down.
    Q_PROPERTY(int highestStep READ highestStep CONSTANT)

public:
    using RoomModel::RoomModel;

    QVariantList outputs() const { return m_outputs; }
    int fade() const { return m_fade; }
    int balance() const { return m_balance; }
    QString placeText() const { return textOfPlace(m_fade, m_balance); }
    int frontRearMode() const { return m_frontRearMode; }
    int masterVolume() const { return m_masterVolume; }
    QVariantList sources() const { return m_sources; }
    QString mainSource() const;
    int highestStep() const;

    Q_INVOKABLE QString textOfPlace(int fade, int balance) const;

    // Lines for Desk::perform(); empty for what cannot be asked for.
    /// Steps beyond the range are taken to its end.
    Q_INVOKABLE QString placeLine(int fade, int balance) const;
    Q_INVOKABLE QString delayLine(int output, double delay) const;
    Q_INVOKABLE QString frontOnlyLine(bool frontOnly) const;

    // The same for ExpectButton, of what is shown.
    Q_INVOKABLE QString gainExpectation(int output, int gain) const;
    Q_INVOKABLE QString delayExpectation(int output, double delay) const;
    Q_INVOKABLE QString frontRearExpectation(int mode) const;

Q_SIGNALS:
    void outputsChanged();
    void placeChanged();
    void frontRearModeChanged();
    void masterVolumeChanged();
    void sourcesChanged();

protected:
    void update(const QVariantMap &snapshot) override;

private:
    QVariantList m_outputs;
    int m_fade = 0;
    int m_balance = 0;
    int m_frontRearMode = -1;
    int m_masterVolume = -1;
    QVariantList m_sources;
};

#endif
