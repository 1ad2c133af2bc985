#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv); // first: the manager's timers need its event loop
    ZelAudioManager *const audio = ZelAudioManager::instance(); // the first call of the process starts up the audio
    audio->updateAudioChannel(AudioChannelFilePlayer); // the file player's sound goes to the loudspeakers
    std::printf("media volume %d of 25\n", audio->getVolume(ZelAudioTypeMedia));
    return 0;
}
