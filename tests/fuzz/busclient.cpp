#include "busclient.h"

#include <QtCore/QString>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{

constexpr int longestWait = 20; // seconds
constexpr int maximumReceived = 65536; // bytes at once

/// A fuzzer's alarm interrupts what waits. @return as the system call
template<typename Call>
ssize_t uninterrupted(Call call)
{
    ssize_t count = 0;
    do {
        count = call();
    } while (count < 0 && errno == EINTR);
    return count;
}

int connectedTo(const QByteArray &file)
{
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, file.constData(), std::min(sizeof address.sun_path - 1, static_cast<std::size_t>(file.size())));
    const timeval wait{longestWait, 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
    ::setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &wait, sizeof wait);
    if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        qFatal("no bus at %s: %s", file.constData(), std::strerror(errno));
    return descriptor;
}

} // namespace

BusClient::BusClient(const QByteArray &socket)
    : m_socket(connectedTo(socket))
{
}

BusClient::~BusClient()
{
    ::close(m_socket);
}

bool BusClient::join()
{
    sendBytes(QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(::geteuid()).toHex() + "\r\n");
    while (!m_received.contains("\r\n")) {
        if (!receive())
            return false;
    }
    if (!m_received.startsWith("OK "))
        return false;
    m_received.clear();
    sendBytes("BEGIN\r\n");
    BusMessage hello;
    hello.path = "/org/freedesktop/DBus";
    hello.interface = "org.freedesktop.DBus";
    hello.destination = hello.interface;
    hello.member = "Hello";
    const std::optional<BusAnswer> answer = ask(hello);
    if (answer && answer->type == BusMessage::Reply)
        m_name = answer->text();
    return !m_name.isEmpty();
}

void BusClient::sendBytes(const QByteArray &bytes)
{
    int sent = 0;
    while (sent < bytes.size()) {
        const char *const rest = bytes.constData() + sent;
        const auto size = static_cast<std::size_t>(bytes.size() - sent);
        const ssize_t count = uninterrupted([this, rest, size] { return ::send(m_socket, rest, size, MSG_NOSIGNAL); });
        if (count <= 0)
            return; // closed by the bus, as is its right
        sent += static_cast<int>(count);
    }
}

quint32 BusClient::send(const BusMessage &message)
{
    sendBytes(message.toBytes(++m_serial));
    return m_serial;
}

void BusClient::sendBroken(const BusMessage &message, int position, const QByteArray &bytes)
{
    QByteArray broken = message.toBytes(++m_serial);
    broken.replace(position % broken.size(), bytes.size(), bytes);
    sendBytes(broken);
}

std::optional<BusAnswer> BusClient::ask(const BusMessage &message)
{
    return answerTo(send(message));
}

/// What else comes meanwhile, such as signals, is dropped.
std::optional<BusAnswer> BusClient::answerTo(quint32 serial)
{
    for (;;) {
        while (std::optional<BusAnswer> answer = BusAnswer::takeFrom(m_received)) {
            if (answer->replySerial == serial)
                return answer;
        }
        if (!receive())
            return std::nullopt;
    }
}

bool BusClient::receive()
{
    char buffer[maximumReceived];
    const ssize_t count = uninterrupted([this, &buffer] { return ::recv(m_socket, buffer, sizeof buffer, 0); });
    if (count < 0 && errno == EAGAIN)
        qFatal("no answer within %d s", longestWait);
    if (count <= 0)
        return false;
    m_received.append(buffer, static_cast<int>(count));
    return true;
}
