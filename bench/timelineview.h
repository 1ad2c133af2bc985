#ifndef TIMELINEVIEW_H
#define TIMELINEVIEW_H

#include <QtCore/QtGlobal>

struct Heard;
struct TimelineEvent;

/// Shows a timeline to somebody.
class TimelineView
{
public:
    virtual ~TimelineView() = default;

    /**
     * Something has happened, and is over.
     *
     * @param heard what the driver hears after it
     * @param isNew whether that differs from what was heard before it
     */
    virtual void show(const TimelineEvent &event, const Heard &heard, bool isNew) = 0;

    /// What the driver hears already where the story is begun to be shown, at the time of what is shown first.
    virtual void begin(qint64 time, const Heard &heard);

    /// The scenario has ended.
    virtual void finish(qint64 time);

protected:
    TimelineView() = default;
    Q_DISABLE_COPY(TimelineView)
};

#endif
