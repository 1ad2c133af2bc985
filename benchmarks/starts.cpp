#include "starts.h"

#include "byhandplatform.h"
#include "byhandsettings.h"

#include <mcuservice.h>
#include <qzaudio/zelaudiomanager.h>
#include <settingsprovider.h>
#include <spaudiosetting.h>

using audio::SPAudioSetting::App;
using audio::SPAudioSetting::createApp;
using audio::SPAudioSetting::createSource;
using audio::SPAudioSetting::createVolume;
using audio::SPAudioSetting::destroy;
using audio::SPAudioSetting::Source;
using audio::SPAudioSetting::Volume;
using byhand::readSetting;
using byhand::saveSetting;

namespace
{

constexpr int defaultVolume = 20;
constexpr unsigned char sent = 80; ///< for it
constexpr unsigned char sentBoosted = 120;

struct StartVolume
{
    const char *source;
    unsigned char volume;
};

constexpr StartVolume startVolumes[] = {
    {"S+AndroidAuto", sent}, // with the file player, whose group it is in
    {"S+FilePlayer", sent},
    {"S+DiscPlayer", sent},
    {"BT_AUDIO_Track", sent},
    {"S+BtRingtone", sentBoosted},
    {"S+BtPcmPhone", sentBoosted},
    {"S+AuxIn", sentBoosted},
    {"S+Mic", sent},
    {"S+CarPlayMedia", sent},
    {"S+CarPlayAlert", sentBoosted},
    {"S+CarPlayTelephony", sentBoosted},
    {"S+CarPlaySpeech", sentBoosted},
    {"S+CarPlayDefault", sent},
    {"S+AndroidAuto", sent},
    {"S+IPod", sent},
    {"S+CarLife", sent},
    {"S+WebLink", sent},
    {"S+AirPlayMedia", sent},
    {"S+IosMirror", sent},
};

float readGain()
{
    return readSetting(QStringLiteral("Volume/AutoMicGainOrig"), 0).toFloat();
}

int readDelay()
{
    return readSetting(QStringLiteral("Volume/MicDelayOrig"), 0).toInt();
}

void readAll()
{
    readSetting(QStringLiteral("EQ/Type"), 0); // what a start looks for in the file before it reads values
    for (int band = 0; band < 16; ++band)
        readSetting(QStringLiteral("EQ/Custom%1").arg(band), 0).toInt();
    vd::SettingsProvider::instance()->getHomeUiType();
    for (int type = 0; type < 6; ++type)
        readSetting(QStringLiteral("Volume/%1").arg(type), defaultVolume).toInt();
    readSetting(QStringLiteral("Volume/VolumeMic"), 12).toInt();
    readSetting(QStringLiteral("Volume/Loudness"), true).toBool();
    readSetting(QStringLiteral("EQ/Type"), 6).toInt();
    readSetting(QStringLiteral("Volume/MicType"), true).toBool();
    readDelay();
    readGain();
}

void sendEqualizer()
{
    constexpr quint16 hertz[] = {50, 80, 125, 200, 315, 500, 630, 800, 1000, 2000, 3100, 4000, 5000, 6300, 16000, 20000};
    constexpr float q[] = {1.0F, 1.0F, 1.0F, 1.5F, 1.5F, 1.5F, 1.5F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 1.0F, 1.0F, 1.0F};
    audio::audio_ext_eq_parameter_t parameter = {};
    parameter.channel = 0xFFFF;
    for (int i = 0; i < 16; ++i) {
        parameter.band[i].type = 3;
        parameter.band[i].frequency = hertz[i];
        parameter.band[i].gain = 2.0F;
        parameter.band[i].q = q[i];
    }
    byhand::onNewObject<createApp>([&](App &app) { app.setExtEqParameter(parameter); });
}

void sendGain(float gain)
{
    byhand::onNewObject<createVolume>([&](Volume &volume) { volume.setMicAnalogGain(gain, gain); });
}

} // namespace

void start()
{
    ZelAudioManager::instance();
}

void startByHand()
{
    static Volume *const kept = createVolume(); // both as long as the process, as the facade keeps them
    static App *const keptApp = createApp();
    readAll();
    Volume *const volume = createVolume();
    for (const StartVolume &row : startVolumes)
        volume->setTrackVolume("main", row.source, row.volume);
    destroy(volume);
    zelmcu::ZEL_McuService::instance();

    kept->setMicVolume(12.0F);
    saveSetting(QStringLiteral("Volume/VolumeMic"), 12);
    audio::audio_loudness_t loudness = {0, 0, 800};
    keptApp->setLoudness(&loudness);
    saveSetting(QStringLiteral("Volume/Loudness"), false);
    sendEqualizer();
    saveSetting(QStringLiteral("EQ/Type"), 6);
    Source *source = createSource();
    source->setMicLeftRightSwitch(false);
    destroy(source);
    saveSetting(QStringLiteral("Volume/MicType"), true);
    sendGain(readGain());
    const int delay = readDelay();
    source = createSource();
    source->setHandsfreeDelay(delay);
    destroy(source);

    kept->setMasterVolume(100);
    sendGain(readGain());
    const float gain = readGain();
    Volume *const microphone = createVolume();
    microphone->setMicOpGain(0, gain, gain);
    microphone->setMicPgaGain(0, gain, gain);
    destroy(microphone);
    byhand::setMediaVolume(defaultVolume);
    byhand::onNewObject<createVolume>([&](Volume &alternative) { alternative.setAlterTrackVolume(sentBoosted); });
    for (const char *boosted : {"S+CarPlayTelephony", "S+BtPcmPhone", "S+CarPlayAlert", "S+BtRingtone", "S+CarPlaySpeech"})
        byhand::setTrackVolume(boosted, sentBoosted);
}
