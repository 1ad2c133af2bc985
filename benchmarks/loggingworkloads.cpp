#include "workloads.h"

#include <qzaudio/zelaudiomanager.h>

namespace
{

void prepareManager()
{
    ZelAudioManager::instance();
}

/// The operation writes one line with its argument, and does nothing else.
void disabledLine(int rounds)
{
    ZelAudioManager *const manager = ZelAudioManager::instance();
    for (int i = 0; i < rounds; ++i)
        manager->updateCPAAStatus(CPAAStatus{1});
}

/// The operation does nothing at all.
void disabledLineFloor(int rounds)
{
    ZelAudioManager *const manager = ZelAudioManager::instance();
    for (int i = 0; i < rounds; ++i)
        manager->onCarplayAlertStart();
}

} // namespace

const Workloads &loggingWorkloads()
{
    static const Workloads workloads = {
        {"logging/disabledLine", false, prepareManager, disabledLine, disabledLineFloor},
    };
    return workloads;
}
