#ifndef BUSTARGET_H
#define BUSTARGET_H

#include "busclient.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>
#include <string_view>

/**
 * Clients of the focus service as bytes make them: several connections, calls with right and with wrong arguments, messages with broken
 * headers, bytes that are no message, and connections that come and go.
 *
 * Ends the process where the service does not answer any more, or where somebody has focus although everybody has left.
 */
class BusTarget
{
public:
    /// @param address of a bus with a socket in the file system, on which the service is
    explicit BusTarget(const QString &address);
    ~BusTarget();

    /// Plays what the bytes say; gives how many answers came.
    int play(std::string_view bytes);

private:
    Q_DISABLE_COPY(BusTarget)

    void waitUntilGone(const QByteArray &name);
    void requireSilence();

    const QByteArray m_socket;
    std::unique_ptr<BusClient> m_observer;
};

#endif
