// How long the answer to a request for audio focus takes, on a bus with qzaudio-focusd: see tools/with-focusd.
//
// Prints a line for each measurement: its name, "work" or "floor", the median in ns.

#include "echo.h"

#include <qzaudio/taviaudioserviceinterface.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

namespace
{

constexpr int requests = 200;
constexpr int longestWait = 60000; // ms
constexpr int promptStream = 5;

QString daemonName()
{
    return QStringLiteral("tavi.AudioService");
}

QString echoName()
{
    return QStringLiteral("echo.AudioService");
}

QString tellingEchoName()
{
    return QStringLiteral("telling.AudioService");
}

QString objectPath()
{
    return QStringLiteral("/tavi/AudioService");
}

[[noreturn]] void fail(const QString &text)
{
    std::fprintf(stderr, "qzaudio-bus-time: %s\n", qPrintable(text));
    std::exit(1);
}

double medianOf(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void print(const QString &name, const char *part, const std::vector<double> &times)
{
    std::printf("%s %s %.0f\n", qPrintable(name), part, medianOf(times));
}

/// Time of the request only. The client leaves the stack afterwards, so that each time it comes anew.
double timeOfRequest(TaviAudioServiceInterface &service)
{
    const QString client = QStringLiteral("bench.prompt");
    const auto before = std::chrono::steady_clock::now();
    QDBusPendingReply<int> reply = service.requestAudioFocus(promptStream, 3, client);
    reply.waitForFinished();
    const auto after = std::chrono::steady_clock::now();
    if (reply.isError() || reply.value() != 0)
        fail(service.service() + QStringLiteral(" refuses a request: ") + reply.error().message());
    service.abandonAudioFocus(client).waitForFinished();
    return std::chrono::duration<double, std::nano>(after - before).count();
}

std::vector<double> timesOfRequests(TaviAudioServiceInterface &service)
{
    std::vector<double> times(requests);
    std::generate(times.begin(), times.end(), [&service] { return timeOfRequest(service); });
    return times;
}

/// This program in another role, until it has said that it is ready.
std::unique_ptr<QProcess> startPart(const QStringList &arguments)
{
    auto part = std::make_unique<QProcess>();
    part->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    part->start(QCoreApplication::applicationFilePath(), arguments);
    while (!part->canReadLine()) {
        if (!part->waitForReadyRead(longestWait))
            fail(arguments.join(QLatin1Char(' ')) + QStringLiteral(" does not start"));
    }
    std::fprintf(stderr, "%s", part->readLine().constData());
    return part;
}

void end(QProcess &part)
{
    part.terminate();
    part.waitForFinished(longestWait);
}

void measure()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const std::unique_ptr<QProcess> echo = startPart({QStringLiteral("echo"), echoName()});
    const std::unique_ptr<QProcess> tellingEcho = startPart({QStringLiteral("echo"), tellingEchoName()});
    TaviAudioServiceInterface daemon(daemonName(), objectPath(), bus);
    TaviAudioServiceInterface echoed(echoName(), objectPath(), bus);
    std::vector<double> work;
    std::vector<double> floor;
    for (int i = 0; i < requests; ++i) {
        work.push_back(timeOfRequest(daemon));
        floor.push_back(timeOfRequest(echoed));
    }
    print(QStringLiteral("bus/requestAudioFocus"), "work", work);
    print(QStringLiteral("bus/requestAudioFocus"), "floor", floor);
    // Keeps its place among those with focus, so that it is not one too many where the others are as many as the daemon takes.
    if (daemon.requestAudioFocus(promptStream, 1, QStringLiteral("bench.resident")).value() != 0)
        fail(QStringLiteral("the daemon takes nobody"));
    TaviAudioServiceInterface telling(tellingEchoName(), objectPath(), bus);
    for (const QString &role : {QStringLiteral("clients"), QStringLiteral("listeners")}) {
        const bool areListening = role == QLatin1String("listeners");
        for (const QString &number : {QStringLiteral("1"), QStringLiteral("10"), QStringLiteral("100"), QStringLiteral("500")}) {
            const std::unique_ptr<QProcess> others = startPart({role, number});
            const QString name = QStringLiteral("bus/") + role + QLatin1Char('/') + number;
            print(name, "work", timesOfRequests(daemon));
            if (areListening)
                print(name, "floor", timesOfRequests(telling));
            end(*others);
        }
    }
    end(*echo);
    end(*tellingEcho);
}

int serveEcho(const QString &name)
{
    Echo echo(name == tellingEchoName());
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(objectPath(), &echo, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) || !bus.registerService(name))
        fail(QStringLiteral("the echo cannot be served"));
    std::puts("the echo is ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

/// So many programs, each with a connection of its own and as much focus as the daemon gives to so many.
int beClients(int number, bool areListening)
{
    std::vector<std::unique_ptr<TaviAudioServiceInterface>> clients;
    int holders = 0;
    for (int i = 0; i < number; ++i) {
        const QDBusConnection connection = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("client%1").arg(i));
        if (!connection.isConnected())
            fail(QStringLiteral("client %1 does not get on the bus").arg(i));
        auto client = std::make_unique<TaviAudioServiceInterface>(daemonName(), objectPath(), connection);
        auto echoed = std::make_unique<TaviAudioServiceInterface>(tellingEchoName(), objectPath(), connection);
        if (areListening) {
            QObject::connect(client.get(), &TaviAudioServiceInterface::audioFocusChanged, client.get(), [] {});
            QObject::connect(echoed.get(), &TaviAudioServiceInterface::audioFocusChanged, echoed.get(), [] {});
        }
        QDBusPendingReply<int> reply = client->requestAudioFocus(3, 1, QStringLiteral("bench.client.%1").arg(i));
        reply.waitForFinished();
        holders += !reply.isError() && reply.value() == 0 ? 1 : 0;
        clients.push_back(std::move(client));
        clients.push_back(std::move(echoed));
    }
    std::printf("%d clients are ready, %d of them in the stack\n", number, holders);
    std::fflush(stdout);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString role = arguments.value(1);
    if (role == QLatin1String("echo"))
        return serveEcho(arguments.value(2));
    if (role == QLatin1String("clients") || role == QLatin1String("listeners"))
        return beClients(arguments.value(2).toInt(), role == QLatin1String("listeners"));
    measure();
    return 0;
}
