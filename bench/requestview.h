#ifndef REQUESTVIEW_H
#define REQUESTVIEW_H

#include "console.h"
#include "timelineview.h"

#include <QtCore/QString>

/**
 * The timeline in all detail, for people to read from top to bottom: each request with its time, indented under it the platform calls
 * that it caused, and what timers caused under headings of their own.
 */
class RequestView : public TimelineView
{
public:
    /// @param startUpShown whether the calls of the unit's start-up show one by one
    explicit RequestView(bool startUpShown);

    void begin(qint64 time, const Heard &heard) override;
    void show(const TimelineEvent &event, const Heard &heard, bool isNew) override;

private:
    QString lines(const TimelineEvent &event, bool isCaused) const;
    QString requestLines(const TimelineEvent &event, bool isCaused) const;
    QString causedLines(const TimelineEvent &event) const;

    bool m_showStartUp;
};

#endif
