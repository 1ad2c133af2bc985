#include "virtualclock.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QSocketNotifier>
#include <QtCore/QThread>
#include <QtCore/QVector>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <limits>
#include <vector>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

// Counts the posted events of all threads; every dispatcher outside QtCore declares it so.
Q_CORE_EXPORT uint qGlobalPostedEventsCount();

namespace simulator
{

namespace
{

struct Timer
{
    int id;
    qint64 interval;
    Qt::TimerType type;
    QObject *object;
    qint64 deadline;
    quint64 startNumber; ///< order in which timers were started
    quint64 lastPass; ///< a timer of 0 ms runs once in each
    bool isRunning; ///< its slot is executing: it does not start again from inside
};

struct Notifier
{
    QSocketNotifier *notifier;
    short events;
};

short pollEvents(QSocketNotifier::Type type)
{
    switch (type) {
    case QSocketNotifier::Read:
        return POLLIN;
    case QSocketNotifier::Write:
        return POLLOUT;
    case QSocketNotifier::Exception:
        break;
    }
    return POLLPRI;
}

} // namespace

struct VirtualClockPrivate
{
    /// The clock of this thread as long as it has no application object, which makes it the thread's dispatcher.
    static thread_local VirtualClock *early;

    qint64 now = 0;
    VirtualClock::Idle idle = VirtualClock::Idle::Advance;
    QVector<Timer> timers;
    quint64 startCount = 0;
    quint64 pass = 1;
    QVector<Notifier> notifiers;
    int wakeUpDescriptor = -1;
    std::atomic_bool isAwake{false}; ///< a wake-up since the last poll
    std::atomic_bool isInterrupted{false};

    Timer *find(int id)
    {
        const auto timer = std::find_if(timers.begin(), timers.end(), [id](const Timer &candidate) { return candidate.id == id; });
        return timer == timers.end() ? nullptr : &*timer;
    }

    /// The timer to run next: earliest deadline up to @p limit, then first started; -1 when there is none.
    int nextTimer(qint64 limit, quint64 startedUpTo) const
    {
        const Timer *next = nullptr;
        for (const Timer &timer : timers) {
            const bool hadItsTurn = timer.interval == 0 && timer.lastPass == pass;
            if (timer.isRunning || timer.deadline > limit || timer.startNumber > startedUpTo || hadItsTurn)
                continue;
            if (!next || timer.deadline < next->deadline || (timer.deadline == next->deadline && timer.startNumber < next->startNumber))
                next = &timer;
        }
        return !next ? -1 : next->id;
    }

    void moveTo(qint64 instant)
    {
        if (instant > now) {
            now = instant;
            ++pass;
        }
    }

    void runTimer(int id)
    {
        Timer *timer = find(id);
        timer->isRunning = true;
        timer->lastPass = pass;
        // A timer that is late, after a call that blocked, skips the turns it missed.
        timer->deadline += timer->interval;
        if (timer->interval > 0 && timer->deadline <= now)
            timer->deadline += ((now - timer->deadline) / timer->interval + 1) * timer->interval;
        const quint64 startNumber = timer->startNumber;

        QTimerEvent event(id);
        QCoreApplication::sendEvent(timer->object, &event);

        // The slot may have stopped the timer, and another may have got its id since.
        timer = find(id);
        if (timer && timer->startNumber == startNumber)
            timer->isRunning = false;
    }
};

thread_local VirtualClock *VirtualClockPrivate::early = nullptr;

VirtualClock *VirtualClock::install()
{
    Q_ASSERT_X(QCoreApplication::instance() == nullptr, "VirtualClock::install", "call it before making the application object");
    Q_ASSERT_X(installed() == nullptr, "VirtualClock::install", "there is one already");
    auto *const clock = new VirtualClock;
    VirtualClockPrivate::early = clock;
    QCoreApplication::setEventDispatcher(clock);
    return clock;
}

VirtualClock *VirtualClock::install(QThread &thread)
{
    Q_ASSERT_X(!thread.isRunning(), "VirtualClock::install", "call it before starting the thread");
    auto *const clock = new VirtualClock;
    thread.setEventDispatcher(clock);
    return clock;
}

VirtualClock *VirtualClock::installed()
{
    if (VirtualClockPrivate::early)
        return VirtualClockPrivate::early;
    return dynamic_cast<VirtualClock *>(QAbstractEventDispatcher::instance());
}

VirtualClock::VirtualClock()
    : d(std::make_unique<VirtualClockPrivate>())
{
    d->wakeUpDescriptor = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    Q_ASSERT_X(d->wakeUpDescriptor >= 0, "VirtualClock", "no event descriptor");
}

VirtualClock::~VirtualClock()
{
    if (VirtualClockPrivate::early == this)
        VirtualClockPrivate::early = nullptr;
    close(d->wakeUpDescriptor);
}

qint64 VirtualClock::now() const
{
    return d->now;
}

qint64 VirtualClock::nextDeadline() const
{
    const auto next
        = std::min_element(d->timers.cbegin(), d->timers.cend(), [](const Timer &one, const Timer &other) { return one.deadline < other.deadline; });
    return next == d->timers.cend() ? -1 : std::max(next->deadline, d->now);
}

void VirtualClock::advance(qint64 milliseconds)
{
    const qint64 end = d->now + std::max<qint64>(0, milliseconds);
    ++d->pass;
    QCoreApplication::sendPostedEvents();
    runTimers(end, false);
    d->moveTo(end);
    QCoreApplication::sendPostedEvents();
}

void VirtualClock::block(qint64 milliseconds)
{
    d->moveTo(d->now + std::max<qint64>(0, milliseconds));
}

void VirtualClock::setIdle(Idle idle)
{
    d->idle = idle;
}

VirtualClock::Idle VirtualClock::idle() const
{
    return d->idle;
}

bool VirtualClock::runTimers(qint64 limit, bool onlyExisting)
{
    const quint64 startedUpTo = onlyExisting ? d->startCount : std::numeric_limits<quint64>::max();
    bool anyRan = false;
    for (int id = d->nextTimer(limit, startedUpTo); id != -1; id = d->nextTimer(limit, startedUpTo)) {
        d->moveTo(d->find(id)->deadline);
        d->runTimer(id);
        anyRan = true;
        QCoreApplication::sendPostedEvents();
    }
    return anyRan;
}

bool VirtualClock::processEvents(QEventLoop::ProcessEventsFlags flags)
{
    d->isInterrupted = false;
    Q_EMIT awake();
    d->isAwake = false;
    QCoreApplication::sendPostedEvents();

    const bool withDescriptors = !flags.testFlag(QEventLoop::ExcludeSocketNotifiers);
    const bool withTimers = !flags.testFlag(QEventLoop::X11ExcludeTimers);
    bool anyDone = withDescriptors && pollDescriptors(0);
    if (withTimers) {
        ++d->pass;
        anyDone = runTimers(d->now, true) || anyDone;
    }
    const bool mayWait = flags.testFlag(QEventLoop::WaitForMoreEvents) && !anyDone && !d->isInterrupted && !d->isAwake;
    if (!mayWait)
        return anyDone;

    if (withTimers && d->idle == Idle::Advance) {
        const int next = d->nextTimer(std::numeric_limits<qint64>::max(), d->startCount);
        if (next != -1) {
            d->moveTo(d->find(next)->deadline);
            return runTimers(d->now, true);
        }
    }
    Q_EMIT aboutToBlock();
    anyDone = pollDescriptors(-1);
    Q_EMIT awake();
    QCoreApplication::sendPostedEvents();
    return anyDone;
}

bool VirtualClock::hasPendingEvents()
{
    const auto isDue = [this](const Timer &timer) { return timer.deadline <= d->now && !timer.isRunning; };
    return qGlobalPostedEventsCount() > 0 || std::any_of(d->timers.cbegin(), d->timers.cend(), isDue);
}

bool VirtualClock::pollDescriptors(int timeout)
{
    std::vector<pollfd> descriptors;
    descriptors.push_back({d->wakeUpDescriptor, POLLIN, 0});
    const QVector<Notifier> polled = d->notifiers;
    for (const Notifier &notifier : polled)
        descriptors.push_back({static_cast<int>(notifier.notifier->socket()), notifier.events, 0});

    int ready = 0;
    do {
        ready = poll(descriptors.data(), descriptors.size(), timeout);
    } while (ready == -1 && errno == EINTR);

    if (descriptors[0].revents != 0) {
        quint64 wakeUps = 0;
        [[maybe_unused]] const ssize_t size = read(d->wakeUpDescriptor, &wakeUps, sizeof wakeUps);
    }

    bool anyDone = false;
    for (int index = 0; index < polled.count(); ++index) {
        if (descriptors[static_cast<std::size_t>(index) + 1].revents == 0)
            continue;
        QSocketNotifier *const notifier = polled.at(index).notifier;
        // An earlier notifier's slot may have disabled or deleted this one.
        const bool isStillThere
            = std::any_of(d->notifiers.cbegin(), d->notifiers.cend(), [notifier](const Notifier &candidate) { return candidate.notifier == notifier; });
        if (!isStillThere)
            continue;
        QEvent event(QEvent::SockAct);
        QCoreApplication::sendEvent(notifier, &event);
        anyDone = true;
    }
    return anyDone;
}

void VirtualClock::registerSocketNotifier(QSocketNotifier *notifier)
{
    d->notifiers.append({notifier, pollEvents(notifier->type())});
}

void VirtualClock::unregisterSocketNotifier(QSocketNotifier *notifier)
{
    const auto isMeant = [notifier](const Notifier &candidate) { return candidate.notifier == notifier; };
    d->notifiers.erase(std::remove_if(d->notifiers.begin(), d->notifiers.end(), isMeant), d->notifiers.end());
}

void VirtualClock::registerTimer(int timerId, int interval, Qt::TimerType timerType, QObject *object)
{
    d->timers.append({timerId, interval, timerType, object, d->now + interval, ++d->startCount, 0, false});
}

bool VirtualClock::unregisterTimer(int timerId)
{
    const auto isMeant = [timerId](const Timer &timer) { return timer.id == timerId; };
    const auto end = std::remove_if(d->timers.begin(), d->timers.end(), isMeant);
    const bool isFound = end != d->timers.end();
    d->timers.erase(end, d->timers.end());
    return isFound;
}

bool VirtualClock::unregisterTimers(QObject *object)
{
    const auto isMeant = [object](const Timer &timer) { return timer.object == object; };
    const auto end = std::remove_if(d->timers.begin(), d->timers.end(), isMeant);
    const bool isFound = end != d->timers.end();
    d->timers.erase(end, d->timers.end());
    return isFound;
}

QList<QAbstractEventDispatcher::TimerInfo> VirtualClock::registeredTimers(QObject *object) const
{
    QList<TimerInfo> infos;
    for (const Timer &timer : std::as_const(d->timers)) {
        if (timer.object == object)
            infos += TimerInfo(timer.id, static_cast<int>(timer.interval), timer.type);
    }
    return infos;
}

int VirtualClock::remainingTime(int timerId)
{
    const Timer *const timer = d->find(timerId);
    return !timer ? -1 : static_cast<int>(std::max<qint64>(0, timer->deadline - d->now));
}

void VirtualClock::wakeUp()
{
    d->isAwake = true;
    const quint64 one = 1;
    [[maybe_unused]] const ssize_t size = write(d->wakeUpDescriptor, &one, sizeof one);
}

void VirtualClock::interrupt()
{
    d->isInterrupted = true;
    wakeUp();
}

void VirtualClock::flush()
{
}

} // namespace simulator
