#ifndef FILTERGRAPH_H
#define FILTERGRAPH_H

#include "soundtrack.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/**
 * A drive as a graph of FFmpeg's filters, with the commands that change them on the way.
 *
 * Commands reach a filter between two frames. Therefore each voice is cut where something changes and put together again, so that a frame begins
 * there, to the sample; and in the graph's text whatever is commanded stands before what sends the commands: of filters that can go on FFmpeg
 * takes the first one, so that nothing waits between the two when a command is sent.
 */
class FilterGraph
{
public:
    enum class Listener {
        Loudspeakers, ///< a channel for each: left front, right front, left rear, right rear
        TwoEars, ///< half of either left one, half of either right one
    };

    static constexpr int sampleRate = 48000;
    /// A time of the drive in samples.
    static qint64 samples(qint64 milliseconds) { return milliseconds * sampleRate / 1000; }

    FilterGraph(const SoundTrack &track, Listener listener);

    /// For FFmpeg; its output is called [out]. It finds files by name in the folder that it runs in.
    QString text() const { return m_chains.join(QStringLiteral(";\n")) + QLatin1Char('\n'); }

    /// What a graph reads.
    struct CommandFile
    {
        QString name;
        QString text;
    };
    const QVector<CommandFile> &commandFiles() const { return m_commandFiles; }

    /// Those that it needs the sounds of, each as the file soundFile().
    const QVector<SoundTrack::Voice> &voices() const { return m_voices; }
    /// The filter that makes the sound for two ears of that for the loudspeakers.
    static QString twoEars() { return QStringLiteral("pan=stereo|FL=0.5*FL+0.5*BL|FR=0.5*FR+0.5*BR"); }
    static QString silenceFile() { return QStringLiteral("silence.wav"); }
    static QString soundFile(int voice) { return QStringLiteral("voice%1.wav").arg(voice); }

private:
    /// A filter of the equalizer that is used on the way. Of two bands with the same one, each has its own.
    struct Filter
    {
        SoundTrack::Band band;
        int occurrence = 0;
    };

    void findFilters();
    void addMix(Listener listener);
    void addVoice(int voice);
    void addSource(int voice, const QString &end);
    QString pieces(int voice, const QString &end);
    QString equalizer(int voice, int loudspeaker, const SoundTrack::State &state) const;
    double gainOf(const Filter &filter, const SoundTrack::State &state, int loudspeaker) const;
    /// Commands that make one state of the other; empty for none.
    QStringList commands(int voice, const SoundTrack::State &before, const SoundTrack::State &after) const;

    const SoundTrack m_track;
    const QVector<SoundTrack::Voice> m_voices;
    QVector<Filter> m_filters;
    bool m_equalizesEach = false; // loudspeaker in its own way
    bool m_hasLoudness = false;
    bool m_hasDelays = false;
    QStringList m_chains;
    QVector<CommandFile> m_commandFiles;
};

#endif
