#include "focusview.h"

#include "console.h"
#include "timelineevent.h"
#include "viewtext.h"

void FocusView::show(const TimelineEvent &event, const Heard & /*heard*/, bool /*isNew*/)
{
    const bool isHeading = event.kind == TimelineEvent::Kind::Heading;
    const QString before = isHeading ? QStringLiteral("\n") : QString();
    const QString text = ViewText::paragraph(event.text);
    Console::out(before + ViewText::time(event.time) + (isHeading ? Console::styled(Console::Style::Heading, text) : text) + QLatin1Char('\n'));
}
