#include "stopsignals.h"

#include <QtCore/QCoreApplication>

#include <sys/signalfd.h>
#include <unistd.h>

void StopSignals::block()
{
    const sigset_t signals = signalSet();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

StopSignals::StopSignals(QObject *parent)
    : QObject(parent)
    , m_descriptor([] {
        const sigset_t signals = signalSet();
        return ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    }())
    , m_notifier(m_descriptor, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
        m_notifier.setEnabled(false);
        QCoreApplication::exit(0);
    });
}

StopSignals::~StopSignals()
{
    ::close(m_descriptor);
}

sigset_t StopSignals::signalSet()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}
