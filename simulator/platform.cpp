#include "platform.h"

#include "mcuservice_p.h"
#include "simulatorlog.h"
#include "virtualclock.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QThread>

namespace simulator
{

struct PlatformPrivate
{
    explicit PlatformPrivate(Platform *platform)
        : journal(platform)
        , faults(platform)
        , books(platform)
        , chip(platform)
    {
        uptime.start();
    }

    Journal journal;
    Faults faults;
    Books books;
    AudioChip chip;
    QElapsedTimer uptime;
    bool reverseGear = false;
    int homeUiType = 0;
    int callDuration = 0;
};

namespace
{

Platform *existingPlatform = nullptr;

/// Runs when this library is unloaded at process exit, after the destructors of every client's static objects.
__attribute__((destructor)) void reportAtExit()
{
    if (!existingPlatform)
        return;
    const QStringList lines = existingPlatform->books()->exitReport();
    for (const QString &line : lines)
        qCCritical(simulatorLog).noquote() << line;
}

} // namespace

Platform *Platform::instance()
{
    if (!existingPlatform) {
        existingPlatform = new Platform;
        qCInfo(simulatorLog, "This is the simulated audio platform: nothing reaches any hardware.");
    }
    return existingPlatform;
}

Platform::Platform()
    : d(std::make_unique<PlatformPrivate>(this))
{
}

Platform::~Platform() = default;

Journal *Platform::journal() const
{
    return &d->journal;
}

Faults *Platform::faults() const
{
    return &d->faults;
}

Books *Platform::books() const
{
    return &d->books;
}

AudioChip *Platform::chip() const
{
    return &d->chip;
}

void Platform::setReverseGear(bool engaged)
{
    const bool isChange = d->reverseGear != engaged;
    d->reverseGear = engaged;
    McuService::instance()->reportReverseGear(engaged);
    if (isChange)
        Q_EMIT reverseGearChanged(engaged);
}

bool Platform::reverseGear() const
{
    return d->reverseGear;
}

void Platform::setHomeUiType(int type)
{
    if (d->homeUiType == type)
        return;
    d->homeUiType = type;
    Q_EMIT homeUiTypeChanged(type);
}

int Platform::homeUiType() const
{
    return d->homeUiType;
}

void Platform::setCallDuration(int milliseconds)
{
    d->callDuration = qMax(0, milliseconds);
}

int Platform::callDuration() const
{
    return d->callDuration;
}

void Platform::passCallDuration()
{
    if (d->callDuration == 0)
        return;
    if (VirtualClock *const clock = VirtualClock::installed())
        clock->block(d->callDuration);
    else
        QThread::msleep(static_cast<unsigned long>(d->callDuration));
}

void Platform::reset()
{
    d->callDuration = 0;
    d->faults.clear();
    d->chip.reset();
    d->journal.clear();
    d->journal.setEnabled(true);
    d->books.reset();
    setHomeUiType(0);
    // The MCU service is not told: a client would answer with calls on the platform that is just new.
    if (d->reverseGear) {
        d->reverseGear = false;
        Q_EMIT reverseGearChanged(false);
    }
}

qint64 Platform::now() const
{
    const VirtualClock *const clock = VirtualClock::installed();
    return clock ? clock->now() : d->uptime.elapsed();
}

} // namespace simulator
