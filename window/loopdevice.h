#ifndef LOOPDEVICE_H
#define LOOPDEVICE_H

#include "soundloop.h"

#include <QtCore/QIODevice>
#include <QtCore/QMutex>

/**
 * Samples for a sound device that never end: a loop over and over, one after another without a gap.
 *
 * Another loop goes on where the one before it is, or from its beginning, and the two overlap for a moment. Without one there is silence. It may be set
 * on another thread than the one that reads.
 */
class LoopDevice : public QIODevice
{
    Q_OBJECT

public:
    explicit LoopDevice(QObject *parent = nullptr);

    void setLoop(const SoundLoop &loop, bool isFromBeginning);

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override;

    /// Frames in which one loop goes over into the next.
    static constexpr int overlappingFrames = 960;

protected:
    qint64 readData(char *data, qint64 size) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    /// A loop that is being played.
    struct Voice
    {
        SoundLoop loop;
        int place = 0; // in samples

        qint16 next();
    };

    QMutex m_mutex;
    Voice m_now;
    Voice m_before;
    int m_overlapping = 0; // samples that are left of it
};

#endif
