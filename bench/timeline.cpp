#include "timeline.h"

#include "calltext.h"
#include "policytext.h"
#include "timelineview.h"

#include "platform.h"

using Kind = TimelineEvent::Kind;

namespace
{

TimelineEvent eventOf(Kind kind, const QString &text)
{
    TimelineEvent event;
    event.kind = kind;
    event.text = text;
    return event;
}

} // namespace

void TimelineView::begin(qint64 /*time*/, const Heard & /*heard*/)
{
}

void TimelineView::finish(qint64 /*time*/)
{
}

Timeline::Timeline(TimelineView *shownBy, QObject *parent)
    : QObject(parent)
    , m_view(shownBy)
    , m_start(simulator::Platform::instance()->now())
    , m_lastHeard(Heard::now())
{
    connect(simulator::Platform::instance()->journal(), &simulator::Journal::appended, this, &Timeline::addCall);
}

Timeline::~Timeline() = default;

qint64 Timeline::now() const
{
    return simulator::Platform::instance()->now() - m_start;
}

void Timeline::heading(const QString &text)
{
    add(eventOf(Kind::Heading, text));
}

void Timeline::beginRequest(const QString &request)
{
    endTimer();
    TimelineEvent event = eventOf(Kind::Request, request);
    event.time = now();
    m_requests.append(event);
}

void Timeline::endRequest(const QString &result)
{
    TimelineEvent event = m_requests.takeLast();
    event.result = result;
    if (m_requests.isEmpty())
        show(event);
    else
        m_requests.last().caused.append(event);
}

void Timeline::note(const QString &text)
{
    add(eventOf(Kind::Note, text));
}

void Timeline::check(const ScenarioResult::Check &check)
{
    TimelineEvent event = eventOf(Kind::Check, check.text);
    event.check = check;
    // Told before it shows: whoever sees it may stop the process, and it counts all the same.
    Q_EMIT checked(check);
    add(event);
}

void Timeline::log(const QString &line)
{
    addCaused(eventOf(Kind::Log, line));
}

void Timeline::beginTimer(const QString &purpose)
{
    endTimer();
    TimelineEvent event = eventOf(Kind::Timer, purpose);
    event.time = now();
    m_runningTimer = event;
}

void Timeline::statusBecomes(int status)
{
    TimelineEvent event = eventOf(Kind::Status, statusText(status));
    const QString meaning = statusMeaning(status);
    if (!meaning.isEmpty())
        event.text += QStringLiteral(": ") + meaning;
    addCaused(event);
}

QString Timeline::cause() const
{
    if (!m_requests.isEmpty())
        return m_requests.last().text;
    return m_runningTimer ? m_runningTimer->text : QString();
}

void Timeline::setStartingUp(bool starting)
{
    m_isStartingUp = starting;
    if (starting && !m_requests.isEmpty())
        m_requests.last().isStartUp = true;
}

void Timeline::addCall(const simulator::JournalEntry &entry)
{
    if (entry.isDestroy() || (entry.isCreate() && entry.number > 0))
        return;
    TimelineEvent event = eventOf(Kind::Call, callText(entry));
    event.call = entry;
    event.isStartUp = m_isStartingUp;
    addCaused(event);
}

void Timeline::add(TimelineEvent event)
{
    event.time = now();
    if (!m_requests.isEmpty()) {
        m_requests.last().caused.append(event);
        return;
    }
    endTimer();
    show(event);
}

void Timeline::addCaused(TimelineEvent event)
{
    event.time = now();
    if (!m_requests.isEmpty()) {
        m_requests.last().caused.append(event);
        return;
    }
    if (!m_runningTimer) {
        // By a timer that nobody knows, whose end is therefore not told.
        beginTimer({});
        QMetaObject::invokeMethod(this, &Timeline::endTimer, Qt::QueuedConnection);
    }
    m_runningTimer->caused.append(event);
}

void Timeline::endTimer()
{
    if (!m_runningTimer)
        return;
    const TimelineEvent event = *m_runningTimer;
    m_runningTimer.reset();
    // A timer may run out for nothing.
    if (!event.caused.isEmpty())
        show(event);
}

void Timeline::show(const TimelineEvent &event)
{
    Q_EMIT happened(event);
    if (!m_view)
        return;
    const Heard heard = Heard::now();
    const bool isNew = !(heard == m_lastHeard);
    m_view->show(event, heard, isNew);
    m_lastHeard = heard;
}

void Timeline::showUnfinished()
{
    while (!m_requests.isEmpty())
        endRequest(QStringLiteral("(did not return)"));
    endTimer();
    Q_EMIT finished(now());
    if (m_view)
        m_view->finish(now());
}
