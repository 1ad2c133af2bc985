#ifndef SOUNDSETTINGS_H
#define SOUNDSETTINGS_H

#include <qzaudio/audiodatabase.h>

#include <QtCore/QObject>
#include <QtCore/QVector>

/// What the sound page of the settings shows and sets.
class SoundSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int equalizerType READ equalizerType WRITE setEqualizerType NOTIFY equalizerChanged)
    Q_PROPERTY(QVector<int> bands READ bands NOTIFY equalizerChanged)
    Q_PROPERTY(int fade READ fade WRITE setFade NOTIFY placeChanged)
    Q_PROPERTY(int balance READ balance WRITE setBalance NOTIFY placeChanged)

public:
    /// Starts up the audio and places the sound where it was.
    explicit SoundSettings(QObject *parent = nullptr);

    /// 0 to 7; 7 is the user's own curve.
    int equalizerType() const;
    void setEqualizerType(int type);
    /// The user's own curve: sixteen bands in steps of 2 dB, -6 to 6.
    QVector<int> bands() const;
    Q_INVOKABLE void setBand(int band, int steps);

    /// -15 (rear) to 15 (front). Heard at once; kept with savePlace().
    int fade() const { return m_fade; }
    void setFade(int fade);
    /// -15 (right) to 15 (left). Heard at once; kept with savePlace().
    int balance() const { return m_balance; }
    void setBalance(int balance);
    /// For when the slider is let go: a save at each step would wear the flash.
    Q_INVOKABLE void savePlace();

Q_SIGNALS:
    void equalizerChanged();
    void placeChanged();

private:
    void applyPlace();

    audio::AudioDataBase m_store;
    int m_fade;
    int m_balance;
};

#endif
