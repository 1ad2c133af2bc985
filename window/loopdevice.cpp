#include "loopdevice.h"

#include <QtCore/QMutexLocker>

#include <cmath>
#include <cstring>

LoopDevice::LoopDevice(QObject *parent)
    : QIODevice(parent)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint16 LoopDevice::Voice::next()
{
    if (loop.samples.isEmpty())
        return 0;
    const qint16 sample = loop.samples.at(place);
    place = (place + 1) % loop.samples.size();
    return sample;
}

void LoopDevice::setLoop(const SoundLoop &loop, bool isFromBeginning)
{
    const QMutexLocker locker(&m_mutex);
    const int place = isFromBeginning || loop.samples.isEmpty() ? 0 : m_now.place % loop.samples.size();
    m_before = m_now;
    m_now = {loop, place};
    m_overlapping = overlappingFrames * SoundLoop::channels;
}

qint64 LoopDevice::bytesAvailable() const
{
    constexpr qint64 plenty = 1 << 20;
    return plenty;
}

qint64 LoopDevice::readData(char *data, qint64 size)
{
    const QMutexLocker locker(&m_mutex);
    constexpr qint64 frame = SoundLoop::channels * sizeof(qint16);
    const qint64 count = size / frame * SoundLoop::channels;
    for (qint64 i = 0; i < count; ++i) {
        double value = m_now.next();
        if (m_overlapping > 0) {
            const int frames = (m_overlapping + SoundLoop::channels - 1) / SoundLoop::channels;
            const double share = double(frames) / overlappingFrames;
            value = value * (1 - share) + m_before.next() * share;
            --m_overlapping;
        }
        const auto sample = qint16(std::lround(value));
        std::memcpy(data + i * qint64(sizeof sample), &sample, sizeof sample);
    }
    return count * qint64(sizeof(qint16));
}

qint64 LoopDevice::writeData(const char * /*data*/, qint64 /*size*/)
{
    return -1;
}
