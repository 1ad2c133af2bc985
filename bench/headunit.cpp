#include "headunit.h"

#include <qzaudio/zelaudiomanager.h>

HeadUnit::HeadUnit(QObject *parent)
    : QObject(parent)
{
}

HeadUnit::~HeadUnit() = default;

bool HeadUnit::isOn() const
{
    return poweredManager != nullptr;
}

ZelAudioManager *HeadUnit::manager()
{
    if (!poweredManager) {
        Q_EMIT startsUp();
        poweredManager = std::make_unique<ZelAudioManager>();
        Q_EMIT startedUp();
    }
    return poweredManager.get();
}

void HeadUnit::switchOff()
{
    poweredManager.reset();
}
