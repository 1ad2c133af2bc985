#include "options.h"

#include "clientregistry.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QRegularExpression>

#include <limits>
#include <pwd.h>
#include <unistd.h>

namespace
{

constexpr int longestWatchdog = 86400; // s, a day

bool matches(const QString &text, const char *pattern)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QLatin1String(pattern))).match(text).hasMatch();
}

bool isBusName(const QString &text)
{
    constexpr int longestName = 255;
    return text.size() <= longestName && matches(text, "[A-Za-z_-][A-Za-z0-9_-]*(\\.[A-Za-z_-][A-Za-z0-9_-]*)+");
}

bool isObjectPath(const QString &text)
{
    return matches(text, "/|(/[A-Za-z0-9_]+)+");
}

/// The number of a user who is given by number or name.
bool findUser(const QString &text, uint *number)
{
    bool isNumber = false;
    *number = text.toUInt(&isNumber);
    if (isNumber)
        return true;
    const passwd *const entry = ::getpwnam(text.toLocal8Bit().constData());
    if (entry)
        *number = entry->pw_uid;
    return entry;
}

} // namespace

Options Options::parse(const QStringList &arguments)
{
    const QCommandLineOption helpOption(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption versionOption(QStringList{QStringLiteral("v"), QStringLiteral("version")});
    const QCommandLineOption sessionOption(QStringLiteral("session"));
    const QCommandLineOption systemOption(QStringLiteral("system"));
    const QCommandLineOption nameOption(QStringLiteral("name"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption pathOption(QStringLiteral("path"), QString(), QStringLiteral("PATH"));
    const QCommandLineOption megaBasesOption(QStringLiteral("mega-bases"), QString(), QStringLiteral("COUNT"));
    const QCommandLineOption noVolumeOption(QStringLiteral("no-volume"));
    const QCommandLineOption logOption(QStringLiteral("log"));
    const QCommandLineOption watchdogOption(QStringLiteral("watchdog"), QString(), QStringLiteral("SECONDS"));
    const QCommandLineOption callUserOption(QStringLiteral("call-user"), QString(), QStringLiteral("USER"));
    QCommandLineParser parser;
    parser.addOptions({helpOption,
                       versionOption,
                       sessionOption,
                       systemOption,
                       nameOption,
                       pathOption,
                       megaBasesOption,
                       noVolumeOption,
                       logOption,
                       watchdogOption,
                       callUserOption});

    Options options;
    const auto complain = [&options](const QString &text) {
        options.action = Action::Complain;
        options.complaint = text;
        return options;
    };
    if (!parser.parse(QStringList(QStringLiteral("qzaudio-focusd")) + arguments))
        return complain(parser.errorText());
    if (parser.isSet(helpOption) || parser.isSet(versionOption)) {
        options.action = parser.isSet(helpOption) ? Action::ShowHelp : Action::ShowVersion;
        return options;
    }
    if (!parser.positionalArguments().isEmpty())
        return complain(QStringLiteral("There is nothing to do with \"%1\".").arg(parser.positionalArguments().constFirst()));
    if (parser.isSet(sessionOption) && parser.isSet(systemOption))
        return complain(QStringLiteral("It is either --session or --system."));
    options.systemBus = parser.isSet(systemOption);
    if (parser.isSet(nameOption))
        options.name = parser.value(nameOption);
    if (!isBusName(options.name))
        return complain(QStringLiteral("\"%1\" is no bus name.").arg(options.name));
    if (parser.isSet(pathOption))
        options.path = parser.value(pathOption);
    if (!isObjectPath(options.path))
        return complain(QStringLiteral("\"%1\" is no object path.").arg(options.path));
    if (parser.isSet(megaBasesOption)) {
        options.megaBaseCount = parser.value(megaBasesOption).toInt();
        if (options.megaBaseCount < 1)
            return complain(QStringLiteral("--mega-bases is a number from 1 to %1.").arg(std::numeric_limits<int>::max()));
    }
    if (parser.isSet(watchdogOption)) {
        bool isNumber = false;
        options.watchdogSeconds = parser.value(watchdogOption).toInt(&isNumber);
        if (!isNumber || options.watchdogSeconds < 0 || options.watchdogSeconds > longestWatchdog)
            return complain(QStringLiteral("--watchdog is a number from 0 to %1.").arg(longestWatchdog));
    }
    const QStringList callUsers = parser.values(callUserOption);
    for (const QString &callUser : callUsers) {
        uint number = 0;
        if (!findUser(callUser, &number))
            return complain(QStringLiteral("There is no user \"%1\".").arg(callUser));
        options.callUsers.append(number);
    }
    if (options.callUsers.isEmpty() && options.systemBus)
        options.callUsers = {0, ::geteuid()};
    options.volume = !parser.isSet(noVolumeOption);
    options.log = parser.isSet(logOption);
    return options;
}

QString Options::help()
{
    const Options defaults;
    return QStringLiteral("Usage: qzaudio-focusd [OPTION]...\n"
                          "\n"
                          "Serves audio focus to the processes of a bus: interface tavi.AudioService.\n"
                          "\n"
                          "  --session           on the session bus (the default)\n"
                          "  --system            on the system bus, where the installed policy gives the name to root only\n"
                          "  --name NAME         bus name of the service, %1 by default\n"
                          "  --path PATH         path of its object, %2 by default\n"
                          "  --mega-bases COUNT  how many mega bases nextMegaBase() goes through, from 0 on; %3 by default\n"
                          "  --no-volume         leaves volume and mute to others: isVolumeAvailable() is false, volumeLevel()\n"
                          "                      and isVolumeMute() give the error NotSupported\n"
                          "  --log               prints the library's own log lines, too\n"
                          "  --watchdog SECONDS  ends the process when it does not get through to the bus for so long, %8 by\n"
                          "                      default; 0 never does\n"
                          "  --call-user USER    who may request with the id of a call, IN_VOICE_COMM_FOCUS_ID, by name or\n"
                          "                      number; may be given several times. By default everybody on the session\n"
                          "                      bus, root and the daemon's own user on the system bus; others get the\n"
                          "                      error AccessDenied. Who has it is told on the standard error.\n"
                          "  -h, --help          shows this text\n"
                          "  -v, --version       shows the version\n"
                          "\n"
                          "Focus:\n"
                          "  A client id belongs to the connection that requested focus with it; other connections that\n"
                          "  use it get the error AccessDenied. When a connection leaves the bus, its clients are\n"
                          "  abandoned and focus goes to the next one. A duration hint outside 1 to 4 is denied (1).\n"
                          "\n"
                          "Limits:\n"
                          "  %4 characters in a client id (else InvalidArgs), %5 clients of a connection, %6 clients and\n"
                          "  %7 connections with clients together (else LimitsExceeded). The daemon's own user and all others\n"
                          "  together have as many each. Of the others a user has at most %9 clients and %10 connections; the\n"
                          "  last %11 and %12 are for users with fewer than %13 and %14.\n"
                          "\n"
                          "Volume:\n"
                          "  The level is the media volume in the settings file. The first question for level or mute\n"
                          "  makes a policy manager in this process, and that starts up the audio platform: loudness goes\n"
                          "  off, volumes, equalizer and microphone are set anew, settings are written. From then on\n"
                          "  volumeChanged comes, whichever process stores a new volume. The mute is that of this\n"
                          "  process's manager alone, which nobody here mutes: a mute in another process does not show.\n"
                          "  Use --no-volume where another process has the policy manager.\n"
                          "\n"
                          "Mega base:\n"
                          "  Kept while the service runs; 0 at first.\n"
                          "\n"
                          "Exit status: 0 told to stop (SIGTERM, SIGINT); 1 no bus, the name is taken, or the bus has gone;\n"
                          "2 a mistake on the command line; 3 ended by the watchdog.\n")
        .arg(defaults.name, defaults.path)
        .arg(defaults.megaBaseCount)
        .arg(ClientRegistry::maximumIdLength)
        .arg(ClientRegistry::maximumClientsOfConnection)
        .arg(ClientRegistry::maximumClients)
        .arg(ClientRegistry::maximumConnections)
        .arg(defaults.watchdogSeconds)
        .arg(ClientRegistry::maximumClientsOfUser)
        .arg(ClientRegistry::maximumConnectionsOfUser)
        .arg(ClientRegistry::reservedClients)
        .arg(ClientRegistry::reservedConnections)
        .arg(ClientRegistry::fewClients)
        .arg(ClientRegistry::fewConnections);
}
