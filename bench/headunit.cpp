#include "headunit.h"

#include <qzaudio/zelaudiomanager.h>

HeadUnit::HeadUnit(QObject *parent)
    : QObject(parent)
{
}

HeadUnit::~HeadUnit() = default;

bool HeadUnit::isOn() const
{
    return m_poweredManager != nullptr;
}

ZelAudioManager *HeadUnit::manager()
{
    if (!m_poweredManager) {
        Q_EMIT startsUp();
        m_poweredManager = std::make_unique<ZelAudioManager>();
        Q_EMIT startedUp();
    }
    return m_poweredManager.get();
}

void HeadUnit::switchOff()
{
    m_poweredManager.reset();
}
