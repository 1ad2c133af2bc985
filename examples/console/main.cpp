/*
 * C++ alone, without a window: shows the six stored volumes, or sets one.
 *
 *     qzaudio-with-flash --dir flash ./volumes
 *     qzaudio-with-flash --dir flash ./volumes telephony 12
 *
 * The folder "flash" keeps the settings from one to the next.
 *
 * Exit status: 0; 2 for arguments that make no sense.
 */

#include <qzaudio/audiodatabase.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>

#include <cstdio>

namespace
{

constexpr int highestVolume = 25;

/// The names of the volumes, each at the place of its number.
QStringList names()
{
    return {QStringLiteral("media"),
            QStringLiteral("prompts"),
            QStringLiteral("telephony"),
            QStringLiteral("ring"),
            QStringLiteral("speech"),
            QStringLiteral("hicar")};
}

/// Reads the settings and nothing else: the manager would start up the audio, which another process does already on a running unit.
int show()
{
    audio::AudioDataBase store;
    int type = 0;
    const QStringList all = names();
    for (const QString &name : all)
        std::printf("%-10s %d\n", qPrintable(name), store.getVolume(static_cast<ZelAudioType>(type++)));
    return 0;
}

/// Heard at once, and saved. This starts up the audio here, too; a manager in another process goes on with the volumes that it has.
int set(const QString &name, const QString &value)
{
    const int type = names().indexOf(name);
    bool isNumber = false;
    const int volume = value.toInt(&isNumber);
    if (type < 0) {
        std::fprintf(stderr, "there is no volume \"%s\"; there are %s\n", qPrintable(name), qPrintable(names().join(QStringLiteral(", "))));
        return 2;
    }
    if (!isNumber || volume < 0 || volume > highestVolume) {
        std::fprintf(stderr, "a volume is 0 to %d, not \"%s\"\n", highestVolume, qPrintable(value)); // the library would take any
        return 2;
    }
    ZelAudioManager::instance()->setVolume(static_cast<ZelAudioType>(type), volume, true);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty())
        return show();
    if (arguments.size() == 2)
        return set(arguments[0], arguments[1]);
    std::fputs("Usage: volumes [NAME VOLUME]\n", stderr);
    return 2;
}
