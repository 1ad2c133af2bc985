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
    : m_manager(inspected)
{
}

int AudioPolicyInspector::status() const
{
    return m_manager.*memberOf(currentStatus_Member());
}

int AudioPolicyInspector::channel() const
{
    return m_manager.*memberOf(currentChannel_Member());
}

QList<int> AudioPolicyInspector::volumes() const
{
    QList<int> volumes;
    for (int type = ZelAudioTypeMedia; type <= ZelAudioTypeHiCarCall; ++type)
        volumes.append(dataBaseOf(m_manager).getVolume(static_cast<ZelAudioType>(type)));
    return volumes;
}

int AudioPolicyInspector::equalizerType() const
{
    return dataBaseOf(m_manager).eqType();
}

QList<int> AudioPolicyInspector::customCurve() const
{
    constexpr int bandCount = 16;
    QList<int> curve;
    for (int band = 0; band < bandCount; ++band)
        curve.append(dataBaseOf(m_manager).getCustomEQ(band));
    return curve;
}

QVector<AudioPolicyInspector::Timer> AudioPolicyInspector::timers() const
{
    QTimer *const members[] = {
        &(m_manager.*memberOf(muteTimer_Member())),
        &(m_manager.*memberOf(delayVolumeTimer_Member())),
        &(m_manager.*memberOf(customEqTimer_Member())),
        &(m_manager.*memberOf(firstEqTimer_Member())),
        &(m_manager.*memberOf(cpAlertTimer_Member())),
        &(m_manager.*memberOf(cpUnduckTimer_Member())),
    };
    static_assert(std::size(members) == std::size(policynames::timers), "each timer has a purpose");
    QVector<Timer> timers;
    for (std::size_t i = 0; i < std::size(members); ++i)
        timers.append({QLatin1String(policynames::timers[i].purpose), members[i]});
    return timers;
}
