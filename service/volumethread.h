#ifndef VOLUMETHREAD_H
#define VOLUMETHREAD_H

#include "volumesource.h"

#include <QtCore/QObject>
#include <QtCore/QThread>

/**
 * Has a VolumeSource on a thread of its own: the settings file is other processes', too, and whoever reads it waits for those that
 * write. The thread starts with the first question.
 *
 * Threads: use the object from the thread that made it, which must run a Qt event loop.
 */
class VolumeThread : public QObject
{
    Q_OBJECT

public:
    explicit VolumeThread(QObject *parent = nullptr);
    ~VolumeThread() override;

    /// answered() follows, as often as this was called.
    void ask();
    /**
     * Ends the thread; false when it hangs. Neither the object nor what it uses may be destroyed then, only the whole process can
     * be ended.
     */
    bool stop();

Q_SIGNALS:
    void answered(bool isMuted, int level);
    /// The level is another one.
    void changed(bool isMuted, int level);

private:
    Q_DISABLE_COPY(VolumeThread)

    QThread m_thread;
    VolumeSource *m_source = nullptr; // goes with the thread
};

#endif
