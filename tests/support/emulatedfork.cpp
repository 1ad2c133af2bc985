// Lets QProcess start processes in the emulator of another processor's tests.
//
// Qt forks by clone() with CLONE_PIDFD where it believes that the kernel knows that. qemu-user (7.2) passes Qt's question for it on to the kernel, which
// says yes, but refuses the clone() itself. The process of such a QProcess has the id -1, and to kill it is kill(-1): the end of every process of the
// user, far beyond the test. So the question is answered here, and Qt forks as on an older kernel.

#include <cerrno>
#include <cstdarg>

#include <dlfcn.h>
#include <sys/syscall.h>

namespace
{

constexpr long pidfd = 3; // P_PIDFD: waitid() waits for the process of a file descriptor

} // namespace

/// Hides the C library's function of this name from Qt, which asks through it.
extern "C" __attribute__((visibility("default"))) long syscall(long number, ...) noexcept
{
    using SystemCall = long (*)(long, ...);
    static const auto systemCall = reinterpret_cast<SystemCall>(dlsym(RTLD_NEXT, "syscall"));

    constexpr int most = 6;
    long values[most];
    va_list list;
    va_start(list, number);
    for (long &value : values)
        value = va_arg(list, long);
    va_end(list);

    if (number == SYS_waitid && values[0] == pidfd) {
        errno = EINVAL;
        return -1;
    }
    return systemCall(number, values[0], values[1], values[2], values[3], values[4], values[5]);
}
