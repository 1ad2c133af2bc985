#include "receivelimits.h"

#include <QtCore/QLibrary>

#include <limits>

bool liftReceiveLimits(const QDBusConnection &connection)
{
    // The library that Qt uses, which is loaded by now. To link with it would make its headers a need of every build.
    QLibrary library(QStringLiteral("dbus-1"), 3);
    using SetLimit = void (*)(void *connection, long limit);
    const auto setBytes = reinterpret_cast<SetLimit>(library.resolve("dbus_connection_set_max_received_size"));
    const auto setDescriptors = reinterpret_cast<SetLimit>(library.resolve("dbus_connection_set_max_received_unix_fds"));
    if (!setBytes || !setDescriptors || !connection.internalPointer())
        return false;
    setBytes(connection.internalPointer(), std::numeric_limits<long>::max());
    setDescriptors(connection.internalPointer(), std::numeric_limits<long>::max());
    return true;
}
