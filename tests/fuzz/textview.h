#ifndef TEXTVIEW_H
#define TEXTVIEW_H

#include <heard.h>
#include <timelineevent.h>
#include <timelineview.h>

#include <QtCore/QStringList>

/// All texts that a view can show.
class TextView : public TimelineView
{
public:
    void show(const TimelineEvent &event, const Heard &heard, bool isNew) override
    {
        addTexts(event);
        if (isNew)
            texts.append(heard.toText(m_heard));
        m_heard = heard;
    }

    QStringList texts;

private:
    void addTexts(const TimelineEvent &event)
    {
        texts.append(event.text);
        for (const TimelineEvent &caused : event.caused)
            addTexts(caused);
    }

    Heard m_heard;
};

#endif
