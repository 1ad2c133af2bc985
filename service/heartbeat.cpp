#include "heartbeat.h"

#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

Heartbeat::Heartbeat(const QDBusConnection &bus, int milliseconds, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    connect(&m_timer, &QTimer::timeout, this, &Heartbeat::ask);
    m_timer.start(milliseconds);
}

void Heartbeat::ask()
{
    if (m_isAsking)
        return;
    m_isAsking = true;
    auto *const question = new QDBusPendingCallWatcher(m_bus.interface()->asyncCall(QStringLiteral("GetId")), this);
    connect(question, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        const QDBusPendingReply<QString> answer = *finished;
        finished->deleteLater();
        m_isAsking = false;
        if (answer.isValid())
            Q_EMIT beat();
    });
}
