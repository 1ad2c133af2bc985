#include "heldthread.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QFile>
#include <QtCore/QThread>

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace
{

constexpr int longestWork = 5000; // ms

/// In the system call that an event loop waits in.
bool waitsForEvents(pid_t thread)
{
    QFile file(QStringLiteral("/proc/%1/syscall").arg(thread));
    if (!file.open(QFile::ReadOnly))
        return false;
    const QByteArray number = file.readAll().split(' ').value(0);
#ifdef SYS_poll
    if (number == QByteArray::number(SYS_poll))
        return true;
#endif
    return number == QByteArray::number(SYS_ppoll);
}

} // namespace

HeldThread::HeldThread(pid_t thread)
    : m_thread(thread)
{
    // Not in the middle of its work, where it may hold a lock that the other threads wait for.
    const QDeadlineTimer deadline(longestWork);
    while (!waitsForEvents(m_thread) && !deadline.hasExpired())
        QThread::yieldCurrentThread();
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
