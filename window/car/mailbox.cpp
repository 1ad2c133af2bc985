#include "mailbox.h"

void Mailbox::put(const QVariantMap &request)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_requests.push_back(request);
    }
    m_changed.notify_one();
}

void Mailbox::close()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
    }
    m_changed.notify_one();
}

std::optional<QVariantMap> Mailbox::take(std::chrono::milliseconds patience)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait_for(lock, patience, [this] { return m_closed || !m_requests.empty(); });
    if (m_requests.empty())
        return {};
    const QVariantMap request = m_requests.front();
    m_requests.pop_front();
    return request;
}

bool Mailbox::isAtEnd()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_closed && m_requests.empty();
}
