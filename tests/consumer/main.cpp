// A media player's share of the head unit, as the guide shows it: one source, the volume key, audio focus.

#include <qzaudio/audiomanager.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QCoreApplication>

#include <cstdio>

class Player : public IAudioFocusChangeListener
{
public:
    void onAudioFocusChange(int) override { }
    QString clientId() override { return QStringLiteral("player"); }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);

    Player player;
    if (AudioManager::instance()->requestAudioFocus(3, 1, &player) != 0) {
        std::puts("no focus");
        return 1;
    }
    ZelAudioManager *audio = ZelAudioManager::instance();
    audio->updateAudioChannel(AudioChannelFilePlayer);
    const int before = audio->getVolume(ZelAudioTypeMedia);

    int heard = -1;
    QObject::connect(audio, &ZelAudioManager::zelvolumeChanged, [&heard](bool, int volume, int) { heard = volume; });
    // The file player plays in a status of media: the status without a meaning of its own follows the channel.
    audio->updateCurrentAudioVolume(true);
    AudioManager::instance()->abandonAudioFocus(&player);

    std::printf("volume %d, then %d\n", before, heard);
    return before == 20 && heard == 21 ? 0 : 1;
}
