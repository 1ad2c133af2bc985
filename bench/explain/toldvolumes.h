#ifndef TOLDVOLUMES_H
#define TOLDVOLUMES_H

#include "heard.h"

#include <QtCore/QPair>
#include <QtCore/QSet>
#include <QtCore/QString>

struct TimelineEvent;

/// The volumes that a log has told so far. One that begins while the audio is on does not tell them all, and the chip takes the others for 0.
class ToldVolumes
{
public:
    /// An event of the timeline, with what it caused.
    void add(const TimelineEvent &event);
    /// The same with the level of each sound unknown whose volume was not told.
    Heard withoutUntold(Heard heard) const;

private:
    bool m_areAllTold = false;
    bool m_isAlternativeTrackTold = false;
    QSet<QPair<QString, QString>> m_told; // tracks and sources
};

#endif
