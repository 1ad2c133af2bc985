#ifndef MAILBOX_H
#define MAILBOX_H

#include <QtCore/QVariantMap>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

/// What the window wants of the car, in order, on its way from the thread that reads it to the thread that the car runs on.
class Mailbox
{
public:
    void put(const QVariantMap &request);
    /// Nothing more comes.
    void close();

    /// The next request; waits for one at most @p patience of real time, which no virtual clock changes. Empty where none came.
    std::optional<QVariantMap> take(std::chrono::milliseconds patience);
    /// Whether it is closed and empty.
    bool isAtEnd();

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<QVariantMap> m_requests;
    bool m_closed = false;
};

#endif
