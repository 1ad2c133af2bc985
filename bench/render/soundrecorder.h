#ifndef SOUNDRECORDER_H
#define SOUNDRECORDER_H

#include "soundtrack.h"

#include <QtCore/QFile>
#include <QtCore/QObject>
#include <QtCore/QString>

class Timeline;
struct TimelineEvent;

/**
 * Records what a drive sounds like while it is played on the simulated platform: in memory, or to a file as lines of SoundTrack.
 *
 * How loud a source is, the chip says. What sounds is: what is active on the tracks that reach loudspeakers; over media also the source
 * that the policy's status names; and between a duck and its end the prompt that asked for it, on the alternative track, or the beeps of
 * reverse gear.
 */
class SoundRecorder : public QObject
{
    Q_OBJECT

public:
    /// The beeps of reverse gear, as a source.
    static QString reverseGear() { return QStringLiteral("reverse gear"); }

    /// Of what this timeline tells, from now on.
    explicit SoundRecorder(const Timeline &followed);

    /// To a file instead of memory; replaces what was there. @return what is the matter; empty when it is open
    QString writeTo(const QString &file);

    /// What was recorded in memory.
    SoundTrack soFar() const;

private:
    Q_DISABLE_COPY(SoundRecorder)

    void add(const TimelineEvent &event);
    void finish(qint64 time);
    void follow(const TimelineEvent &event);
    void followRequest(const QString &text);
    void setStatus(const QString &name);
    void chipChanged();
    void chipWasReset();
    void look();
    SoundTrack::State state() const;
    void addVoice(SoundTrack::State &state, const QString &track, const QString &source) const;
    void addBands(SoundTrack::State &state) const;
    void keep(const SoundTrack::State &state);
    void write(const QJsonObject &line);

    const Timeline &m_timeline;
    QFile m_file;
    SoundTrack m_track; // where there is no file
    SoundTrack::State m_last;
    QString m_prompt; // the source that a duck is for; empty for none
    int m_status = 0; // the policy's
    bool m_isOff = false;
};

#endif
