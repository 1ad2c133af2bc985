#include "focusclient.h"

#include "console.h"
#include "exitstatus.h"

#include <qzaudio/focusrequester.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusServiceWatcher>

#include <algorithm>
#include <iterator>
#include <unistd.h>

namespace
{

/// Errors that mean that nobody answered, as opposed to somebody who refused.
constexpr QDBusError::ErrorType noAnswer[] = {
    QDBusError::NoReply,
    QDBusError::Timeout,
    QDBusError::TimedOut,
    QDBusError::NoServer,
    QDBusError::NoNetwork,
    QDBusError::Disconnected,
};

void printCurrent(int hint)
{
    const QString name = hint == AUDIOFOCUS_NONE ? QStringLiteral("nobody holds focus") : FocusRequester::focusChangeToString(hint);
    Console::out(QStringLiteral("%1 %2\n").arg(QString::number(hint), name));
}

} // namespace

FocusClient::FocusClient(const QString &service, const QString &path, const QDBusConnection &connection, const QString &advice, QObject *parent)
    : QObject(parent)
    , m_proxy(service, path, connection)
    , m_adviceToUser(advice)
{
}

int FocusClient::complain(const QDBusError &error) const
{
    if (error.type() == QDBusError::ServiceUnknown) {
        // The bus's own words are about files that start services.
        Console::error(QStringLiteral("qzaudio-bench: the audio service does not answer: it is not on the bus\n"));
        if (!m_adviceToUser.isEmpty())
            Console::error(m_adviceToUser + QLatin1Char('\n'));
        return ServiceUnreachable;
    }
    const bool couldNotBeStarted = error.name().startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn."));
    if (couldNotBeStarted || std::find(std::begin(noAnswer), std::end(noAnswer), error.type()) != std::end(noAnswer)) {
        Console::error(QStringLiteral("qzaudio-bench: the audio service does not answer: %1\n").arg(error.message()));
        return ServiceUnreachable;
    }
    Console::error(QStringLiteral("qzaudio-bench: refused: %1\n").arg(error.message()));
    return Failed;
}

void FocusClient::whenAnswered(const QDBusPendingReply<int> &reply, const std::function<void(int)> &answered)
{
    auto *const watcher = new QDBusPendingCallWatcher(reply, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, answered](QDBusPendingCallWatcher *finished) {
        const QDBusPendingReply<int> result = *finished;
        finished->deleteLater();
        if (result.isError()) {
            QCoreApplication::exit(complain(result.error()));
            return;
        }
        answered(result.value());
    });
}

void FocusClient::request(const QString &clientId, int streamType, int durationHint)
{
    connect(&m_proxy, &TaviAudioServiceInterface::audioFocusChanged, this, [this, clientId](int change, const QString &told) {
        if (told == clientId)
            printChange(change, told);
    });
    // Without the service there is nothing left to hold. Watched before the request, so that its end right after the answer is seen.
    auto *const watcher = new QDBusServiceWatcher(m_proxy.service(), m_proxy.connection(), QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [] {
        Console::error(QStringLiteral("qzaudio-bench: the audio service has left the bus\n"));
        QCoreApplication::exit(ServiceUnreachable);
    });
    whenAnswered(m_proxy.requestAudioFocus(streamType, durationHint, clientId), [this, clientId](int result) {
        if (result != 0) {
            Console::out(QStringLiteral("denied\n"));
            QCoreApplication::exit(Failed);
            return;
        }
        Console::out(QStringLiteral("granted\n"));
        holdUntilEndOfInput(clientId);
    });
}

void FocusClient::holdUntilEndOfInput(const QString &clientId)
{
    auto *const input = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(input, &QSocketNotifier::activated, this, [this, input, clientId] {
        char ignored[256];
        if (read(STDIN_FILENO, ignored, sizeof ignored) > 0)
            return;
        input->setEnabled(false);
        abandon(clientId);
    });
}

void FocusClient::abandon(const QString &clientId)
{
    whenAnswered(m_proxy.abandonAudioFocus(clientId), [](int result) {
        const bool done = result == 0;
        Console::out(done ? QStringLiteral("abandoned\n") : QStringLiteral("not abandoned\n"));
        QCoreApplication::exit(done ? Success : Failed);
    });
}

void FocusClient::current()
{
    whenAnswered(m_proxy.getCurrentAudioFocus(), [](int hint) {
        printCurrent(hint);
        QCoreApplication::exit(Success);
    });
}

void FocusClient::monitor()
{
    connect(&m_proxy, &TaviAudioServiceInterface::audioFocusChanged, this, &FocusClient::printChange);
    connect(&m_proxy, &TaviAudioServiceInterface::megaBaseChanged, this, [](int value) { Console::out(QStringLiteral("mega base %1\n").arg(value)); });
    connect(&m_proxy, &TaviAudioServiceInterface::volumeChanged, this, [](bool muted, int level) {
        Console::out(QStringLiteral("volume %1%2\n").arg(QString::number(level), muted ? QStringLiteral(" muted") : QString()));
    });
    whenAnswered(m_proxy.getCurrentAudioFocus(), &printCurrent);
}

void FocusClient::printChange(int change, const QString &clientId)
{
    Console::out(QStringLiteral("%1 %2 %3\n").arg(clientId, QString::number(change), FocusRequester::focusChangeToString(change)));
}
