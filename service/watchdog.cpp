#include "watchdog.h"

#include <utility>

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
    m_looksSinceFed = 0;
}

void Watchdog::watch()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    // However long a wait took, it counts as one.
    while (!m_wakeUp.wait_for(lock, m_betweenLooks, [this] { return m_isEnding; })) {
        if (++m_looksSinceFed < looksPerLimit)
            continue;
        lock.unlock();
        m_onStarved();
        return;
    }
}
