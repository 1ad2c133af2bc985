#include "systemcalls.h"

#include <QtCore/QHash>

#include <cerrno>
#include <cstdarg>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{

struct State
{
    systemcalls::Plan plan;
    int calls = 0;
    int followed = 0;
};

QHash<QByteArray, State> &states()
{
    static QHash<QByteArray, State> table;
    return table;
}

bool isPlanning = false; // what the plans themselves call is left alone

/// Whether the call is to fail; errno then says why.
bool isRefused(const char *function)
{
    if (isPlanning || states().isEmpty())
        return false;
    const auto state = states().find(function);
    if (state == states().end())
        return false;
    const int call = state->calls++;
    const systemcalls::Plan plan = state->plan;
    if (call < plan.after || call >= plan.after + plan.times)
        return false;
    ++state->followed;
    isPlanning = true;
    if (plan.meanwhile)
        plan.meanwhile();
    isPlanning = false;
    errno = plan.error;
    return plan.error != 0;
}

template<typename Function>
Function *realOne(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

// With names of their own for the compiler, which knows how the C library declares them.
#define ANSWERED(result, refusal, own, function, name, parameters, arguments)                \
    extern "C" result own parameters __asm__(name);                                          \
    extern "C" result own parameters                                                         \
    {                                                                                        \
        return isRefused(function) ? (refusal) : realOne<result parameters>(name) arguments; \
    }

ANSWERED(int, -1, answeredFchmod, "fchmod", "fchmod", (int file, mode_t mode), (file, mode))
ANSWERED(int, -1, answeredFchown, "fchown", "fchown", (int file, uid_t user, gid_t group), (file, user, group))
ANSWERED(int, -1, answeredFlock, "flock", "flock", (int file, int operation), (file, operation))
ANSWERED(int, -1, answeredFstat, "fstat64", "fstat64", (int file, struct stat64 *status), (file, status))
ANSWERED(int, -1, answeredFsync, "fsync", "fsync", (int file), (file))
ANSWERED(int, -1, answeredFutimens, "futimens", "futimens", (int file, const timespec *times), (file, times))
ANSWERED(int, -1, answeredLink, "link", "link", (const char *from, const char *to), (from, to))
ANSWERED(int, -1, answeredLstat, "lstat64", "lstat64", (const char *path, struct stat64 *status), (path, status))
ANSWERED(DIR *, nullptr, answeredOpendir, "opendir", "opendir", (const char *path), (path))
ANSWERED(ssize_t, -1, answeredPread, "pread", "pread", (int file, void *buffer, size_t size, off_t from), (file, buffer, size, from))
ANSWERED(ssize_t, -1, answeredPread64, "pread", "pread64", (int file, void *buffer, size_t size, off64_t from), (file, buffer, size, from))
ANSWERED(ssize_t, -1, answeredRead, "read", "read", (int file, void *buffer, size_t size), (file, buffer, size))
ANSWERED(int, -1, answeredRename, "rename", "rename", (const char *from, const char *to), (from, to))
ANSWERED(int, -1, answeredUnlink, "unlink", "unlink", (const char *path), (path))

#undef ANSWERED

namespace
{

mode_t modeOf(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) ? static_cast<mode_t>(va_arg(arguments, unsigned int)) : 0;
}

} // namespace

extern "C" int answeredOpen(const char *path, int flags, ...) __asm__("open");
extern "C" int answeredOpen(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return isRefused("open") ? -1 : realOne<int(const char *, int, ...)>("open")(path, flags, mode);
}

void systemcalls::plan(const QByteArray &function, const Plan &plan)
{
    states().insert(function, {plan});
}

int systemcalls::followed(const QByteArray &function)
{
    return states().value(function).followed;
}

void systemcalls::forget()
{
    states().clear();
}
