#ifndef SOUNDOUTPUT_H
#define SOUNDOUTPUT_H

#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

class LoopDevice;

/// Where sound is played: 48 kHz, two channels, 16 bits. To be stopped it is deleted. Nobody waits for a device.
class SoundOutput : public QObject
{
    Q_OBJECT

public:
    /// Plays what this gives.
    virtual void start(const std::shared_ptr<LoopDevice> &sound) = 0;

Q_SIGNALS:
    /// Nothing is played, or no longer. @param problem why, for people
    void failed(const QString &problem);
};

#endif
