#include "managerstate.h"

#include <memberaccess.h>

namespace
{

OPEN_MEMBER(ZelAudioManager, control, audio::AudioControl *)
OPEN_MEMBER(ZelAudioManager, dataBase, audio::AudioDataBase *)
OPEN_MEMBER(ZelAudioManager, currentStatus, AudioStatus)
OPEN_MEMBER(ZelAudioManager, currentChannel, AudioChannel)
OPEN_MEMBER(ZelAudioManager, muteTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, delayVolumeTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, customEqTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, firstEqTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, cpAlertTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, cpUnduckTimer, QTimer)
OPEN_MEMBER(ZelAudioManager, pendingVolumeTypes, QList<ZelAudioType>)
OPEN_MEMBER(ZelAudioManager, cpDucking, bool)
OPEN_MEMBER(ZelAudioManager, cpConnected, bool)
OPEN_MEMBER(ZelAudioManager, hcConnected, bool)

} // namespace

AudioStatus &managerstate::currentStatus(ZelAudioManager &manager)
{
    return manager.*memberOf(currentStatus_Member());
}

AudioChannel &managerstate::currentChannel(ZelAudioManager &manager)
{
    return manager.*memberOf(currentChannel_Member());
}

audio::AudioDataBase &managerstate::dataBase(ZelAudioManager &manager)
{
    return *(manager.*memberOf(dataBase_Member()));
}

QTimer &managerstate::muteTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(muteTimer_Member());
}

QTimer &managerstate::delayVolumeTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(delayVolumeTimer_Member());
}

QTimer &managerstate::customEqTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(customEqTimer_Member());
}

QTimer &managerstate::firstEqTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(firstEqTimer_Member());
}

QTimer &managerstate::cpAlertTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(cpAlertTimer_Member());
}

QTimer &managerstate::cpUnduckTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(cpUnduckTimer_Member());
}

QList<ZelAudioType> &managerstate::pendingVolumeTypes(ZelAudioManager &manager)
{
    return manager.*memberOf(pendingVolumeTypes_Member());
}

bool &managerstate::cpDucking(ZelAudioManager &manager)
{
    return manager.*memberOf(cpDucking_Member());
}

QList<const void *> managerstate::memberAddresses(const ZelAudioManager &manager)
{
    return {
        &(manager.*memberOf(control_Member())),
        &(manager.*memberOf(dataBase_Member())),
        &(manager.*memberOf(currentStatus_Member())),
        &(manager.*memberOf(currentChannel_Member())),
        &(manager.*memberOf(muteTimer_Member())),
        &(manager.*memberOf(delayVolumeTimer_Member())),
        &(manager.*memberOf(customEqTimer_Member())),
        &(manager.*memberOf(firstEqTimer_Member())),
        &(manager.*memberOf(cpAlertTimer_Member())),
        &(manager.*memberOf(cpUnduckTimer_Member())),
        &(manager.*memberOf(pendingVolumeTypes_Member())),
        &(manager.*memberOf(cpDucking_Member())),
        &(manager.*memberOf(cpConnected_Member())),
        &(manager.*memberOf(hcConnected_Member())),
    };
}
