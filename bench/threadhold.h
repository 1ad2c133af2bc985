#ifndef THREADHOLD_H
#define THREADHOLD_H

#include <QtCore/QtGlobal>

#include <atomic>
#include <csignal>
#include <pthread.h>
#include <semaphore.h>

/**
 * Holds the thread that made it, whatever it is doing, so that another thread can look at what it is doing.
 *
 * The held thread stands in a handler of the signal SIGRTMIN and keeps the locks that it had: the other thread must need none
 * of them. One at a time.
 */
class ThreadHold
{
public:
    ThreadHold();
    ~ThreadHold();

    /// Called by the other thread. @return false where the thread does not take signals; it is not held then
    bool take();
    void release();

private:
    Q_DISABLE_COPY(ThreadHold)

    static void handle(int signal);

    static ThreadHold *current;
    const pthread_t m_thread = pthread_self();
    sem_t m_held = {};
    sem_t m_released = {};
    std::atomic<bool> m_wanted{false};
    struct sigaction m_previous = {};
};

#endif
