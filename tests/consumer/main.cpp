// A media player's share of the head unit. Up to the end of main() this is the example of README.md: change both together.

#include <qzaudio/audiomanager.h>
#include <qzaudio/focusrequester.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QCoreApplication>

#include <cstdio>

class Player : public IAudioFocusChangeListener
{
public:
    void onAudioFocusChange(int focusChange) override { std::printf("focus change %d\n", focusChange); }
    QString clientId() override { return QStringLiteral("player"); }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv); // the manager's timers need its event loop
    ZelAudioManager *audio = ZelAudioManager::instance(); // starts up the audio
    QObject::connect(audio, &ZelAudioManager::zelvolumeChanged, &application, [](bool, int volume, int) { std::printf("volume %d\n", volume); });

    Player player;
    const int streamType = 3; // a number of the client's own
    if (AudioManager::instance()->requestAudioFocus(streamType, AUDIOFOCUS_GAIN, &player) != 0)
        return 1;
    audio->updateAudioChannel(AudioChannelFilePlayer); // routes the file player to the loudspeakers
    audio->updateCurrentAudioVolume(true); // the volume key, one step up
    const int status = application.exec();
    AudioManager::instance()->abandonAudioFocus(&player); // before it is destroyed
    return status;
}

// The test: looks, from the event loop of the program above, at what it did to a unit without settings, and ends it.

#include <QtCore/QTimer>

static void lookAtThePlayer()
{
    QTimer::singleShot(0, [] {
        ZelAudioManager *audio = ZelAudioManager::instance();
        const int volume = audio->getVolume(ZelAudioTypeMedia);
        int heard = -1;
        QObject::connect(audio, &ZelAudioManager::zelvolumeChanged, qApp, [&heard](bool, int changed, int) { heard = changed; });
        audio->updateCurrentAudioVolume(true);
        audio->disconnect(qApp);
        std::printf("volume %d, then %d\n", volume, heard);
        QCoreApplication::exit(volume == 21 && heard == 22 ? 0 : 2);
    });
}
Q_COREAPP_STARTUP_FUNCTION(lookAtThePlayer)
