#include "focuscommand.h"

#include "console.h"
#include "exitstatus.h"
#include "focusadvice.h"
#include "focusclient.h"

#include <qzaudio/focusrequester.h>

#include <QtCore/QCoreApplication>
#include <QtDBus/QDBusConnection>

#include <algorithm>
#include <iterator>
#include <optional>

namespace
{

constexpr char connectionName[] = "qzaudio-bench";
constexpr char defaultService[] = "tavi.AudioService";

struct Hint
{
    const char *name;
    int value;
};

constexpr Hint hints[] = {
    {"gain", AUDIOFOCUS_GAIN},
    {"transient", AUDIOFOCUS_GAIN_TRANSIENT},
    {"may-duck", AUDIOFOCUS_GAIN_TRANSIENT_MAY_DUCK},
    {"exclusive", AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE},
};

struct Action
{
    const char *name;
    bool needsClient;
    void (*start)(FocusClient &client, const QString &clientId, int stream, int hint);
};

constexpr Action actions[] = {
    {"request", true, [](FocusClient &client, const QString &id, int stream, int hint) { client.request(id, stream, hint); }},
    {"abandon", true, [](FocusClient &client, const QString &id, int /*stream*/, int /*hint*/) { client.abandon(id); }},
    {"current", false, [](FocusClient &client, const QString & /*id*/, int /*stream*/, int /*hint*/) { client.current(); }},
    {"monitor", false, [](FocusClient &client, const QString & /*id*/, int /*stream*/, int /*hint*/) { client.monitor(); }},
};

/// What is called so in one of the tables, null for nothing.
template<typename Table>
auto findIn(const Table &table, const QString &name)
{
    const auto found = std::find_if(std::cbegin(table), std::cend(table), [&name](const auto &each) { return name == QLatin1String(each.name); });
    return found == std::cend(table) ? nullptr : found;
}

template<typename Table>
QStringList namesIn(const Table &table)
{
    QStringList names;
    for (const auto &each : table)
        names.append(QLatin1String(each.name));
    return names;
}

/// A hint by name, or any number: what is no hint is the service's to deny.
std::optional<int> hintOf(const QString &text)
{
    if (const Hint *const hint = findIn(hints, text))
        return hint->value;
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? std::optional<int>(number) : std::nullopt;
}

QDBusConnection connectTo(const QCommandLineParser &parsed)
{
    const QString address = parsed.value(QStringLiteral("address"));
    if (!address.isEmpty())
        return QDBusConnection::connectToBus(address, QLatin1String(connectionName));
    const bool system = parsed.isSet(QStringLiteral("system"));
    return QDBusConnection::connectToBus(system ? QDBusConnection::SystemBus : QDBusConnection::SessionBus, QLatin1String(connectionName));
}

int complainWithoutBus(const QCommandLineParser &parsed, const QString &reason)
{
    const bool wantsSession = !parsed.isSet(QStringLiteral("system")) && !parsed.isSet(QStringLiteral("address"));
    // Without an address the reason would be that of an attempt to start a bus by means of a display.
    const bool isKnown = !wantsSession || qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS");
    Console::error(QStringLiteral("qzaudio-bench: no bus: %1\n").arg(isKnown ? reason : QStringLiteral("there is no session bus here")));
    if (wantsSession)
        Console::error(FocusAdvice::withoutBus() + QLatin1Char('\n'));
    return ServiceUnreachable;
}

/// Empty where it is somebody else's service that is missed, or a bus that only the user knows.
QString adviceWithoutService(const QCommandLineParser &parsed)
{
    const bool isAnother = parsed.isSet(QStringLiteral("service")) && parsed.value(QStringLiteral("service")) != QLatin1String(defaultService);
    if (isAnother || parsed.isSet(QStringLiteral("address")))
        return {};
    return FocusAdvice::withoutService(parsed.isSet(QStringLiteral("system")) ? QStringLiteral("--system") : QString());
}

} // namespace

QString FocusCommand::name() const
{
    return QStringLiteral("focus");
}

QString FocusCommand::summary() const
{
    return QStringLiteral("requests and watches audio focus over the bus");
}

QString FocusCommand::arguments() const
{
    return QStringLiteral("ACTION [CLIENT]");
}

QVector<Command::Option> FocusCommand::options() const
{
    return {
        {QStringLiteral("hint"), QStringLiteral("HINT"), QStringLiteral("gain (the default), transient, may-duck, exclusive or a number"), {}, namesIn(hints)},
        {QStringLiteral("stream"), QStringLiteral("NUMBER"), QStringLiteral("stream type of the request, 3 by default")},
        {QStringLiteral("session"), {}, QStringLiteral("the session bus (the default)")},
        {QStringLiteral("system"), {}, QStringLiteral("the system bus")},
        {QStringLiteral("address"), QStringLiteral("ADDRESS"), QStringLiteral("the bus at this address")},
        {QStringLiteral("service"), QStringLiteral("NAME"), QStringLiteral("bus name of the service, tavi.AudioService by default")},
        {QStringLiteral("path"), QStringLiteral("PATH"), QStringLiteral("object path, /tavi/AudioService by default")},
    };
}

QString FocusCommand::details() const
{
    return QStringLiteral("A small client of the audio focus service. Actions:\n"
                          "\n"
                          "  request CLIENT   requests focus, holds it until the standard input ends (Ctrl+D), abandons it "
                          "then; meanwhile prints what the client is told\n"
                          "  abandon CLIENT   gives focus up for CLIENT; qzaudio-focusd refuses this for another "
                          "connection's client, and each run has a connection of its own\n"
                          "  current          prints how focus is held: 0 by nobody, else the holder's hint\n"
                          "  monitor          prints every change as it comes, until interrupted\n"
                          "\n"
                          "Changes print as: CLIENT CODE NAME. The service takes focus back from a client that leaves the\n"
                          "bus, therefore request stays. Without a bus: dbus-run-session -- COMMAND; without the service:\n"
                          "qzaudio-focusd &. In the tree \"./run focus\" does both.\n");
}

QVector<Command::Ending> FocusCommand::endings() const
{
    return {
        {Failed, QStringLiteral("the audio service denied or refused a request")},
        {ServiceUnreachable, QStringLiteral("the bus or the audio service does not answer")},
    };
}

Command::Completions FocusCommand::completions(const QStringList &before) const
{
    return {before.isEmpty() ? namesIn(actions) : QStringList(), {}};
}

int FocusCommand::run(const QCommandLineParser &parsed)
{
    const QStringList words = parsed.positionalArguments().mid(1);
    const QString name = words.value(0);
    const Action *const action = findIn(actions, name);
    if (!action)
        return complain(name.isEmpty() ? QStringLiteral("focus needs an action") : QStringLiteral("unknown action %1").arg(name));
    if (words.size() != (action->needsClient ? 2 : 1))
        return complain(action->needsClient ? QStringLiteral("%1 takes one client").arg(name) : QStringLiteral("%1 takes no client").arg(name));
    const int buses = int(parsed.isSet(QStringLiteral("session"))) + int(parsed.isSet(QStringLiteral("system"))) + int(parsed.isSet(QStringLiteral("address")));
    if (buses > 1)
        return complain(QStringLiteral("--session, --system and --address do not go together"));
    const std::optional<int> hint = parsed.isSet(QStringLiteral("hint")) ? hintOf(parsed.value(QStringLiteral("hint"))) : AUDIOFOCUS_GAIN;
    if (!hint)
        return complain(QStringLiteral("--hint is gain, transient, may-duck, exclusive or a number"));
    constexpr int musicStream = 3;
    bool isNumber = true;
    const int stream = parsed.isSet(QStringLiteral("stream")) ? parsed.value(QStringLiteral("stream")).toInt(&isNumber) : musicStream;
    if (!isNumber)
        return complain(QStringLiteral("--stream is a number"));
    const auto valueOr = [&parsed](const QString &option, const QString &otherwise) { return parsed.isSet(option) ? parsed.value(option) : otherwise; };
    const QString path = valueOr(QStringLiteral("path"), QStringLiteral("/tavi/AudioService"));

    const QDBusConnection connection = connectTo(parsed);
    if (!connection.isConnected())
        return complainWithoutBus(parsed, connection.lastError().message());
    FocusClient client(valueOr(QStringLiteral("service"), QLatin1String(defaultService)), path, connection, adviceWithoutService(parsed));
    action->start(client, words.value(1), stream, *hint);
    return QCoreApplication::exec();
}
