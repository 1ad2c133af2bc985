#include "watchdog.h"

#include <ctime>
#include <utility>

namespace
{

/// What all threads of the process have computed so far.
std::chrono::nanoseconds processorTime()
{
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace

Watchdog::Watchdog(std::chrono::milliseconds limit, std::function<void()> onStarved)
    : m_betweenLooks(limit / looksPerLimit)
    , m_onStarved(std::move(onStarved))
    , m_thread([this] { watch(); })
{
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
    }
    m_wakeUp.notify_one();
    m_thread.join();
}

void Watchdog::feed()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pointsSinceFed = 0;
}

void Watchdog::watch()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    std::chrono::nanoseconds last = processorTime();
    // However long a wait took, it counts as one.
    while (!m_wakeUp.wait_for(lock, m_betweenLooks, [this] { return m_isEnding; })) {
        const std::chrono::nanoseconds now = processorTime();
        const bool isBusy = std::exchange(last, now) + m_betweenLooks / busyShare < now;
        m_pointsSinceFed += isBusy ? pointsOfBusyLook : pointsOfIdleLook;
        if (m_pointsSinceFed < pointsPerLimit)
            continue;
        lock.unlock();
        m_onStarved();
        return;
    }
}
