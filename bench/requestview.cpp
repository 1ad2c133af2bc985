#include "requestview.h"

#include "heard.h"
#include "timelineevent.h"
#include "viewtext.h"

#include <algorithm>

using Console::Style;
using Kind = TimelineEvent::Kind;

namespace
{

constexpr int causedColumn = ViewText::column + 4;
constexpr int hangingColumn = causedColumn + 4;

QString causedLine(Style style, const QString &text)
{
    return Console::styled(style, Console::wrapped(text, causedColumn, hangingColumn)) + QLatin1Char('\n');
}

/// A line that stands for itself, or below what caused it.
QString line(Style style, const QString &text, bool isCaused)
{
    if (isCaused)
        return causedLine(style, text);
    return QString(ViewText::column, QLatin1Char(' ')) + Console::styled(style, ViewText::paragraph(text, causedColumn)) + QLatin1Char('\n');
}

} // namespace

RequestView::RequestView(bool startUpShown)
    : m_showStartUp(startUpShown)
{
}

void RequestView::begin(qint64 time, const Heard &heard)
{
    Console::out(ViewText::time(time) + Console::styled(Style::Good, ViewText::paragraph(QStringLiteral("heard: ") + heard.toText(heard))) + QLatin1Char('\n'));
}

void RequestView::show(const TimelineEvent &event, const Heard & /*heard*/, bool /*isNew*/)
{
    Console::out(lines(event, false));
}

QString RequestView::lines(const TimelineEvent &event, bool isCaused) const
{
    switch (event.kind) {
    case Kind::Heading:
        if (isCaused)
            return causedLine(Style::Heading, event.text);
        return QLatin1Char('\n') + ViewText::time(event.time) + Console::styled(Style::Heading, ViewText::paragraph(event.text)) + QLatin1Char('\n');
    case Kind::Request:
        return requestLines(event, isCaused);
    case Kind::Timer:
        return ViewText::time(event.time) + ViewText::paragraph(ViewText::timer(event.text)) + QLatin1Char('\n') + causedLines(event);
    case Kind::Note:
    case Kind::Call:
        return line(Style::Plain, event.text, isCaused);
    case Kind::Status:
        return line(Style::Plain, QStringLiteral("status becomes ") + event.text, isCaused);
    case Kind::Check:
        return event.check.passed ? line(Style::Good, QStringLiteral("ok: ") + event.text, isCaused)
                                  : line(Style::Bad, ViewText::failure(event.check), isCaused);
    case Kind::Log:
        return line(Style::Faint, QStringLiteral("log: ") + event.text, isCaused);
    }
    return {};
}

QString RequestView::requestLines(const TimelineEvent &event, bool isCaused) const
{
    const QString text = event.result.isEmpty() ? event.text : event.text + QStringLiteral(" = ") + event.result;
    const int column = isCaused ? causedColumn : ViewText::column;
    const QString shown = Console::styled(Style::Request, Console::wrapped(text, column, hangingColumn).mid(column)) + QLatin1Char('\n');
    return (isCaused ? QString(column, QLatin1Char(' ')) : ViewText::time(event.time)) + shown + causedLines(event);
}

QString RequestView::causedLines(const TimelineEvent &event) const
{
    const auto isLeftOut = [this](const TimelineEvent &caused) { return caused.kind == Kind::Call && caused.isStartUp && !m_showStartUp; };
    QString text;
    const auto leftOut = std::count_if(event.caused.cbegin(), event.caused.cend(), isLeftOut);
    if (leftOut > 0)
        text += causedLine(Style::Faint, QStringLiteral("starts up the audio with %1 platform calls, which -vv shows").arg(leftOut));
    for (const TimelineEvent &caused : event.caused) {
        if (!isLeftOut(caused))
            text += lines(caused, true);
    }
    return text;
}
