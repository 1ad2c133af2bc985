#include "bustarget.h"

#include "inputbytes.h"

#include <QtCore/QStringList>

#include <array>

namespace
{

constexpr int connections = 4;
using Clients = std::array<std::unique_ptr<BusClient>, connections>;

BusMessage toBus(const char *member)
{
    BusMessage message;
    message.path = "/org/freedesktop/DBus";
    message.interface = "org.freedesktop.DBus";
    message.destination = message.interface;
    message.member = member;
    return message;
}

QByteArray clientId(InputBytes &input)
{
    static const QStringList ids{
        QStringLiteral("media"),
        QStringLiteral("navigation"),
        QStringLiteral("IN_VOICE_COMM_FOCUS_ID"),
        QString(255, QLatin1Char('l')),
        QString(256, QLatin1Char('l')),
    };
    return input.textOf(ids);
}

/// A call as the interface has it.
BusMessage properCall(InputBytes &input)
{
    BusMessage message;
    BusArguments arguments;
    switch (input.index(9)) {
    case 0:
        message.member = "abandonAudioFocus";
        arguments.addText(clientId(input));
        break;
    case 1:
        message.member = "unregisterAudioFocusClient";
        arguments.addText(clientId(input));
        break;
    case 2:
        message.member = "getCurrentAudioFocus";
        break;
    case 3:
        message.member = "currentMegaBase";
        break;
    case 4:
        message.member = "nextMegaBase";
        break;
    case 5:
        message.member = "volumeLevel";
        break;
    case 6:
        message.member = "isVolumeMute";
        break;
    default:
        message.member = "requestAudioFocus";
        arguments.addNumber(static_cast<quint32>(input.number()));
        arguments.addNumber(static_cast<quint32>(input.index(6)));
        arguments.addText(clientId(input));
    }
    arguments.giveTo(message);
    return message;
}

void addAny(BusArguments &arguments, InputBytes &input)
{
    constexpr int most = 5000; // elements of a list
    switch (input.index(9)) {
    case 0:
        arguments.addNumber(static_cast<quint32>(input.number()), 'u');
        break;
    case 1:
        arguments.addNumber(input.flag() ? 1U : 0U, 'b');
        break;
    case 2:
        arguments.addText(input.textOf({QStringLiteral("tavi.AudioService"), QStringLiteral("media")}));
        break;
    case 3:
        arguments.addText(input.textOf({QStringLiteral("/"), QStringLiteral("/tavi")}), 'o');
        break;
    case 4:
        arguments.addWide(static_cast<quint64>(input.number()), 'x');
        break;
    case 5:
        arguments.addBytes(QByteArray(input.index(most), '\x7f') + QByteArray(input.byte() * most / 255, 'a'));
        break;
    case 6:
        arguments.addTexts(clientId(input), input.byte() * most / 255);
        break;
    case 7:
        arguments.addVariant(static_cast<quint32>(input.number()));
        break;
    default:
        arguments.addNumber(static_cast<quint32>(input.number()));
    }
}

/// A whole message, that need not be for the service, with arguments that need not be its.
BusMessage anyMessage(InputBytes &input)
{
    static const QStringList members{
        QStringLiteral("requestAudioFocus"),
        QStringLiteral("abandonAudioFocus"),
        QStringLiteral("volumeLevel"),
        QStringLiteral("Introspect"),
        QStringLiteral("GetAll"),
        QStringLiteral("Set"),
        QStringLiteral("Ping"),
        QStringLiteral("NameOwnerChanged"),
        QStringLiteral("audioFocusChanged"),
        QStringLiteral("deleteLater"),
    };
    static const QStringList interfaces{
        QStringLiteral("tavi.AudioService"),
        QStringLiteral("org.freedesktop.DBus.Introspectable"),
        QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("org.freedesktop.DBus.Peer"),
        QStringLiteral("org.freedesktop.DBus"),
    };
    static const QStringList paths{QStringLiteral("/tavi/AudioService"), QStringLiteral("/"), QStringLiteral("/tavi"), QStringLiteral("/org/freedesktop/DBus")};
    BusMessage message;
    message.type = static_cast<BusMessage::Type>(1 + input.index(4));
    message.member = input.textOf(members);
    message.interface = input.textOf(interfaces);
    message.path = input.textOf(paths);
    BusArguments arguments;
    for (int left = input.index(5); left > 0; --left)
        addAny(arguments, input);
    arguments.giveTo(message);
    return message;
}

std::unique_ptr<BusClient> &joined(Clients &clients, InputBytes &input, const QByteArray &socket)
{
    std::unique_ptr<BusClient> &client = clients.at(std::size_t(input.index(connections)));
    if (!client) {
        client = std::make_unique<BusClient>(socket);
        if (!client->join())
            qFatal("the bus does not take a client");
    }
    return client;
}

/// Bytes instead of a proper beginning.
void knock(InputBytes &input, const QByteArray &socket)
{
    constexpr int longest = 64;
    BusClient stranger(socket);
    stranger.sendBytes((input.flag() ? QByteArray(1, '\0') : QByteArray()) + input.textOf({QStringLiteral("AUTH EXTERNAL\r\n"), QStringLiteral("BEGIN\r\n")}));
    stranger.sendBytes(input.bytes(input.index(longest)));
}

/// True where an answer came.
bool step(Clients &clients, InputBytes &input, const QByteArray &socket)
{
    constexpr int longest = 32;
    enum { Proper, ProperToo, Any, AnyToo, Broken, Raw, Knock, Leave, Kinds };
    const int kind = input.index(Kinds);
    if (kind == Knock) {
        knock(input, socket);
        return false;
    }
    std::unique_ptr<BusClient> &client = joined(clients, input, socket);
    switch (kind) {
    case Proper:
    case ProperToo:
        if (client->ask(properCall(input)))
            return true;
        client.reset(); // the bus has closed it, for bytes before
        return false;
    case Any:
    case AnyToo:
        client->send(anyMessage(input));
        return false;
    case Broken: {
        const BusMessage message = input.flag() ? properCall(input) : anyMessage(input);
        const int position = input.byte();
        client->sendBroken(message, position, input.bytes(1 + input.index(4)));
        break;
    }
    case Raw:
        client->sendBytes(input.bytes(input.index(longest)));
        break;
    default:
        break;
    }
    // Where the bus waits for the rest of a broken message no answer would come.
    client.reset();
    return false;
}

} // namespace

BusTarget::BusTarget(const QString &address)
    : m_socket(address.section(QLatin1String("unix:path="), 1).section(QLatin1Char(','), 0, 0).toUtf8())
    , m_observer(std::make_unique<BusClient>(m_socket))
{
    if (!m_observer->join())
        qFatal("the bus does not take the observer");
}

BusTarget::~BusTarget() = default;

int BusTarget::play(std::string_view bytes)
{
    constexpr int most = 50; // or a long input takes seconds
    InputBytes input(bytes);
    Clients clients;
    QByteArrayList names;
    int answers = 0;
    for (int count = 0; !input.atEnd() && count < most; ++count) {
        answers += step(clients, input, m_socket) ? 1 : 0;
        for (const std::unique_ptr<BusClient> &client : clients) {
            if (client && !names.contains(client->name()))
                names.append(client->name());
        }
    }
    for (std::unique_ptr<BusClient> &client : clients)
        client.reset();
    for (const QByteArray &name : qAsConst(names))
        waitUntilGone(name);
    requireSilence();
    return answers;
}

/// The bus tells the service of it before it answers this.
void BusTarget::waitUntilGone(const QByteArray &name)
{
    BusMessage question = toBus("NameHasOwner");
    BusArguments arguments;
    arguments.addText(name);
    arguments.giveTo(question);
    for (;;) {
        const std::optional<BusAnswer> answer = m_observer->ask(question);
        if (!answer)
            qFatal("the bus has gone");
        if (answer->number() != 1)
            return;
    }
}

void BusTarget::requireSilence()
{
    BusMessage question;
    question.member = "getCurrentAudioFocus";
    const std::optional<BusAnswer> answer = m_observer->ask(question);
    if (!answer || answer->type != BusMessage::Reply)
        qFatal("does not hold: the service answers");
    if (answer->number() != 0)
        qFatal("does not hold: nobody has focus who has left, but the hint is %d", answer->number());
}
