#include "servicemanager.h"

#include <QtCore/QCoreApplication>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

int servicemanager::watchdogMs()
{
    // Meant for this process, and not inherited from the one that started it.
    const QByteArray process = qgetenv("WATCHDOG_PID");
    if (!process.isEmpty() && process.toLongLong() != QCoreApplication::applicationPid())
        return 0;
    constexpr qint64 microsecondsPerMs = 1000;
    const qint64 milliseconds = qgetenv("WATCHDOG_USEC").toLongLong() / microsecondsPerMs;
    return static_cast<int>(std::clamp<qint64>(milliseconds, 0, std::numeric_limits<int>::max()));
}

// Its library does no more, and need not be there to build or to run.
bool servicemanager::sayAlive()
{
    const QByteArray name = qgetenv("NOTIFY_SOCKET");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto length = static_cast<std::size_t>(name.size());
    if (length < 2 || length > sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, name.constData(), length);
    if (name.startsWith('@'))
        address.sun_path[0] = '\0'; // a name that is no file
    const int descriptor = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        return false;
    constexpr char message[] = "WATCHDOG=1";
    const ssize_t sent = ::sendto(descriptor,
                                  message,
                                  sizeof message - 1,
                                  MSG_DONTWAIT | MSG_NOSIGNAL,
                                  reinterpret_cast<const sockaddr *>(&address),
                                  static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length));
    ::close(descriptor);
    return sent == static_cast<ssize_t>(sizeof message - 1);
}
