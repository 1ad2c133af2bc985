#ifndef BACKGROUND_H
#define BACKGROUND_H

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtCore/QThreadPool>

#include <utility>

/// Work that would take too long for a frame, on a thread of Qt's pool.
namespace Background
{

/**
 * Runs @p work there, and then @p done with its result on the thread of @p receiver, which is that of the application; a receiver that is gone by then
 * is not told.
 */
template<typename Work, typename Done>
void run(QObject *receiver, Work work, Done done)
{
    QThreadPool::globalInstance()->start([pointer = QPointer<QObject>(receiver), work = std::move(work), done = std::move(done)] {
        auto result = work();
        QCoreApplication *const application = QCoreApplication::instance();
        if (!application)
            return;
        QMetaObject::invokeMethod(
            application,
            [pointer, done, result = std::move(result)] {
                if (pointer)
                    done(result);
            },
            Qt::QueuedConnection);
    });
}

} // namespace Background

#endif
