#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>

#include <cstdio>
#include <unistd.h>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    ZelAudioManager *const audio = ZelAudioManager::instance();
    audio->updateAudioChannel(AudioChannelFilePlayer);

    // What a key changed: the new volume, and which of the six it is.
    QObject::connect(audio, &ZelAudioManager::zelvolumeChanged, &application, [](bool mute, int volume, int type) {
        if (type == ZelAudioTypeMedia)
            std::printf("media volume %d%s\n", volume, mute ? ", muted" : "");
    });

    // The keys of this player: + and - for the volume, q for the end.
    QSocketNotifier keys(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&keys, &QSocketNotifier::activated, &application, [audio] {
        char key = 'q';
        if (::read(STDIN_FILENO, &key, 1) != 1 || key == 'q')
            QCoreApplication::quit();
        else if (key == '+' || key == '-')
            audio->updateCurrentAudioVolume(key == '+'); // one step, saved
    });
    return QCoreApplication::exec();
}
