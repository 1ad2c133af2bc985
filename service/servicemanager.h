#ifndef SERVICEMANAGER_H
#define SERVICEMANAGER_H

#include <QtCore/QByteArray>

/// What systemd, or whatever else starts services and speaks its protocol, wants to hear. Without one, nothing is done.
namespace servicemanager
{

/// Within how many milliseconds it wants to hear of the process again and again ("WatchdogSec="); 0 for not at all.
int watchdogMs();
/// Says that the process is alive; false when nobody listens.
bool sayAlive();

} // namespace servicemanager

#endif
