#include "driveview.h"

#include "console.h"
#include "timelineevent.h"
#include "viewtext.h"

using Console::Style;
using Kind = TimelineEvent::Kind;

namespace
{

/// What happened, as the cause of another sound.
QString causeText(const TimelineEvent &event)
{
    QString text = event.kind == Kind::Timer ? ViewText::timer(event.text) : event.text;
    for (const TimelineEvent &caused : event.caused) {
        if (caused.kind == Kind::Status)
            text += QStringLiteral("; status becomes ") + caused.text;
    }
    return text;
}

/// A text behind a word of its own, which stands in a column.
QString labelled(Style style, QLatin1String label, const QString &text)
{
    constexpr int labelWidth = 7;
    constexpr int textColumn = ViewText::column + labelWidth;
    return QString(label).leftJustified(labelWidth) + Console::styled(style, Console::wrapped(text, textColumn, textColumn).mid(textColumn))
        + QLatin1Char('\n');
}

} // namespace

void DriveView::begin(qint64 time, const Heard &heard)
{
    showLine(time, labelled(Style::Good, QLatin1String("heard"), heard.toText(heard)));
    m_lastHeard = heard;
}

void DriveView::show(const TimelineEvent &event, const Heard &heard, bool isNew)
{
    switch (event.kind) {
    case Kind::Heading:
        endSituation(m_shownTime);
        m_isUntold = true;
        Console::out(QLatin1Char('\n') + ViewText::time(event.time) + Console::styled(Style::Heading, ViewText::paragraph(event.text)) + QLatin1Char('\n'));
        m_shownTime = event.time;
        break;
    case Kind::Note:
        showLine(event.time, ViewText::paragraph(event.text) + QLatin1Char('\n'));
        break;
    case Kind::Check:
        if (!event.check.passed)
            showLine(event.time, Console::styled(Style::Bad, ViewText::paragraph(ViewText::failure(event.check), ViewText::column + 4)) + QLatin1Char('\n'));
        break;
    case Kind::Log:
        showLine(event.time, labelled(Style::Faint, QLatin1String("log"), event.text));
        break;
    case Kind::Request:
    case Kind::Timer:
    case Kind::Call:
    case Kind::Status:
        showInside(event);
        break;
    }
    if (!isNew)
        return;
    showLine(event.time, labelled(Style::Good, QLatin1String("heard"), heard.toText(m_lastHeard)));
    showLine(event.time, labelled(Style::Plain, QLatin1String("why"), causeText(event)));
    m_lastHeard = heard;
    m_isUntold = false;
}

void DriveView::finish(qint64 /*time*/)
{
    endSituation(m_shownTime);
}

void DriveView::endSituation(qint64 time)
{
    if (m_isUntold)
        showLine(time, labelled(Style::Good, QLatin1String("heard"), m_lastHeard.toText(m_lastHeard)));
    m_isUntold = false;
}

/// What a reader must see although it happened inside a request or a timer.
void DriveView::showInside(const TimelineEvent &event)
{
    for (const TimelineEvent &caused : event.caused) {
        if (caused.kind == Kind::Request) {
            showInside(caused);
        } else if (caused.kind == Kind::Note || caused.kind == Kind::Check || caused.kind == Kind::Log || caused.kind == Kind::Heading) {
            show(caused, m_lastHeard, false);
        }
    }
}

void DriveView::showLine(qint64 time, const QString &lines)
{
    const bool isTold = time == m_shownTime;
    Console::out((isTold ? QString(ViewText::column, QLatin1Char(' ')) : ViewText::time(time)) + lines);
    m_shownTime = time;
}
