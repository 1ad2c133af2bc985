#include "byhand.h"
#include "byhandplatform.h"
#include "workloads.h"

#include <qzaudio/zelaudiomanager.h>
#include <spaudiosetting.h>

using audio::AudioControl;
using audio::SPAudioSetting::createVolume;
using audio::SPAudioSetting::Volume;
using byhand::setTrackVolume;

namespace
{

constexpr int volume = 20; ///< of 25
constexpr unsigned char sent = 80; ///< for it
constexpr unsigned char sentBoosted = 120;

void prepareManager()
{
    ZelAudioManager *const manager = ZelAudioManager::instance();
    for (const ZelAudioType type : {ZelAudioTypeMedia, ZelAudioTypeTelephony, ZelAudioTypeSpeech})
        manager->setVolume(type, volume, false);
    manager->updateAudioStatus(AudioStatusNone);
}

/// The status before the first round and after the last is the same, so each round changes it twice.
void updateAudioStatus(int rounds)
{
    ZelAudioManager *const manager = ZelAudioManager::instance();
    for (int i = 0; i < rounds; ++i) {
        manager->updateAudioStatus(AudioStatusAndroidAutoSpeech);
        manager->updateAudioStatus(AudioStatusBtPhoneTelephony);
    }
}

void updateAudioStatusFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i) {
        setTrackVolume("S+AndroidAuto", sent);
        setTrackVolume("S+BtPcmPhone", sentBoosted);
    }
}

void updateAudioStatusByHand(AudioStatus status, const char *name, const QByteArray &source, unsigned char value)
{
    BY_HAND_TRACE("void ZelAudioManager::updateAudioStatus(AudioStatus)") << status;
    constexpr const char *signature = "void ZelAudioManager::_handleVolumeTypeChanged(AudioStatus)";
    BY_HAND_TRACE(signature) << "_handleVolumeTypeChanged status:" << status;
    byhand::setStreamVolume(AudioControl::Main, QByteArrayLiteral("main"), name, source, value);
    BY_HAND_TRACE(signature) << "Auto adjust volume when audio status changed" << AudioControl::Main << QLatin1String(name) << int{sent};
}

void updateAudioStatusLoggedFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i) {
        updateAudioStatusByHand(AudioStatusAndroidAutoSpeech, "S+AndroidAuto_APP", QByteArrayLiteral("S+AndroidAuto"), sent);
        updateAudioStatusByHand(AudioStatusBtPhoneTelephony, "S+BtPcmPhone", QByteArrayLiteral("S+BtPcmPhone"), sentBoosted);
    }
}

/// Unsaved.
template<ZelAudioType type>
void setVolume(int rounds)
{
    ZelAudioManager *const manager = ZelAudioManager::instance();
    for (int i = 0; i < rounds; ++i)
        manager->setVolume(type, volume, false);
}

void setVolumeOfMediaFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i)
        byhand::setMediaVolume(volume);
}

void setVolumeOfTelephonyFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i) {
        setTrackVolume("S+CarPlayTelephony", sentBoosted);
        setTrackVolume("S+BtPcmPhone", sentBoosted);
    }
}

void setVolumeOfSpeechFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i)
        setTrackVolume("S+CarPlaySpeech", sentBoosted);
}

/// A prompt over the music, and back.
void duck(int rounds)
{
    ZelAudioManager *const manager = ZelAudioManager::instance();
    for (int i = 0; i < rounds; ++i) {
        manager->aaDuckAudio(0, 0);
        manager->aaUnduckAudio(0);
    }
}

void setDuckingMode(unsigned int mode)
{
    byhand::onNewObject<createVolume>([&](Volume &platform) { platform.setDuckingMode(mode); });
}

void duckFloor(int rounds)
{
    for (int i = 0; i < rounds; ++i) {
        setDuckingMode(1);
        byhand::onNewObject<createVolume>([&](Volume &platform) { platform.setDuckingTargetGain(60); });
        setTrackVolume("S+AndroidAuto", sent);
        setTrackVolume("S+AndroidAuto", sent);
        setDuckingMode(0);
    }
}

} // namespace

const Workloads &policyWorkloads()
{
    static const Workloads workloads = {
        {"policy/updateAudioStatus", false, prepareManager, updateAudioStatus, updateAudioStatusFloor},
        {"policy/updateAudioStatus/logged", true, prepareManager, updateAudioStatus, updateAudioStatusLoggedFloor},
        {"policy/setVolume/1", false, prepareManager, setVolume<ZelAudioTypeSpeech>, setVolumeOfSpeechFloor},
        {"policy/setVolume/2", false, prepareManager, setVolume<ZelAudioTypeTelephony>, setVolumeOfTelephonyFloor},
        {"policy/setVolume/14", false, prepareManager, setVolume<ZelAudioTypeMedia>, setVolumeOfMediaFloor},
        {"policy/duck", false, prepareManager, duck, duckFloor},
    };
    return workloads;
}
