#include "audiopolicyinspector.h"

#include <qzaudio/audiodatabase.h>
#include <qzaudio/zelaudiomanager.h>

AudioPolicyInspector::AudioPolicyInspector(ZelAudioManager &inspected)
    : manager(inspected)
{
}

int AudioPolicyInspector::status() const
{
    return manager.currentStatus;
}

int AudioPolicyInspector::channel() const
{
    return manager.currentChannel;
}

QList<int> AudioPolicyInspector::volumes() const
{
    QList<int> volumes;
    for (int type = ZelAudioTypeMedia; type <= ZelAudioTypeHiCarCall; ++type)
        volumes.append(manager.dataBase->getVolume(static_cast<ZelAudioType>(type)));
    return volumes;
}

int AudioPolicyInspector::equalizerType() const
{
    return manager.dataBase->eqType();
}

QList<int> AudioPolicyInspector::customCurve() const
{
    constexpr int bandCount = 16;
    QList<int> curve;
    for (int band = 0; band < bandCount; ++band)
        curve.append(manager.dataBase->getCustomEQ(band));
    return curve;
}

bool AudioPolicyInspector::ducking() const
{
    return manager.cpDucking;
}

QVector<AudioPolicyInspector::Timer> AudioPolicyInspector::timers() const
{
    return {
        {QLatin1String("timed mute"), &manager.muteTimer},
        {QLatin1String("deferred volume"), &manager.delayVolumeTimer},
        {QLatin1String("custom equalizer"), &manager.customEqTimer},
        {QLatin1String("first equalizer"), &manager.firstEqTimer},
        {QLatin1String("CarPlay alert"), &manager.cpAlertTimer},
        {QLatin1String("CarPlay unduck"), &manager.cpUnduckTimer},
    };
}
