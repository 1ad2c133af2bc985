#ifndef DAEMONTEST_H
#define DAEMONTEST_H

#include "focusclientconnection.h"
#include "mortalprocess.h"
#include "privatebus.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <limits>
#include <memory>

/// What the tests of the daemon have in common: each test function has a bus of its own, and a daemon once it starts one.
class DaemonTest : public QObject
{
    Q_OBJECT

protected:
    static constexpr int longestWait = 20000; // ms
    static QString settingsFile();

    void startDaemon(const QStringList &arguments = {});
    /// Puts a system bus in the bus's place: with the installed policy, but for the user of this number in root's place.
    void startSystemBus(uint user);
    /// Runs the daemon until it ends by itself; gives its exit status.
    int runDaemon(const QStringList &arguments);
    /// Waits until the daemon ends by itself; gives its exit status, or -1.
    int waitForEnd();
    /// What the daemon has in memory, or -1.
    qint64 residentKilobytes() const;
    /// Without a daemon the number of no process: a signal to 0 would be one to the test itself, and whoever started it.
    pid_t daemonProcess() const { return daemon->processId() > 0 ? static_cast<pid_t>(daemon->processId()) : std::numeric_limits<pid_t>::max(); }

    std::unique_ptr<PrivateBus> bus;
    std::unique_ptr<MortalProcess> daemon;

protected Q_SLOTS:
    void init();
    void cleanup();
};

#endif
