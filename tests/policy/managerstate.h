#ifndef MANAGERSTATE_H
#define MANAGERSTATE_H

#include <qzaudio/zelaudiomanager.h>

/// The policy manager's members that no getter shows, named as they are there.
namespace managerstate
{

AudioStatus &currentStatus(ZelAudioManager &manager);
AudioChannel &currentChannel(ZelAudioManager &manager);
audio::AudioDataBase &dataBase(ZelAudioManager &manager);
QTimer &muteTimer(ZelAudioManager &manager);
QTimer &delayVolumeTimer(ZelAudioManager &manager);
QTimer &customEqTimer(ZelAudioManager &manager);
QTimer &firstEqTimer(ZelAudioManager &manager);
QTimer &cpAlertTimer(ZelAudioManager &manager);
QTimer &cpUnduckTimer(ZelAudioManager &manager);
QList<ZelAudioType> &pendingVolumeTypes(ZelAudioManager &manager);
bool &cpDucking(ZelAudioManager &manager);

/// The addresses of all data members, in the order that they have to stand in.
QList<const void *> memberAddresses(const ZelAudioManager &manager);

} // namespace managerstate

#endif
