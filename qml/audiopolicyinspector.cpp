#include "audiopolicyinspector.h"

#include "memberaccess.h"
#include "policynames.h"

#include <qzaudio/audiodatabase.h>
#include <qzaudio/zelaudiomanager.h>

#include <cstddef>
#include <iterator>

namespace
{

OPEN_MEMBER(ZelAudioManager, dataBase, audio::AudioDataBase *)
OPEN_MEMBER(ZelAudioManager, currentStatus, AudioStatus)
OPEN_MEMBER(ZelAudioManager, currentChannel, AudioChannel)
OPEN_MEMBER(ZelAudioManager, muteTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, delayVolumeTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, customEqTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, firstEqTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, cpAlertTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, cpUnduckTimer, QTimer)

audio::AudioDataBase &dataBaseOf(ZelAudioManager &manager)
{
    return *(manager.*memberOf(dataBase_Member()));
}

} // namespace

AudioPolicyInspector::AudioPolicyInspector(ZelAudioManager &inspected)
    : manager(inspected)
{
}

int AudioPolicyInspector::status() const
{
    return manager.*memberOf(currentStatus_Member());
}

int AudioPolicyInspector::channel() const
{
    return manager.*memberOf(currentChannel_Member());
}

QList<int> AudioPolicyInspector::volumes() const
{
    QList<int> volumes;
    for (int type = ZelAudioTypeMedia; type <= ZelAudioTypeHiCarCall; ++type)
        volumes.append(dataBaseOf(manager).getVolume(static_cast<ZelAudioType>(type)));
    return volumes;
}

int AudioPolicyInspector::equalizerType() const
{
    return dataBaseOf(manager).eqType();
}

QList<int> AudioPolicyInspector::customCurve() const
{
    constexpr int bandCount = 16;
    QList<int> curve;
    for (int band = 0; band < bandCount; ++band)
        curve.append(dataBaseOf(manager).getCustomEQ(band));
    return curve;
}

QVector<AudioPolicyInspector::Timer> AudioPolicyInspector::timers() const
{
    QTimer *const members[] = {
        &(manager.*memberOf(muteTimer_Member())),
        &(manager.*memberOf(delayVolumeTimer_Member())),
        &(manager.*memberOf(customEqTimer_Member())),
        &(manager.*memberOf(firstEqTimer_Member())),
        &(manager.*memberOf(cpAlertTimer_Member())),
        &(manager.*memberOf(cpUnduckTimer_Member())),
    };
    static_assert(std::size(members) == std::size(policynames::timers), "each timer has a purpose");
    QVector<Timer> timers;
    for (std::size_t i = 0; i < std::size(members); ++i)
        timers.append({QLatin1String(policynames::timers[i].purpose), members[i]});
    return timers;
}
