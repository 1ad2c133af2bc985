#include "player.h"

#include <qzaudio/audiomanager.h>
#include <qzaudio/focusrequester.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QTimer>

namespace
{

constexpr int streamType = 3; // a number of the application's own

/// The file player's sound goes to the loudspeakers.
void takeChannel()
{
    ZelAudioManager::instance()->updateAudioChannel(AudioChannelFilePlayer);
}

} // namespace

Player::Player(QObject *parent)
    : QObject(parent)
{
    connect(ZelAudioManager::instance(), &ZelAudioManager::zelvolumeChanged, this, &Player::volumeChanged);
}

Player::~Player()
{
    AudioManager::instance()->abandonAudioFocus(this); // which has a pointer to the player until then
}

int Player::volume() const
{
    return ZelAudioManager::instance()->getVolume(ZelAudioTypeMedia);
}

void Player::play()
{
    if (AudioManager::instance()->requestAudioFocus(streamType, AUDIOFOCUS_GAIN, this) != 0)
        return; // there is a call, from which nobody takes focus
    takeChannel();
    setState(Playing);
}

void Player::stop()
{
    AudioManager::instance()->abandonAudioFocus(this);
    setState(Stopped);
}

void Player::turnVolume(bool up)
{
    ZelAudioManager::instance()->updateCurrentAudioVolume(up);
}

// Requests and abandons nothing by itself: AudioManager holds its lock while it tells, and would wait for itself for ever.
void Player::onAudioFocusChange(int focusChange)
{
    switch (focusChange) {
    case AUDIOFOCUS_GAIN:
        if (m_state == Paused)
            takeChannel(); // somebody else had the loudspeakers meanwhile
        setState(Playing);
        break;
    case AUDIOFOCUS_LOSS_TRANSIENT_CAN_DUCK:
        setState(Quiet); // for a while; to play on is allowed
        break;
    case AUDIOFOCUS_LOSS_TRANSIENT:
        setState(Paused); // for a while, in silence
        break;
    default:
        setState(Stopped); // AUDIOFOCUS_LOSS: another one plays now
        QTimer::singleShot(0, this, &Player::abandonIfStopped);
        break;
    }
}

/// Who stays on the stack is given focus again when the other one ends, and would play by itself.
void Player::abandonIfStopped()
{
    if (m_state == Stopped)
        AudioManager::instance()->abandonAudioFocus(this);
}

void Player::setState(State state)
{
    if (state == m_state)
        return;
    m_state = state;
    Q_EMIT stateChanged();
}
