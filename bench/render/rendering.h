#ifndef RENDERING_H
#define RENDERING_H

#include "filtergraph.h"
#include "loudness.h"
#include "sourcesound.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

#include <functional>

/// Makes sound of sound tracks, with FFmpeg, in a temporary folder.
class Rendering
{
public:
    /// @param files of the user's by source
    explicit Rendering(const QMap<QString, QString> &files);

    /// Is told how far it has come, in ms of the drive.
    using Progress = std::function<void(qint64)>;

    /// Writes a WAV file of 24 bits, which replaces what was there. @return what is the matter
    QString write(const SoundTrack &track, FilterGraph::Listener listener, const QString &file, const Progress &progress);
    /// Lets it be heard by the machine's sound card. @return what is the matter
    QString play(const SoundTrack &track, const Progress &progress);
    /// How loud it is at two ears.
    Loudness measure(const SoundTrack &track, QString &problem);

private:
    Q_DISABLE_COPY(Rendering)

    QString prepare(const FilterGraph &graph);
    QString prepareSounds(const FilterGraph &graph);
    QString save(const QString &name, const QString &text) const;
    QString render(const SoundTrack &track, FilterGraph::Listener listener, const QStringList &output, const Progress &progress);

    const SourceSound m_sounds;
    const QTemporaryDir m_folder;
    QMap<SoundTrack::Voice, QString> m_made; // its file
};

#endif
