#include "player.h"
#include "somebody.h"

#include <qzaudio/focusrequester.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaEnum>
#include <QtCore/QSocketNotifier>

#include <cstdio>
#include <unistd.h>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Player player;
    QObject::connect(&player, &Player::volumeChanged, &application, [&player] { std::printf("volume %d\n", player.volume()); });
    QObject::connect(
        &player, &Player::stateChanged, &application, [&player] { std::printf("%s\n", QMetaEnum::fromType<Player::State>().valueToKey(player.state())); });
    Somebody navigation(QStringLiteral("navigation"));
    Somebody radio(QStringLiteral("radio"));

    QSocketNotifier keys(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&keys, &QSocketNotifier::activated, &application, [&] {
        char key = 'q';
        if (::read(STDIN_FILENO, &key, 1) != 1)
            key = 'q';
        switch (key) {
        case 'p':
            player.play();
            break;
        case 's':
            player.stop();
            break;
        case '+':
        case '-':
            player.turnVolume(key == '+');
            break;
        case 'n': // the navigation speaks
            navigation.request(AUDIOFOCUS_GAIN_TRANSIENT_MAY_DUCK);
            break;
        case 'e': // and has ended
            navigation.abandon();
            break;
        case 'r': // the radio is switched on
            radio.request(AUDIOFOCUS_GAIN);
            break;
        case 'o': // and off
            radio.abandon();
            break;
        case 'q':
            QCoreApplication::quit();
            break;
        default:
            break;
        }
    });
    return QCoreApplication::exec();
}
