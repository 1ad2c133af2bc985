#include "rendering.h"

#include "console.h"
#include "soundtool.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace
{

const QString graphFile = QStringLiteral("drive.graph");

QStringList beginning()
{
    return {QStringLiteral("-hide_banner"), QStringLiteral("-nostdin"), QStringLiteral("-nostats"), QStringLiteral("-y")};
}

bool hasSoundCard()
{
    return !QDir(QStringLiteral("/dev/snd")).entryList({QStringLiteral("pcm*p")}, QDir::System).isEmpty();
}

} // namespace

Rendering::Rendering(const QMap<QString, QString> &files)
    : m_sounds(files)
{
}

QString Rendering::save(const QString &name, const QString &text) const
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0 && file.flush()
        ? QString()
        : QStringLiteral("%1: %2").arg(file.fileName(), file.errorString());
}

QString Rendering::prepareSounds(const FilterGraph &graph)
{
    QString missing = m_sounds.absence(graph.voices());
    if (!missing.isEmpty())
        return missing;
    if (m_made.isEmpty()) {
        QString problem = SourceSound::writeSilence(m_folder.path(), FilterGraph::silenceFile());
        if (!problem.isEmpty())
            return problem;
    }
    for (int i = 0; i < graph.voices().size(); ++i) {
        const SoundTrack::Voice &voice = graph.voices().at(i);
        QString &made = m_made[voice];
        if (made.isEmpty()) {
            const QString name = QStringLiteral("sound%1.wav").arg(m_made.size());
            QString problem = m_sounds.write(voice, m_folder.path(), name);
            if (!problem.isEmpty())
                return problem;
            made = m_folder.filePath(name);
        }
        const QString link = m_folder.filePath(FilterGraph::soundFile(i));
        QFile::remove(link);
        if (!QFile::link(made, link))
            return QStringLiteral("%1 cannot be written").arg(link);
    }
    return {};
}

QString Rendering::prepare(const FilterGraph &graph)
{
    if (!m_folder.isValid())
        return QStringLiteral("there is no place for temporary files: %1").arg(m_folder.errorString());
    QString problem = prepareSounds(graph);
    if (problem.isEmpty())
        problem = save(graphFile, graph.text());
    for (const FilterGraph::CommandFile &commands : graph.commandFiles()) {
        if (problem.isEmpty())
            problem = save(commands.name, commands.text);
    }
    return problem;
}

QString Rendering::render(const SoundTrack &track, FilterGraph::Listener listener, const QStringList &output, const Progress &progress)
{
    const FilterGraph graph(track, listener);
    QString problem = prepare(graph);
    if (!problem.isEmpty())
        return problem;
    const QStringList arguments = beginning()
        + QStringList{QStringLiteral("-loglevel"),
                      QStringLiteral("error"),
                      // What goes wrong at the very end, such as a disk that is full then, is no failure without it.
                      QStringLiteral("-xerror"),
                      QStringLiteral("-progress"),
                      QStringLiteral("pipe:1"),
                      QStringLiteral("-filter_complex_script"),
                      graphFile,
                      QStringLiteral("-map"),
                      QStringLiteral("[out]")}
        + output;
    return SoundTool::ffmpeg()
        .run(arguments,
             m_folder.path(),
             [&progress](const QByteArray &line) {
                 const QByteArray key("out_time_us=");
                 constexpr qint64 microsecondsPerMillisecond = 1000;
                 if (progress && line.startsWith(key))
                     progress(line.mid(key.size()).toLongLong() / microsecondsPerMillisecond);
             })
        .problem;
}

QString Rendering::write(const SoundTrack &track, FilterGraph::Listener listener, const QString &file, const Progress &progress)
{
    return render(track,
                  listener,
                  {QStringLiteral("-c:a"),
                   QStringLiteral("pcm_s24le"),
                   QStringLiteral("-f"),
                   QStringLiteral("wav"),
                   QStringLiteral("-rf64"),
                   QStringLiteral("auto"),
                   QStringLiteral("file:") + QFileInfo(file).absoluteFilePath()},
                  progress);
}

QString Rendering::play(const SoundTrack &track, const Progress &progress)
{
    if (!hasSoundCard())
        return QStringLiteral("this machine has no sound card to play on: -o FILE writes the sound");
    return render(track, FilterGraph::Listener::TwoEars, {QStringLiteral("-f"), QStringLiteral("alsa"), QStringLiteral("default")}, progress);
}

Loudness Rendering::measure(const SoundTrack &track, QString &problem)
{
    FilterGraph graph(track, FilterGraph::Listener::TwoEars);
    problem = prepare(graph);
    if (!problem.isEmpty())
        return {};
    // An own output of the meter: FFmpeg takes no simple filter for one that comes from a graph.
    problem = save(graphFile, graph.text().trimmed() + QStringLiteral(";\n[out]ebur128=peak=true[measured]\n"));
    if (!problem.isEmpty())
        return {};
    const SoundTool::Outcome outcome = SoundTool::ffmpeg().run(beginning()
                                                                   + QStringList{QStringLiteral("-filter_complex_script"),
                                                                                 graphFile,
                                                                                 QStringLiteral("-map"),
                                                                                 QStringLiteral("[measured]"),
                                                                                 QStringLiteral("-f"),
                                                                                 QStringLiteral("null"),
                                                                                 QStringLiteral("-")},
                                                               m_folder.path());
    problem = outcome.problem;
    return problem.isEmpty() ? Loudness::read(outcome.messages) : Loudness();
}
