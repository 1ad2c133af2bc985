#ifndef FOCUSCLIENTCONNECTION_H
#define FOCUSCLIENTCONNECTION_H

#include "privatebus.h"

#include <qzaudio/taviaudioserviceinterface.h>

#include <QtCore/QStringList>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtTest/QtTest>

#include <memory>
#include <utility>

/// One program on the bus: a connection of its own, the proxy, and the focus changes that came.
class FocusClientConnection
{
public:
    explicit FocusClientConnection(PrivateBus &bus,
                                   const QString &service = QStringLiteral("tavi.AudioService"),
                                   const QString &path = QStringLiteral("/tavi/AudioService"))
        : FocusClientConnection(bus, bus.connect(), service, path)
    {
    }
    /// On a connection that was made on this bus before.
    FocusClientConnection(PrivateBus &bus,
                          const QDBusConnection &connection,
                          const QString &service = QStringLiteral("tavi.AudioService"),
                          const QString &path = QStringLiteral("/tavi/AudioService"))
        : m_bus(bus)
        , m_connection(connection)
        , m_proxy(std::make_unique<TaviAudioServiceInterface>(service, path, m_connection))
    {
        QObject::connect(m_proxy.get(), &TaviAudioServiceInterface::audioFocusChanged, m_proxy.get(), [this](int newState, const QString &clientId) {
            m_changes.append(QString::number(newState) + QLatin1Char(' ') + clientId);
        });
    }

    ~FocusClientConnection() { leave(); }

    /// Leaves the bus, as a program that ends does. Nothing else may be called afterwards.
    void leave()
    {
        if (!m_proxy)
            return;
        m_bus.disconnect(m_connection);
        // Closed with the last object that knows it.
        m_proxy.reset();
        m_connection = QDBusConnection(QString());
    }

    TaviAudioServiceInterface &proxy() { return *m_proxy; }
    QDBusConnection &connection() { return m_connection; }

    /// What a call gave: its value, or the last word of its error's name.
    template<typename Value>
    QString result(const QDBusPendingReply<Value> &reply)
    {
        return finish(reply) ? QVariant::fromValue(reply.value()).toString() : errorOf(reply);
    }
    QString result(const QDBusPendingReply<> &reply) { return finish(reply) ? QStringLiteral("done") : errorOf(reply); }

    QString request(const QString &clientId, int hint) { return result(m_proxy->requestAudioFocus(3, hint, clientId)); }
    QString abandon(const QString &clientId) { return result(m_proxy->abandonAudioFocus(clientId)); }

    /// The changes since the last call; those that the service sent before its last answer are among them.
    QStringList take() { return std::exchange(m_changes, {}); }
    int changeCount() const { return m_changes.size(); }

private:
    Q_DISABLE_COPY(FocusClientConnection)

    static bool finish(const QDBusPendingCall &call)
    {
        constexpr int longestWait = 20000; // ms
        QDBusPendingCallWatcher watcher(call);
        const bool isFinished = watcher.isFinished() || QSignalSpy(&watcher, &QDBusPendingCallWatcher::finished).wait(longestWait);
        QCoreApplication::sendPostedEvents(); // the changes before an answer that came at once
        return isFinished && !call.isError();
    }

    static QString errorOf(const QDBusPendingCall &call) { return call.error().name().section(QLatin1Char('.'), -1); }

    PrivateBus &m_bus;
    QDBusConnection m_connection;
    std::unique_ptr<TaviAudioServiceInterface> m_proxy;
    QStringList m_changes;
};

#endif
