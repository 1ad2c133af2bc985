#ifndef SOURCESOUND_H
#define SOURCESOUND_H

#include "soundtrack.h"

#include <QtCore/QMap>
#include <QtCore/QString>

/**
 * The sound that a source has on the desk: a file of the user's, or one that is made on the spot, as loud as all others.
 *
 * Media go on all the time and are heard when they sound; what rings, speaks or beeps begins anew each time.
 */
class SourceSound
{
public:
    /// LUFS of what is made on the spot, before any volume.
    static constexpr double loudness = -23;

    /**
     * What is added to each sound, and is all of silence: far too little to be in any sample that is written.
     *
     * A filter whose sound has ended goes on with numbers so small that processors compute them a hundred times slower.
     */
    static constexpr const char *unheard = "1e-20";

    enum class Kind {
        Music,
        Ringtone,
        Telephone,
        Assistant,
        Navigation,
        ReverseBeeps,
    };
    static Kind kindOf(const SoundTrack::Voice &voice);
    /// Whether it is something that is to be understood over the rest: a prompt or a call.
    static bool isForeground(const SoundTrack::Voice &voice);
    static bool beginsAnew(const SoundTrack::Voice &voice) { return kindOf(voice) != Kind::Music; }

    /// @param files those of the user's by source, with whole paths
    explicit SourceSound(const QMap<QString, QString> &files);

    /// What is missing to make the sounds of these; empty for nothing.
    QString absence(const QVector<SoundTrack::Voice> &voices) const;
    /// Writes the sound as a file, mono, 48 kHz, to be played over and over. @return what is the matter
    QString write(const SoundTrack::Voice &voice, const QString &folder, const QString &name) const;
    /// The same for what is between sounds.
    static QString writeSilence(const QString &folder, const QString &name);

private:
    static QString make(const SoundTrack::Voice &voice, const QString &folder, const QString &name);
    static QString speak(Kind kind, const QString &folder, const QString &name);

    QMap<QString, QString> m_files;
};

#endif
