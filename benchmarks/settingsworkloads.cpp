#include "settingsworkloads.h"

#include "byhandplatform.h"
#include "byhandsettings.h"
#include "filledstore.h"

#include <qzaudio/zelaudiomanager.h>
#include <settingsfile.h>

#include <QtCore/QFile>

namespace
{

constexpr int volume = 20; ///< of 25

void prepareManager()
{
    filledStore();
    ZelAudioManager *const manager = ZelAudioManager::instance();
    manager->updateAudioChannel(AudioChannelFilePlayer);
    manager->updateAudioStatus(AudioStatusNone);
    manager->setVolume(ZelAudioTypeMedia, volume, false);
}

/// The volume before the first round and after the last is the same, so each round saves twice.
void volumeKey(int rounds)
{
    ZelAudioManager *const manager = ZelAudioManager::instance();
    for (int i = 0; i < rounds; ++i) {
        manager->updateCurrentAudioVolume(true);
        manager->updateCurrentAudioVolume(false);
    }
}

void volumeKeyFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i) {
        for (const int changed : {volume + 1, volume}) {
            byhand::setMediaVolume(changed);
            byhand::saveSetting(QStringLiteral("Volume/0"), changed);
        }
    }
}

void prepareStore()
{
    filledStore();
}

void readFreshly(int rounds)
{
    audio::AudioDataBase &dataBase = filledStore();
    for (int i = 0; i < rounds; ++i)
        dataBase.getAutoMicGain();
}

void readFreshlyFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i)
        byhand::readSetting(QStringLiteral("Volume/AutoMicGainOrig"), 0).toInt();
}

/// The file with so many keys of other programs.
template<int keys>
void prepareForeignKeys()
{
    filledStore();
    QFile file(SettingsFile::path());
    file.open(QFile::ReadOnly);
    QByteArray own = file.readAll();
    const int end = own.indexOf("\n[Foreign]");
    own.truncate(end < 0 ? own.size() : end);
    file.close();
    file.open(QFile::WriteOnly);
    file.write(own);
    if (keys > 0)
        file.write("\n[Foreign]\n");
    for (int i = 0; i < keys; ++i)
        file.write("Key" + QByteArray::number(i) + "=value of another program\n");
}

void save(int rounds)
{
    audio::AudioDataBase &dataBase = filledStore();
    for (int i = 0; i < rounds; ++i) {
        dataBase.setVolume(ZelAudioTypeMedia, volume + 1, true);
        dataBase.setVolume(ZelAudioTypeMedia, volume, true);
    }
}

void saveFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i) {
        byhand::saveSetting(QStringLiteral("Volume/0"), volume + 1);
        byhand::saveSetting(QStringLiteral("Volume/0"), volume);
    }
}

} // namespace

const Workloads &settingsWorkloads()
{
    static const Workloads workloads = {
        {"settings/volumeKey", false, prepareManager, volumeKey, volumeKeyFloor},
        {"settings/getAutoMicGain", false, prepareStore, readFreshly, readFreshlyFloor},
        {"settings/save/0", false, prepareForeignKeys<0>, save, saveFloor},
        {"settings/save/100", false, prepareForeignKeys<100>, save, saveFloor},
        {"settings/save/1000", false, prepareForeignKeys<1000>, save, saveFloor},
        {"settings/save/10000", false, prepareForeignKeys<10000>, save, saveFloor},
    };
    return workloads;
}
