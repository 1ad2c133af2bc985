#include "heldthread.h"

#include <sys/ptrace.h>
#include <sys/wait.h>

HeldThread::HeldThread(pid_t thread)
    : m_thread(thread)
{
    if (::ptrace(PTRACE_SEIZE, m_thread, nullptr, nullptr) != 0 || ::ptrace(PTRACE_INTERRUPT, m_thread, nullptr, nullptr) != 0)
        return;
    int status = 0;
    m_isHeld = ::waitpid(m_thread, &status, __WALL) == m_thread && WIFSTOPPED(status);
}

HeldThread::~HeldThread()
{
    // A process that has ended meanwhile leaves nothing to detach from, and its status to whoever waits for it.
    if (m_isHeld)
        ::ptrace(PTRACE_DETACH, m_thread, nullptr, nullptr);
}
