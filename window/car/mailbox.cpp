#include "mailbox.h"

quint64 Mailbox::put(const QVariantMap &request)
{
    quint64 number = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        number = ++m_count;
        m_requests.push_back({number, request});
    }
    m_changed.notify_one();
    return number;
}

void Mailbox::close()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
    }
    m_changed.notify_one();
}

std::optional<Mailbox::Request> Mailbox::take(std::chrono::milliseconds patience)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait_for(lock, patience, [this] { return m_closed || !m_requests.empty(); });
    if (m_requests.empty())
        return {};
    const Request request = m_requests.front();
    m_requests.pop_front();
    return request;
}

bool Mailbox::isAtEnd()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_closed && m_requests.empty();
}
