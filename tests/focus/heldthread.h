#ifndef HELDTHREAD_H
#define HELDTHREAD_H

#include <QtCore/QtGlobal>

#include <sys/types.h>

/**
 * Holds one thread of a child process where it is while the others run on, as a debugger does: a thread that hangs.
 *
 * It is held where its event loop waits. It runs on with the object's end. Use it in one thread, and not in the emulator of another processor, which knows no
 * debugger.
 */
class HeldThread
{
public:
    /// @param thread its number; that of the main thread is the process's
    explicit HeldThread(pid_t thread);
    ~HeldThread();

    /// False where the kernel or a container forbids it.
    bool isHeld() const { return m_isHeld; }

private:
    Q_DISABLE_COPY(HeldThread)

    pid_t m_thread;
    bool m_isHeld = false;
};

#endif
