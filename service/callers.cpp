#include "callers.h"

#include <QtCore/QVariantMap>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusReply>

Callers::Credentials Callers::credentials(const QString &connection)
{
    if (const Credentials *const known = m_known.object(connection))
        return *known;

    // The calls of everybody wait for the answer, which keeps them in order; the bus answers by itself, and at once.
    QDBusMessage question = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                                           QStringLiteral("/org/freedesktop/DBus"),
                                                           QStringLiteral("org.freedesktop.DBus"),
                                                           QStringLiteral("GetConnectionCredentials"));
    question.setArguments({connection});
    constexpr int patienceMs = 5000;
    const QDBusReply<QVariantMap> answer = m_bus.call(question, QDBus::Block, patienceMs);
    if (!answer.isValid())
        return {};
    const QVariantMap map = answer.value();
    const Credentials credentials{map.value(QStringLiteral("UnixUserID"), unknownUser).toUInt(), map.value(QStringLiteral("ProcessID")).toUInt()};
    m_known.insert(connection, new Credentials(credentials));
    return credentials;
}

QString Callers::description(const QString &connection)
{
    const Credentials found = credentials(connection);
    const QString user = found.user == unknownUser ? QStringLiteral("unknown user") : QStringLiteral("user %1").arg(found.user);
    const QString process = found.process == 0 ? QStringLiteral("unknown process") : QStringLiteral("process %1").arg(found.process);
    return QStringLiteral("%1 (%2, %3)").arg(connection, user, process);
}
