#ifndef SOUNDRECORDER_H
#define SOUNDRECORDER_H

#include "soundtrack.h"
#include "timelineview.h"

#include <QtCore/QFile>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

/**
 * Records what a drive sounds like while it is played on the simulated platform, as lines of SoundTrack.
 *
 * How loud a source is, the chip says. What sounds is: what is active on the tracks that reach loudspeakers; over media also the source
 * that the policy's status names; and between a duck and its end the prompt that asked for it, on the alternative track, or the beeps of
 * reverse gear. A view that is given is shown everything, too.
 */
class SoundRecorder : public QObject, public TimelineView
{
    Q_OBJECT

public:
    /// The beeps of reverse gear, as a source.
    static QString reverseGear() { return QStringLiteral("reverse gear"); }

    /// @param alsoShownTo null for nobody
    SoundRecorder(const QString &file, std::unique_ptr<TimelineView> alsoShownTo);
    ~SoundRecorder() override;

    /// One that is open, before a view. @param problem receives what is the matter where it is not
    static std::unique_ptr<TimelineView> before(std::unique_ptr<TimelineView> view, const QString &file, QString &problem);

    /// Replaces what was there. @return what is the matter; empty when it is open
    QString open();

    void show(const TimelineEvent &event, const Heard &heard, bool isNew) override;
    void begin(qint64 time, const Heard &heard) override;
    void finish(qint64 time) override;

private:
    Q_DISABLE_COPY(SoundRecorder)

    void follow(const TimelineEvent &event);
    void followRequest(const QString &text);
    void setStatus(const QString &name);
    void chipChanged(const QString &group, const QString &name, const QVariant &value);
    void chipWasReset();
    void look();
    SoundTrack::State state() const;
    void addVoice(SoundTrack::State &state, const QString &track, const QString &source) const;
    void addBands(SoundTrack::State &state) const;
    void write(const QJsonObject &line);
    qint64 now() const;

    QFile m_file;
    const std::unique_ptr<TimelineView> m_view;
    SoundTrack::State m_last;
    const qint64 m_start;
    QString m_prompt; // the source that a duck is for; empty for none
    int m_status = 0; // the policy's
    int m_bandCount = 0; // of the equalizer's record that was set last
    bool m_isOff = false;
};

#endif
