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
    /// @return its number, from 1
    quint64 put(const QVariantMap &request);
    /// Nothing more comes.
    void close();

    struct Request
    {
        quint64 number;
        QVariantMap content;
    };
    /// The next request; waits for one at most @p patience of real time, which no virtual clock changes. Empty where none came.
    std::optional<Request> take(std::chrono::milliseconds patience);
    /// Whether it is closed and empty.
    bool isAtEnd();

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Request> m_requests;
    quint64 m_count = 0;
    bool m_closed = false;
};

#endif
