#ifndef LOUDNESSREPORT_H
#define LOUDNESSREPORT_H

#include "filtergraph.h"
#include "loudness.h"
#include "soundtrack.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

class Rendering;

/// How loud a drive is at two ears: by its sections, and each prompt and call over what else sounds.
class LoudnessReport
{
public:
    /// LU that a prompt or a call stands above the rest so that it is understood, and startles nobody.
    static constexpr double leastAbove = 6;
    static constexpr double mostAbove = 12;

    LoudnessReport(const SoundTrack &track, Rendering &rendering);

    /**
     * Measures all of it.
     *
     * @param loudspeakers the sound as it was written for the loudspeakers
     * @return what is the matter
     */
    QString measure(const QString &loudspeakers);

    QString toText() const;
    QByteArray toJson() const;

    /// Samples of a WAV file of 24 bits that are at the end of their range.
    static qint64 clippedSamples(const QString &file, QString &problem);

private:
    struct Section
    {
        SoundTrack::Span span;
        QString heading;
        Loudness loudness;
    };

    struct Foreground
    {
        SoundTrack::Voice voice;
        SoundTrack::Span span;
        double above = 0; ///< LU; not finite where it sounds alone, or is silent
        QStringList over; ///< what else sounds
        Loudness loudness;
    };

    Loudness measureSpan(const SoundTrack::Span &span, QString &problem) const;
    QString measureSections();
    QString measureForegrounds();
    QString measureForeground(Foreground &foreground) const;
    static QString verdictOf(const Foreground &foreground);
    QString toText(const Foreground &foreground) const;

    const SoundTrack &m_track;
    Rendering &m_rendering;
    QString m_file;
    Loudness m_whole;
    QVector<Section> m_sections;
    QVector<Foreground> m_foregrounds;
    qint64 m_clipped = 0;
};

#endif
