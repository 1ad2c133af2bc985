#ifndef AUDIOOUTPUT_H
#define AUDIOOUTPUT_H

#include "soundoutput.h"

#include <QtCore/QPointer>
#include <QtCore/QThread>

class QAudioOutput;

/// Plays on the thread that it lives on, which may have to wait for the device.
class AudioPlayer : public QObject
{
    Q_OBJECT

public:
    explicit AudioPlayer(std::shared_ptr<LoopDevice> sound);
    ~AudioPlayer() override;

    void start();

Q_SIGNALS:
    void failed(const QString &problem);

private:
    const std::shared_ptr<LoopDevice> m_sound;
    std::unique_ptr<QAudioOutput> m_output;
};

/// The sound device of the machine, through Qt Multimedia.
class AudioOutput : public SoundOutput
{
    Q_OBJECT

public:
    ~AudioOutput() override;

    void start(const std::shared_ptr<LoopDevice> &sound) override;

private:
    QPointer<QThread> m_thread; // deletes itself when it has ended
};

#endif
