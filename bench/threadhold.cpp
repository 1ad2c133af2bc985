#include "threadhold.h"

#include <cerrno>
#include <ctime>

ThreadHold *ThreadHold::current = nullptr;

ThreadHold::ThreadHold()
{
    Q_ASSERT(!current);
    current = this;
    sem_init(&m_held, 0, 0);
    sem_init(&m_released, 0, 0);
    struct sigaction action = {};
    action.sa_handler = &ThreadHold::handle;
    action.sa_flags = SA_RESTART;
    sigaction(SIGRTMIN, &action, &m_previous);
}

ThreadHold::~ThreadHold()
{
    sigaction(SIGRTMIN, &m_previous, nullptr);
    current = nullptr;
    sem_destroy(&m_held);
    sem_destroy(&m_released);
}

bool ThreadHold::take()
{
    m_wanted = true;
    pthread_kill(m_thread, SIGRTMIN);
    timespec end = {};
    clock_gettime(CLOCK_REALTIME, &end);
    ++end.tv_sec;
    while (sem_timedwait(&m_held, &end) != 0) {
        // When the time is over, whoever takes the flag decides: the handler, which then is about to hold, or this thread.
        if (errno == ETIMEDOUT && m_wanted.exchange(false))
            return false;
    }
    return true;
}

void ThreadHold::release()
{
    sem_post(&m_released);
}

// Nothing but semaphores and a flag without locks can be used in a signal handler.
void ThreadHold::handle(int /*signal*/)
{
    const int error = errno;
    if (current->m_wanted.exchange(false)) {
        sem_post(&current->m_held);
        while (sem_wait(&current->m_released) != 0) { }
    }
    errno = error;
}
