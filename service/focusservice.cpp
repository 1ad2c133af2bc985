#include "focusservice.h"

#include "report.h"

#include <qzaudio/focusrequester.h>

#include <QtDBus/QDBusError>

#include <unistd.h>

namespace
{

constexpr int failed = 1;

/// Questions for the volume that may wait: of a connection, of another user than the service's own, of that one.
constexpr int maximumQuestionsOfConnection = 16;
constexpr int maximumQuestionsOfUser = 64;
constexpr int maximumQuestions = 256;

/// The client whose focus nobody takes.
QString callId()
{
    return QStringLiteral("IN_VOICE_COMM_FOCUS_ID");
}

} // namespace

FocusService::FocusService(const QDBusConnection &bus, const Options &options, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_path(options.path)
    , m_callers(bus)
    , m_registry(::geteuid())
    , m_callUsers(options.callUsers)
    , m_volume(options.volume ? std::make_unique<VolumeThread>() : nullptr)
    , m_megaBaseCount(options.megaBaseCount)
{
    // Every name that goes, with one rule from the start: to watch each client would take messages for it while its call waits. The
    // bus tells that a connection has left after what it sent, so nobody's departure comes before their request.
    m_bus.connect(QStringLiteral("org.freedesktop.DBus"),
                  QStringLiteral("/org/freedesktop/DBus"),
                  QStringLiteral("org.freedesktop.DBus"),
                  QStringLiteral("NameOwnerChanged"),
                  {QString(), QString(), QLatin1String("")}, // whoever it was, there is no new owner
                  QString(),
                  this,
                  SLOT(onNameGone(QString)));
    connect(&m_focus, &AudioService::audioFocusChanged, this, &FocusService::tell);
    if (m_volume) {
        connect(m_volume.get(), &VolumeThread::answered, this, &FocusService::onVolumeAnswered);
        connect(m_volume.get(), &VolumeThread::changed, this, &FocusService::volumeChanged);
    }
}

FocusService::~FocusService() = default;

int FocusService::requestAudioFocus(int mainStreamType, int durationHint, const QString &clientId)
{
    const ClientRegistry::Caller caller{this->caller(), m_callers.credentials(this->caller()).user};
    if (!isAllowed(m_registry.mayRequest(caller, clientId)))
        return failed;
    const bool isCall = clientId == callId();
    if (isCall && !mayCall(caller.user))
        return failed;
    if (durationHint < AUDIOFOCUS_GAIN || durationHint > AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE)
        return failed;
    const int result = m_focus.requestAudioFocus(mainStreamType, durationHint, clientId);
    if (result != failed) {
        if (isCall && m_call.isEmpty()) {
            m_call = m_callers.description(caller.connection);
            report(QStringLiteral("a call has focus, from %1").arg(m_call));
        }
        makeRoom(caller);
        m_registry.add(caller, clientId);
    }
    return result;
}

int FocusService::abandonAudioFocus(const QString &clientId)
{
    if (!isAllowed(m_registry.mayRemove(caller(), clientId)))
        return failed;
    if (clientId == callId())
        endCall();
    m_registry.remove(clientId);
    return m_focus.abandonAudioFocus(clientId);
}

void FocusService::unregisterAudioFocusClient(const QString &clientId)
{
    if (!isAllowed(m_registry.mayRemove(caller(), clientId)))
        return;
    if (clientId == callId())
        endCall();
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
    askForVolume(false);
    return false;
}

int FocusService::volumeLevel()
{
    askForVolume(true);
    return 0;
}

bool FocusService::stop()
{
    return !m_volume || m_volume->stop();
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
    case Answer::TooManyOfUser:
        text = QStringLiteral("A user has at most %1 clients and %2 connections with clients")
                   .arg(ClientRegistry::maximumClientsOfUser)
                   .arg(ClientRegistry::maximumConnectionsOfUser);
        break;
    case Answer::TooMany:
        text = QStringLiteral("There are too many clients");
        break;
    }
    if (calledFromDBus())
        sendErrorReply(error, text);
    return false;
}

/// Sends the error for a user who may not.
bool FocusService::mayCall(uint user) const
{
    if (m_callUsers.isEmpty() || m_callUsers.contains(user))
        return true;
    if (calledFromDBus())
        sendErrorReply(QDBusError::AccessDenied, QStringLiteral("User %1 may not request focus for a call").arg(user));
    return false;
}

void FocusService::endCall()
{
    if (!m_call.isEmpty())
        report(QStringLiteral("the call has no focus any more, from %1").arg(m_call));
    m_call.clear();
}

void FocusService::askForVolume(bool isForLevel)
{
    if (!calledFromDBus())
        return;
    if (!m_volume) {
        sendErrorReply(QDBusError::NotSupported, QStringLiteral("This service has no volume"));
        return;
    }
    const uint user = m_callers.credentials(caller()).user;
    int ofConnection = 0;
    int ofUser = 0;
    for (const VolumeQuestion &question : qAsConst(m_volumeQuestions)) {
        ofConnection += question.message.service() == caller() ? 1 : 0;
        ofUser += question.user == user ? 1 : 0;
    }
    const int limitOfUser = user == ::geteuid() ? maximumQuestions : maximumQuestionsOfUser;
    if (ofConnection >= maximumQuestionsOfConnection || ofUser >= limitOfUser) {
        sendErrorReply(QDBusError::LimitsExceeded, QStringLiteral("Too many questions for the volume wait for an answer"));
        return;
    }
    setDelayedReply(true);
    m_volumeQuestions.enqueue({message(), user, isForLevel});
    m_volume->ask();
}

void FocusService::onVolumeAnswered(bool isMuted, int level)
{
    const VolumeQuestion question = m_volumeQuestions.dequeue();
    m_bus.send(question.message.createReply(question.isForLevel ? QVariant(level) : QVariant(isMuted)));
}

/// Not through the adaptor, as the other signals: it takes half as long again, while whoever requests waits.
void FocusService::tell(int newState, const QString &clientId)
{
    QDBusMessage signal = QDBusMessage::createSignal(m_path, QStringLiteral("tavi.AudioService"), QStringLiteral("audioFocusChanged"));
    signal.setArguments({newState, clientId});
    m_bus.send(signal);
}

/// The registry's place for a connection that is not known yet may be that of one without clients.
void FocusService::makeRoom(const ClientRegistry::Caller &caller)
{
    if (!m_registry.hasConnection(caller.connection) && m_registry.isFull(caller.user))
        m_registry.takeConnection(m_registry.idleConnection(caller.user)); // there is one, or the request had been refused
}

void FocusService::onNameGone(const QString &name)
{
    if (!m_registry.hasConnection(name))
        return;
    if (!m_call.isEmpty() && m_registry.owner(callId()) == name)
        endCall();
    const QStringList clients = m_registry.takeConnection(name);
    for (const QString &client : clients)
        m_focus.abandonAudioFocus(client);
}
