#ifndef BUSCLIENT_H
#define BUSCLIENT_H

#include "busmessage.h"

#include <QtCore/QByteArray>

#include <optional>

/**
 * A connection to a bus as a socket, on which anything can be sent.
 *
 * Waits for the bus, and does not run an event loop: whoever is to answer lives in another thread or process.
 */
class BusClient
{
public:
    /// @param socket file of the bus's socket
    explicit BusClient(const QByteArray &socket);
    ~BusClient();

    /// Becomes a client with a name. False where the bus does not take it.
    bool join();
    /// The bus's name for it, ":1.7"; empty before join().
    const QByteArray &name() const { return m_name; }

    /// These bytes as they are; the bus may close the connection for them.
    void sendBytes(const QByteArray &bytes);
    quint32 send(const BusMessage &message);
    /// A message with some of its bytes replaced, from there on.
    void sendBroken(const BusMessage &message, int position, const QByteArray &bytes);
    /// Sends it and waits for its answer; nothing where the bus has closed the connection. No answer in time ends the process.
    std::optional<BusAnswer> ask(const BusMessage &message);

private:
    Q_DISABLE_COPY(BusClient)

    std::optional<BusAnswer> answerTo(quint32 serial);
    bool receive();

    const int m_socket;
    QByteArray m_name;
    QByteArray m_received;
    quint32 m_serial = 0;
};

#endif
