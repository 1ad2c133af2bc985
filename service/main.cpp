/*
 * qzaudio-focusd: audio focus for the processes of a head unit, over D-Bus.
 *
 * What it does and which limits it has, its help says (options.cpp); which rules focus has, focusservice.h says.
 */

#include "audioserviceadaptor.h"
#include "focusservice.h"
#include "heap.h"
#include "heartbeat.h"
#include "options.h"
#include "receivelimits.h"
#include "report.h"
#include "servicemanager.h"
#include "stopsignals.h"
#include "watchdog.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLoggingCategory>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusError>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <unistd.h>

namespace
{

enum ExitStatus : int {
    Stopped = 0,
    NoBus = 1, ///< no bus, the name is taken, or the bus has gone
    UsageError = 2,
    Hung = 3, ///< ended by the watchdog
};

void print(std::FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

ExitStatus fail(const QString &message)
{
    report(message);
    return NoBus;
}

/// On the watchdog's thread: takes nothing that a thread which hangs may hold, such as the stream's lock.
[[noreturn]] void endHungProcess(const QByteArray &message)
{
    const ssize_t written = ::write(STDERR_FILENO, message.constData(), static_cast<std::size_t>(message.size()));
    Q_UNUSED(written)
    ::_exit(Hung);
}

std::unique_ptr<Watchdog> watchdogOf(const Options &options)
{
    if (options.watchdogSeconds == 0)
        return nullptr;
    const QByteArray message
        = QStringLiteral("qzaudio-focusd: hangs, nothing from the bus came through for %1 s; ending\n").arg(options.watchdogSeconds).toLocal8Bit();
    return std::make_unique<Watchdog>(std::chrono::seconds(options.watchdogSeconds), [message] { endHungProcess(message); });
}

/// Several beats within the shortest time after which somebody loses patience.
int heartbeatMs(const Options &options)
{
    constexpr int msPerSecond = 1000;
    constexpr int beats = 4;
    int interval = 5 * msPerSecond;
    if (options.watchdogSeconds > 0)
        interval = std::min(interval, options.watchdogSeconds * msPerSecond / beats);
    if (servicemanager::watchdogMs() > 0)
        interval = std::min(interval, std::max(servicemanager::watchdogMs() / beats, 1));
    return interval;
}

int serve(const Options &options)
{
    QDBusConnection bus = options.systemBus ? QDBusConnection::systemBus() : QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return fail(QStringLiteral("there is no bus: ") + bus.lastError().message());
    if (!liftReceiveLimits(bus))
        report(QStringLiteral("a message that is very large will stop the service"));

    FocusService service(bus, options);
    new AudioServiceAdaptor(&service); // a child
    // The object first: once the name is there, calls come.
    if (!bus.registerObject(options.path, &service))
        return fail(QStringLiteral("there can be no object at ") + options.path);
    if (!bus.registerService(options.name)) {
        const QString reason = bus.lastError().isValid() ? bus.lastError().message() : QStringLiteral("somebody else has it");
        return fail(QStringLiteral("cannot get the name %1: %2").arg(options.name, reason));
    }

    // Qt tells that the connection is lost with a signal that looks as if it came over the bus.
    bus.connect(QString(),
                QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"),
                QStringLiteral("Disconnected"),
                QCoreApplication::instance(),
                SLOT(quit()));
    const std::unique_ptr<Watchdog> watchdog = watchdogOf(options);
    const Heartbeat heartbeat(bus, heartbeatMs(options));
    QObject::connect(&heartbeat, &Heartbeat::beat, &heartbeat, [&watchdog] {
        if (watchdog)
            watchdog->feed();
        if (servicemanager::watchdogMs() > 0)
            servicemanager::sayAlive();
        heap::trim();
    });
    const StopSignals stopSignals;
    print(stdout, QStringLiteral("serving %1 at %2\n").arg(options.name, options.path));
    QCoreApplication::exec();
    const ExitStatus status = bus.isConnected() ? Stopped : fail(QStringLiteral("the bus has gone"));
    // A thread that waits for the flash, or for another process there, cannot be ended. It holds nothing that outlives the process.
    if (!service.stop())
        ::_exit(status);
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    heap::returnLargeBlocks();
    StopSignals::block();
    QCoreApplication application(argc, argv);
    const Options options = Options::parse(QCoreApplication::arguments().mid(1));
    switch (options.action) {
    case Options::Action::ShowHelp:
        print(stdout, Options::help());
        return Stopped;
    case Options::Action::ShowVersion:
        print(stdout, QStringLiteral("qzaudio-focusd " QZAUDIO_VERSION "\n"));
        return Stopped;
    case Options::Action::Complain:
        report(QStringLiteral("%1 See qzaudio-focusd --help.").arg(options.complaint));
        return UsageError;
    case Options::Action::Serve:
        break;
    }
    if (!options.log)
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    return serve(options);
}
