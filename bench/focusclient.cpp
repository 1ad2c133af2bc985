#include "focusclient.h"

#include "console.h"
#include "exitstatus.h"

#include <qzaudio/focusrequester.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusServiceWatcher>

#include <unistd.h>

namespace
{

void printCurrent(int hint)
{
    const QString name = hint == AUDIOFOCUS_NONE ? QStringLiteral("nobody holds focus") : FocusRequester::focusChangeToString(hint);
    Console::out(QStringLiteral("%1 %2\n").arg(QString::number(hint), name));
}

} // namespace

FocusClient::FocusClient(const QString &service, const QString &path, const QDBusConnection &connection, QObject *parent)
    : QObject(parent)
    , proxy(service, path, connection)
{
}

template<typename Reply>
void FocusClient::whenAnswered(const Reply &reply, const std::function<void(const Reply &)> &answered)
{
    auto *const watcher = new QDBusPendingCallWatcher(reply, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [answered](QDBusPendingCallWatcher *finished) {
        const Reply result = *finished;
        finished->deleteLater();
        if (result.isError()) {
            Console::error(QStringLiteral("qzaudio-bench: the audio service does not answer: %1\n").arg(result.error().message()));
            QCoreApplication::exit(ServiceUnreachable);
            return;
        }
        answered(result);
    });
}

void FocusClient::request(const QString &clientId, int streamType, int durationHint)
{
    connect(&proxy, &TaviAudioServiceInterface::audioFocusChanged, this, [this, clientId](int change, const QString &told) {
        if (told == clientId) {
            printChange(change, told);
        }
    });
    const auto reply = proxy.requestAudioFocus(streamType, durationHint, clientId);
    whenAnswered<QDBusPendingReply<int>>(reply, [this, clientId](const QDBusPendingReply<int> &result) {
        if (result.value() != 0) {
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
        if (read(STDIN_FILENO, ignored, sizeof ignored) > 0) {
            return;
        }
        input->setEnabled(false);
        abandon(clientId);
    });
    // Without the service there is nothing left to hold.
    auto *const watcher = new QDBusServiceWatcher(proxy.service(), proxy.connection(), QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [] {
        Console::error(QStringLiteral("qzaudio-bench: the audio service has left the bus\n"));
        QCoreApplication::exit(ServiceUnreachable);
    });
}

void FocusClient::abandon(const QString &clientId)
{
    whenAnswered<QDBusPendingReply<int>>(proxy.abandonAudioFocus(clientId), [](const QDBusPendingReply<int> &result) {
        const bool done = result.value() == 0;
        Console::out(done ? QStringLiteral("abandoned\n") : QStringLiteral("not abandoned\n"));
        QCoreApplication::exit(done ? Success : Failed);
    });
}

void FocusClient::current()
{
    whenAnswered<QDBusPendingReply<int>>(proxy.getCurrentAudioFocus(), [](const QDBusPendingReply<int> &result) {
        printCurrent(result.value());
        QCoreApplication::exit(Success);
    });
}

void FocusClient::monitor()
{
    connect(&proxy, &TaviAudioServiceInterface::audioFocusChanged, this, &FocusClient::printChange);
    connect(&proxy, &TaviAudioServiceInterface::megaBaseChanged, this, [](int value) { Console::out(QStringLiteral("mega base %1\n").arg(value)); });
    connect(&proxy, &TaviAudioServiceInterface::volumeChanged, this, [](bool muted, int level) {
        Console::out(QStringLiteral("volume %1%2\n").arg(QString::number(level), muted ? QStringLiteral(" muted") : QString()));
    });
    whenAnswered<QDBusPendingReply<int>>(proxy.getCurrentAudioFocus(), [](const QDBusPendingReply<int> &result) { printCurrent(result.value()); });
}

void FocusClient::printChange(int change, const QString &clientId)
{
    Console::out(QStringLiteral("%1 %2 %3\n").arg(clientId, QString::number(change), FocusRequester::focusChangeToString(change)));
}
