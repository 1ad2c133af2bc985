#include "interruption.h"

#include <QtCore/QSocketNotifier>

#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace
{

constexpr int signalNumbers[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t receivedSignal = 0;
int eventFile = -1;

void receive(int number)
{
    receivedSignal = number;
    const eventfd_t one = 1;
    // Nothing can be done here where it fails, and it does not: one writer, far from the limit.
    [[maybe_unused]] const ssize_t written = write(eventFile, &one, sizeof one);
}

void setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : signalNumbers) {
        struct sigaction before = {};
        sigaction(number, nullptr, &before);
        // Ignored by whoever started this program (nohup): stays so.
        if (before.sa_handler != SIG_IGN)
            sigaction(number, &action, nullptr);
    }
}

} // namespace

Interruption::Interruption(QObject *parent)
    : QObject(parent)
{
    eventFile = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    auto *const notifier = new QSocketNotifier(eventFile, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        eventfd_t count = 0;
        eventfd_read(eventFile, &count);
        Q_EMIT interrupted();
    });
    setHandler(&receive);
}

Interruption::~Interruption()
{
    setHandler(SIG_DFL);
    close(eventFile);
}

int Interruption::received()
{
    return receivedSignal;
}
