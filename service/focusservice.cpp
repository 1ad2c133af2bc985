#include "focusservice.h"

#include <qzaudio/focusrequester.h>

#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

namespace
{

constexpr int failed = 1;

} // namespace

FocusService::FocusService(const QDBusConnection &bus, int megaBaseCount, Volume volume, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_volume(volume == Volume::Served ? std::make_unique<VolumeSource>() : nullptr)
    , m_megaBaseCount(megaBaseCount)
{
    m_departures.setConnection(m_bus);
    m_departures.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_departures, &QDBusServiceWatcher::serviceUnregistered, this, &FocusService::onConnectionGone);
    connect(&m_focus, &AudioService::audioFocusChanged, this, &FocusService::audioFocusChanged);
    if (m_volume)
        connect(m_volume.get(), &VolumeSource::changed, this, &FocusService::volumeChanged);
}

FocusService::~FocusService() = default;

int FocusService::requestAudioFocus(int mainStreamType, int durationHint, const QString &clientId)
{
    const QString connection = caller();
    if (!isAllowed(m_registry.mayRequest(connection, clientId)))
        return failed;
    if (durationHint < AUDIOFOCUS_GAIN || durationHint > AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE)
        return failed;
    const int result = m_focus.requestAudioFocus(mainStreamType, durationHint, clientId);
    if (result != failed) {
        watch(connection);
        m_registry.add(connection, clientId);
    }
    return result;
}

int FocusService::abandonAudioFocus(const QString &clientId)
{
    if (!isAllowed(m_registry.mayRemove(caller(), clientId)))
        return failed;
    m_registry.remove(clientId);
    return m_focus.abandonAudioFocus(clientId);
}

void FocusService::unregisterAudioFocusClient(const QString &clientId)
{
    if (!isAllowed(m_registry.mayRemove(caller(), clientId)))
        return;
    m_registry.remove(clientId);
    m_focus.unregisterAudioFocusClient(clientId);
}

int FocusService::getCurrentAudioFocus()
{
    return m_focus.getCurrentAudioFocus();
}

int FocusService::currentMegaBase() const
{
    return m_megaBase;
}

void FocusService::nextMegaBase()
{
    const int next = (m_megaBase + 1) % m_megaBaseCount;
    if (next == m_megaBase)
        return;
    m_megaBase = next;
    Q_EMIT megaBaseChanged(m_megaBase);
}

bool FocusService::isVolumeAvailable() const
{
    return m_volume != nullptr;
}

bool FocusService::isVolumeMute()
{
    return hasVolume() && m_volume->isMuted();
}

int FocusService::volumeLevel()
{
    return hasVolume() ? m_volume->level() : 0;
}

/// The caller's unique name; empty for a call from within the process.
QString FocusService::caller() const
{
    return calledFromDBus() ? message().service() : QString();
}

/// Sends the error that belongs to any other answer than yes; whatever the slot returns then goes nowhere.
bool FocusService::isAllowed(ClientRegistry::Answer answer) const
{
    using Answer = ClientRegistry::Answer;
    QDBusError::ErrorType error = QDBusError::LimitsExceeded;
    QString text;
    switch (answer) {
    case Answer::Yes:
        return true;
    case Answer::IdTooLong:
        error = QDBusError::InvalidArgs;
        text = QStringLiteral("A client id has at most %1 characters").arg(ClientRegistry::maximumIdLength);
        break;
    case Answer::OfAnotherConnection:
        error = QDBusError::AccessDenied;
        text = QStringLiteral("The client belongs to another connection");
        break;
    case Answer::TooManyOfConnection:
        text = QStringLiteral("A connection has at most %1 clients").arg(ClientRegistry::maximumClientsOfConnection);
        break;
    case Answer::TooMany:
        text = QStringLiteral("There are too many clients");
        break;
    }
    if (calledFromDBus())
        sendErrorReply(error, text);
    return false;
}

bool FocusService::hasVolume() const
{
    if (!m_volume && calledFromDBus())
        sendErrorReply(QDBusError::NotSupported, QStringLiteral("This service has no volume"));
    return m_volume != nullptr;
}

void FocusService::watch(const QString &connection)
{
    if (connection.isEmpty() || m_registry.hasConnection(connection))
        return;
    if (m_registry.isFull())
        unwatch(m_registry.idleConnection()); // there is one, or the request had been refused
    m_departures.addWatchedService(connection);

    // It may have left before the bus knew of the watch, and then nothing would ever be heard of it.
    auto *const check = new QDBusPendingCallWatcher(m_bus.interface()->asyncCall(QStringLiteral("NameHasOwner"), connection), this);
    connect(check, &QDBusPendingCallWatcher::finished, this, [this, connection](QDBusPendingCallWatcher *finished) {
        const QDBusPendingReply<bool> isThere = *finished;
        finished->deleteLater();
        if (isThere.isValid() && !isThere.value())
            onConnectionGone(connection);
    });
}

void FocusService::unwatch(const QString &connection)
{
    m_departures.removeWatchedService(connection);
    m_registry.takeConnection(connection);
}

void FocusService::onConnectionGone(const QString &connection)
{
    m_departures.removeWatchedService(connection);
    const QStringList clients = m_registry.takeConnection(connection);
    for (const QString &client : clients)
        m_focus.abandonAudioFocus(client);
}
