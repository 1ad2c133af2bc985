#include "volumethread.h"

VolumeThread::VolumeThread(QObject *parent)
    : QObject(parent)
{
    m_thread.setObjectName(QStringLiteral("volume"));
}

VolumeThread::~VolumeThread()
{
    stop();
}

void VolumeThread::ask()
{
    if (!m_source) {
        m_source = new VolumeSource;
        connect(m_source, &VolumeSource::answered, this, &VolumeThread::answered);
        connect(m_source, &VolumeSource::changed, this, &VolumeThread::changed);
        connect(&m_thread, &QThread::finished, m_source, &QObject::deleteLater);
        m_source->moveToThread(&m_thread);
        m_thread.start();
    }
    QMetaObject::invokeMethod(m_source, &VolumeSource::answer, Qt::QueuedConnection);
}

bool VolumeThread::stop()
{
    constexpr unsigned long patienceMs = 1000; // a save that is under way has the time to end
    m_thread.quit();
    return m_thread.wait(patienceMs);
}
