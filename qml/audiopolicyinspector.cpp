#include "audiopolicyinspector.h"

#include "policynames.h"

#include <qzaudio/audiodatabase.h>
#include <qzaudio/zelaudiomanager.h>

#include <cstddef>
#include <iterator>

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
    QTimer *const members[] = {
        &manager.muteTimer,
        &manager.delayVolumeTimer,
        &manager.customEqTimer,
        &manager.firstEqTimer,
        &manager.cpAlertTimer,
        &manager.cpUnduckTimer,
    };
    static_assert(std::size(members) == std::size(policynames::timers), "each timer has a purpose");
    QVector<Timer> timers;
    for (std::size_t i = 0; i < std::size(members); ++i)
        timers.append({QLatin1String(policynames::timers[i].purpose), members[i]});
    return timers;
}
