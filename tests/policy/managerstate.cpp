#include "managerstate.h"

namespace
{

/// An explicit instantiation may name a private member: this one hands the pointer to it out through a friend function.
template<typename Name, typename Name::Member pointer>
struct Expose
{
    friend constexpr typename Name::Member memberOf(Name) { return pointer; }
};

#define EXPOSE_MEMBER(name, type)                      \
    struct name##_Name                                 \
    {                                                  \
        using Member = type ZelAudioManager::*;        \
        friend constexpr Member memberOf(name##_Name); \
    };                                                 \
    template struct Expose<name##_Name, &ZelAudioManager::name>;

EXPOSE_MEMBER(control, audio::AudioControl *)
EXPOSE_MEMBER(dataBase, audio::AudioDataBase *)
EXPOSE_MEMBER(currentStatus, AudioStatus)
EXPOSE_MEMBER(currentChannel, AudioChannel)
EXPOSE_MEMBER(muteTimer, QTimer)
EXPOSE_MEMBER(delayVolumeTimer, QTimer)
EXPOSE_MEMBER(customEqTimer, QTimer)
EXPOSE_MEMBER(firstEqTimer, QTimer)
EXPOSE_MEMBER(cpAlertTimer, QTimer)
EXPOSE_MEMBER(cpUnduckTimer, QTimer)
EXPOSE_MEMBER(pendingVolumeTypes, QList<ZelAudioType>)
EXPOSE_MEMBER(cpDucking, bool)
EXPOSE_MEMBER(cpConnected, bool)
EXPOSE_MEMBER(hcConnected, bool)

} // namespace

AudioStatus &managerstate::currentStatus(ZelAudioManager &manager)
{
    return manager.*memberOf(currentStatus_Name());
}

QTimer &managerstate::muteTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(muteTimer_Name());
}

QTimer &managerstate::delayVolumeTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(delayVolumeTimer_Name());
}

QTimer &managerstate::customEqTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(customEqTimer_Name());
}

QTimer &managerstate::firstEqTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(firstEqTimer_Name());
}

QTimer &managerstate::cpAlertTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(cpAlertTimer_Name());
}

QTimer &managerstate::cpUnduckTimer(ZelAudioManager &manager)
{
    return manager.*memberOf(cpUnduckTimer_Name());
}

QList<ZelAudioType> &managerstate::pendingVolumeTypes(ZelAudioManager &manager)
{
    return manager.*memberOf(pendingVolumeTypes_Name());
}

bool &managerstate::cpDucking(ZelAudioManager &manager)
{
    return manager.*memberOf(cpDucking_Name());
}

QList<const void *> managerstate::memberAddresses(const ZelAudioManager &manager)
{
    return {
        &(manager.*memberOf(control_Name())),
        &(manager.*memberOf(dataBase_Name())),
        &(manager.*memberOf(currentStatus_Name())),
        &(manager.*memberOf(currentChannel_Name())),
        &(manager.*memberOf(muteTimer_Name())),
        &(manager.*memberOf(delayVolumeTimer_Name())),
        &(manager.*memberOf(customEqTimer_Name())),
        &(manager.*memberOf(firstEqTimer_Name())),
        &(manager.*memberOf(cpAlertTimer_Name())),
        &(manager.*memberOf(cpUnduckTimer_Name())),
        &(manager.*memberOf(pendingVolumeTypes_Name())),
        &(manager.*memberOf(cpDucking_Name())),
        &(manager.*memberOf(cpConnected_Name())),
        &(manager.*memberOf(hcConnected_Name())),
    };
}
