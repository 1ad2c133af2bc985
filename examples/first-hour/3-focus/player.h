#ifndef PLAYER_H
#define PLAYER_H

#include <qzaudio/audiolisteners.h>

#include <QtCore/QObject>

/// A media player that plays while it has audio focus.
class Player final : public QObject, private IAudioFocusChangeListener
{
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(int volume READ volume NOTIFY volumeChanged)

public:
    enum State { Stopped, Playing, Quiet, Paused };
    Q_ENUM(State)

    explicit Player(QObject *parent = nullptr);
    ~Player() override;

    State state() const { return m_state; }
    int volume() const;

public Q_SLOTS:
    void play();
    void stop();
    void turnVolume(bool up);

Q_SIGNALS:
    void stateChanged();
    void volumeChanged();

private:
    Q_DISABLE_COPY(Player)

    void onAudioFocusChange(int focusChange) override;
    QString clientId() override { return QStringLiteral("player"); }
    void abandonIfStopped();
    void setState(State state);

    State m_state = Stopped;
};

#endif
