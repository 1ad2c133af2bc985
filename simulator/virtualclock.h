#ifndef VIRTUALCLOCK_H
#define VIRTUALCLOCK_H

#include <QtCore/QAbstractEventDispatcher>

#include <memory>

class QThread;

namespace simulator
{

struct VirtualClockPrivate;

/**
 * A thread's event dispatcher on virtual time: no timer ever waits, time stands still until it is advanced.
 *
 *     int main(int argc, char **argv)
 *     {
 *         simulator::VirtualClock *clock = simulator::VirtualClock::install(); // before the application object
 *         QCoreApplication application(argc, argv);
 *         QTimer::singleShot(500, ...);
 *         clock->advance(499); // nothing yet
 *         clock->advance(1); // there it is
 *     }
 *
 * Timers are exact to the millisecond whatever their Qt::TimerType, and run in the order of their deadlines; of equal deadlines
 * the timer that was started first runs first. processEvents() delivers what is due at the current instant and never sleeps on a
 * timer. A repeating timer of 0 ms runs once per processEvents() and once per instant that advance() stops at.
 *
 * Real time stays real for everything that does not go through QTimer: QElapsedTimer, QDeadlineTimer, QTest::qWait, the time-out
 * of a blocking D-Bus call. File descriptors (QProcess, D-Bus) are polled for real.
 *
 * Each thread has its own time: that of a thread with a clock is virtual, that of the others stays real.
 *
 *     QThread thread;
 *     simulator::VirtualClock::install(thread); // before it starts
 *     thread.start();
 *
 * Threads: use a clock from the thread that it was installed for; wakeUp() and interrupt() may be called from any thread.
 */
class VirtualClock : public QAbstractEventDispatcher
{
    Q_OBJECT

public:
    /// What a waiting event loop (exec()) does when nothing is due.
    enum class Idle {
        Advance, ///< jumps to the next deadline at once; waits for file descriptors and posted events only without timers
        Wait, ///< waits for file descriptors and posted events; only advance() moves time
    };

    /// Makes the clock and installs it for the calling thread, which must not have made its application object yet.
    static VirtualClock *install();
    /// Makes the clock and installs it for a thread that has not been started yet, and goes with its end.
    static VirtualClock *install(QThread &thread);
    /// The clock of the calling thread, or null when its time is real.
    static VirtualClock *installed();

    ~VirtualClock() override;

    /// Virtual ms since the installation.
    qint64 now() const;

    /**
     * Delivers posted events, then moves time forward, running each timer at its own instant with posted events in between.
     *
     * Ends at exactly now() + @p milliseconds, timers due then included; timers started meanwhile take part. A negative value
     * counts as 0. May be called from a timer's slot; the timer being delivered does not run again meanwhile.
     */
    void advance(qint64 milliseconds);

    /// Virtual ms since the installation at which the next timer is due; -1 where none runs.
    qint64 nextDeadline() const;

    /// Time passes without anything being delivered, as in a call that blocks. Timers passed over are late.
    void block(qint64 milliseconds);

    void setIdle(Idle idle);
    /// Idle::Advance until set.
    Idle idle() const;

    bool processEvents(QEventLoop::ProcessEventsFlags flags) override;
    bool hasPendingEvents() override;

    void registerSocketNotifier(QSocketNotifier *notifier) override;
    void unregisterSocketNotifier(QSocketNotifier *notifier) override;

    void registerTimer(int timerId, int interval, Qt::TimerType timerType, QObject *object) override;
    bool unregisterTimer(int timerId) override;
    bool unregisterTimers(QObject *object) override;
    QList<TimerInfo> registeredTimers(QObject *object) const override;
    /// Virtual ms until the timer runs, 0 when it is due, -1 for an unknown timer.
    int remainingTime(int timerId) override;

    void wakeUp() override;
    void interrupt() override;
    void flush() override;

private:
    VirtualClock();

    bool runTimers(qint64 limit, bool onlyExisting);
    bool pollDescriptors(int timeout);

    const std::unique_ptr<VirtualClockPrivate> d;
};

} // namespace simulator

#endif
