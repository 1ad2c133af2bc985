#ifndef DRIVEVIEW_H
#define DRIVEVIEW_H

#include "heard.h"
#include "timelineview.h"

#include <QtCore/QString>

/**
 * A drive as the driver hears it: each situation, what is heard in it and how loud, and what changed it. Of expectations only those
 * that failed show.
 */
class DriveView : public TimelineView
{
public:
    void begin(qint64 time, const Heard &heard) override;
    void show(const TimelineEvent &event, const Heard &heard, bool isNew) override;
    void finish(qint64 time) override;

private:
    /// A situation in which nothing changed is heard as the one before it.
    void endSituation(qint64 time);
    void showInside(const TimelineEvent &event);
    void showLine(qint64 time, const QString &lines);

    Heard m_lastHeard;
    qint64 m_shownTime = -1; // the time that stands above, -1 for none
    bool m_isUntold = false; // nothing was said yet of what is heard in this situation
};

#endif
