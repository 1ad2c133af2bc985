#include "listening.h"

#include "background.h"
#include "render/soundtool.h"

#include <QtCore/QFileInfo>

#include <algorithm>

namespace
{

Listening::OutputFactory &outputFactory()
{
    static Listening::OutputFactory factory;
    return factory;
}

/// Whether something begins to sound that is to be heard from its beginning on.
bool beginsAnew(const std::optional<SoundTrack::State> &before, const SoundTrack::State &now)
{
    return std::any_of(now.voices.keyBegin(), now.voices.keyEnd(), [&before](const SoundTrack::Voice &voice) {
        return SourceSound::beginsAnew(voice) && !(before && before->voices.contains(voice));
    });
}

} // namespace

Listening::Listening(QObject *parent)
    : QObject(parent)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(interval);
    connect(&m_pause, &QTimer::timeout, this, &Listening::look);
}

Listening::~Listening() = default;

void Listening::setOutput(const OutputFactory &factory)
{
    outputFactory() = factory;
}

void Listening::setDesk(Desk *desk)
{
    if (m_desk == desk)
        return;
    m_desk = desk;
    if (desk)
        connect(desk, &Desk::snapshotChanged, this, &Listening::look);
    Q_EMIT deskChanged();
}

void Listening::setSoundFile(const QString &file)
{
    m_soundFile = file;
    look();
}

void Listening::setOn(bool on)
{
    if (on == isOn())
        return;
    if (!on) {
        turnOff();
        setNote({});
        return;
    }
    QString missing = SoundTool::ffmpeg().absence();
    if (missing.isEmpty())
        missing = SoundTool::espeak().absence();
    if (missing.isEmpty() && !outputFactory())
        missing = tr("there is no sound in this program");
    if (!missing.isEmpty()) {
        setNote(missing);
        Q_EMIT onChanged(); // a switch that was moved goes back
        return;
    }
    setNote({});
    ++m_turn;
    m_state.reset();
    m_size = -1;
    m_device->setLoop({}, true);
    m_output = outputFactory()();
    connect(m_output.get(), &SoundOutput::failed, this, &Listening::fail, Qt::QueuedConnection);
    m_output->start(m_device);
    Q_EMIT onChanged();
    look();
}

void Listening::turnOff()
{
    if (!m_output)
        return;
    m_output.reset();
    Q_EMIT onChanged();
}

void Listening::fail(const QString &problem)
{
    if (!m_output)
        return;
    turnOff();
    setNote(problem);
}

void Listening::setNote(const QString &note)
{
    if (note == m_note)
        return;
    m_note = note;
    Q_EMIT noteChanged();
}

void Listening::look()
{
    if (!isOn() || m_isMaking || m_pause.isActive())
        return;
    const QFileInfo file(m_soundFile.isEmpty() && m_desk ? m_desk->soundFile() : m_soundFile);
    if (!file.exists() || (file.size() == m_size && file.lastModified() == m_time))
        return;
    m_size = file.size();
    m_time = file.lastModified();
    m_pause.start();
    m_isMaking = true;
    if (!m_rendering)
        m_rendering = std::make_shared<Rendering>(QMap<QString, QString>());
    const auto work = [rendering = m_rendering, name = file.filePath(), before = m_state] {
        Made made;
        made.state = SoundLoop::lastState(name);
        const bool isSame = made.state && before && made.state->isHeardAs(*before);
        if (isSame)
            made.state.reset();
        if (made.state && !made.state->voices.isEmpty())
            made.loop = SoundLoop::render(*rendering, *made.state, made.problem);
        return made;
    };
    Background::run(this, work, [this, turn = m_turn](const Made &made) {
        m_isMaking = false;
        if (turn == m_turn && isOn())
            take(made);
        look();
    });
}

void Listening::take(const Made &made)
{
    if (!made.problem.isEmpty()) {
        fail(made.problem);
        return;
    }
    if (!made.state)
        return;
    m_device->setLoop(made.loop, beginsAnew(m_state, *made.state));
    m_state = made.state;
    Q_EMIT heard();
}
