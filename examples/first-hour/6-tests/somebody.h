#ifndef SOMEBODY_H
#define SOMEBODY_H

#include <qzaudio/audiolisteners.h>
#include <qzaudio/audiomanager.h>

/// Another application, to try out what it does to the player.
class Somebody final : public IAudioFocusChangeListener
{
public:
    explicit Somebody(const QString &id)
        : m_id(id)
    {
    }
    ~Somebody() override { abandon(); }

    bool request(int durationHint) { return AudioManager::instance()->requestAudioFocus(0, durationHint, this) == 0; }
    void abandon() { AudioManager::instance()->abandonAudioFocus(this); }

    void onAudioFocusChange(int) override { }
    QString clientId() override { return m_id; }

private:
    Q_DISABLE_COPY(Somebody)

    QString m_id;
};

#endif
