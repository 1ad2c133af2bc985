#ifndef SERVICETHREAD_H
#define SERVICETHREAD_H

#include <QtCore/QSemaphore>
#include <QtCore/QString>
#include <QtCore/QThread>

/// The focus service of the daemon, in a thread of this process, so that a fuzzer sees where in it a message leads.
class ServiceThread : public QThread
{
public:
    /// Returns once calls are answered.
    explicit ServiceThread(const QString &busAddress);
    ~ServiceThread() override;

protected:
    void run() override;

private:
    Q_DISABLE_COPY(ServiceThread)

    const QString m_address;
    QSemaphore m_ready;
};

#endif
