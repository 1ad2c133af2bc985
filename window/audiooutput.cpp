#include "audiooutput.h"

#include "loopdevice.h"
#include "render/filtergraph.h"

#include <QtCore/QCoreApplication>
#include <QtMultimedia/QAudioDeviceInfo>
#include <QtMultimedia/QAudioFormat>
#include <QtMultimedia/QAudioOutput>

#include <utility>

namespace
{

QAudioFormat formatOfLoops()
{
    constexpr int bitsPerSample = 16;
    QAudioFormat format;
    format.setSampleRate(FilterGraph::sampleRate);
    format.setChannelCount(SoundLoop::channels);
    format.setSampleSize(bitsPerSample);
    format.setSampleType(QAudioFormat::SignedInt);
    format.setByteOrder(QAudioFormat::Endian(QSysInfo::ByteOrder));
    format.setCodec(QStringLiteral("audio/pcm"));
    return format;
}

} // namespace

AudioPlayer::AudioPlayer(std::shared_ptr<LoopDevice> sound)
    : m_sound(std::move(sound))
{
}

AudioPlayer::~AudioPlayer() = default;

void AudioPlayer::start()
{
    const QAudioDeviceInfo machine = QAudioDeviceInfo::defaultOutputDevice();
    if (machine.isNull()) {
        Q_EMIT failed(tr("This machine has no sound device to play on."));
        return;
    }
    if (!machine.isFormatSupported(formatOfLoops())) {
        Q_EMIT failed(tr("The sound device does not play 48 kHz in stereo."));
        return;
    }
    m_output = std::make_unique<QAudioOutput>(machine, formatOfLoops());
    connect(m_output.get(), &QAudioOutput::stateChanged, this, [this](QAudio::State state) {
        if (state == QAudio::StoppedState && m_output->error() != QAudio::NoError)
            Q_EMIT failed(tr("The sound device does not play: another program may have it."));
    });
    m_output->start(m_sound.get());
}

AudioOutput::~AudioOutput()
{
    if (m_thread)
        m_thread->quit();
}

void AudioOutput::start(const std::shared_ptr<LoopDevice> &sound)
{
    auto *const thread = new QThread;
    auto *const player = new AudioPlayer(sound);
    m_thread = thread;
    player->moveToThread(thread);
    connect(thread, &QThread::started, player, &AudioPlayer::start);
    connect(player, &AudioPlayer::failed, this, &AudioOutput::failed);
    connect(thread, &QThread::finished, player, &QObject::deleteLater);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, thread, [thread] {
        constexpr unsigned long patience = 1000; // ms
        thread->quit();
        thread->wait(patience);
    });
    thread->start();
}
