#ifndef STOPSIGNALS_H
#define STOPSIGNALS_H

#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>

#include <csignal>
#include <memory>

/**
 * Turns SIGTERM and SIGINT into an orderly end of the event loop, with exit status 0.
 *
 * block() comes first of all, before any thread starts: threads inherit what is blocked.
 */
class StopSignals : public QObject
{
    Q_OBJECT

public:
    static void block();

    explicit StopSignals(QObject *parent = nullptr);
    ~StopSignals() override;

private:
    Q_DISABLE_COPY(StopSignals)

    static sigset_t signalSet();

    int m_descriptor;
    QSocketNotifier m_notifier;
};

#endif
