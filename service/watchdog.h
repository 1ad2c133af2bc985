#ifndef WATCHDOG_H
#define WATCHDOG_H

#include <QtCore/QtGlobal>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/**
 * Notices, on a thread of its own, that nobody has called feed() for longer than the limit.
 *
 * Only time in which that thread could run counts: a process that was stopped, or a machine that slept, is not taken for one that
 * hangs. And time in which the process computes counts a tenth only: Qt unpacks a message of a million texts in one go, which may
 * take longer than the limit, and whoever sent it should not be able to end the process.
 *
 * Threads: feed() may be called from any.
 */
class Watchdog
{
public:
    /// @param onStarved is called once, on the watchdog's thread, and must not wait for anything that may hang
    Watchdog(std::chrono::milliseconds limit, std::function<void()> onStarved);
    ~Watchdog();

    void feed();

private:
    Q_DISABLE_COPY(Watchdog)

    static constexpr int looksPerLimit = 10;
    static constexpr int pointsOfIdleLook = 10;
    static constexpr int pointsOfBusyLook = 1;
    static constexpr int busyShare = 20; ///< of the time between looks: where more computes than there are processors, one that works gets little
    static constexpr int pointsPerLimit = looksPerLimit * pointsOfIdleLook;

    void watch();

    const std::chrono::milliseconds m_betweenLooks;
    const std::function<void()> m_onStarved;
    std::mutex m_mutex;
    std::condition_variable m_wakeUp;
    bool m_isEnding = false;
    int m_pointsSinceFed = 0;
    std::thread m_thread;
};

#endif
