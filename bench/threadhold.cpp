#include "threadhold.h"

#include <cerrno>
#include <ctime>

ThreadHold *ThreadHold::current = nullptr;

ThreadHold::ThreadHold()
{
    Q_ASSERT(!current);
    current = this;
    sem_init(&held, 0, 0);
    sem_init(&released, 0, 0);
    struct sigaction action = {};
    action.sa_handler = &ThreadHold::handle;
    action.sa_flags = SA_RESTART;
    sigaction(SIGRTMIN, &action, &previous);
}

ThreadHold::~ThreadHold()
{
    sigaction(SIGRTMIN, &previous, nullptr);
    current = nullptr;
    sem_destroy(&held);
    sem_destroy(&released);
}

bool ThreadHold::take()
{
    wanted = true;
    pthread_kill(thread, SIGRTMIN);
    timespec end = {};
    clock_gettime(CLOCK_REALTIME, &end);
    ++end.tv_sec;
    while (sem_timedwait(&held, &end) != 0) {
        // When the time is over, whoever takes the flag decides: the handler, which then is about to hold, or this thread.
        if (errno == ETIMEDOUT && wanted.exchange(false))
            return false;
    }
    return true;
}

void ThreadHold::release()
{
    sem_post(&released);
}

// Nothing but semaphores and a flag without locks can be used in a signal handler.
void ThreadHold::handle(int /*signal*/)
{
    const int error = errno;
    if (current->wanted.exchange(false)) {
        sem_post(&current->held);
        while (sem_wait(&current->released) != 0) { }
    }
    errno = error;
}
