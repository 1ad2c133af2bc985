#include "headunit.h"

#include <qzaudio/zelaudiomanager.h>

HeadUnit::HeadUnit() = default;

HeadUnit::~HeadUnit() = default;

bool HeadUnit::isOn() const
{
    return poweredManager != nullptr;
}

ZelAudioManager *HeadUnit::manager()
{
    if (!poweredManager)
        poweredManager = std::make_unique<ZelAudioManager>();
    return poweredManager.get();
}

void HeadUnit::switchOff()
{
    poweredManager.reset();
}
