#ifndef FOCUSVIEW_H
#define FOCUSVIEW_H

#include "timelineview.h"

/// What happened to focus, each with its time: beside it neither requests nor sounds are shown.
class FocusView : public TimelineView
{
public:
    void show(const TimelineEvent &event, const Heard &heard, bool isNew) override;
};

#endif
