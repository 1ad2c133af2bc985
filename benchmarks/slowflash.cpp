#include "slowflash.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <thread>

#include <sys/syscall.h>
#include <unistd.h>

namespace
{

int delay = 0; ///< ms
slowflash::Mishap mishap = slowflash::Mishap::None;

void beforeSynchronizing()
{
    if (mishap != slowflash::Mishap::None) {
        std::puts("in the middle of a save");
        std::fflush(stdout);
        std::raise(mishap == slowflash::Mishap::Stop ? SIGSTOP : SIGKILL);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(delay));
}

} // namespace

void slowflash::setDelay(int milliseconds)
{
    delay = milliseconds;
}

void slowflash::setMishap(Mishap newMishap)
{
    mishap = newMishap;
}

// In front of the C library's, for all libraries of the program.
extern "C" {

int fsync(int fd)
{
    beforeSynchronizing();
    return static_cast<int>(::syscall(SYS_fsync, fd));
}

int fdatasync(int fildes)
{
    beforeSynchronizing();
    return static_cast<int>(::syscall(SYS_fdatasync, fildes));
}
}
