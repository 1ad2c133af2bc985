#ifndef TIMELINE_H
#define TIMELINE_H

#include "heard.h"
#include "timelineevent.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

class TimelineView;

/**
 * What happens while a scenario plays, in order: each request with the platform calls that it caused, what timers caused, and
 * what the script says, is told and expects. Each of these goes to the view as soon as it is over.
 *
 * Platform calls come from the simulated platform's journal. Objects' creations and releases are left out, except a creation
 * that failed.
 */
class Timeline : public QObject
{
    Q_OBJECT

public:
    /// @param shownBy outlives the timeline; none: nothing is shown
    explicit Timeline(TimelineView *shownBy = nullptr, QObject *parent = nullptr);
    ~Timeline() override;

    /// ms on the scenario's clock, which starts with the timeline.
    qint64 now() const;

    /// What the script says to its reader.
    void heading(const QString &text);
    /// A request begins: what comes until its end is caused by it. Requests may be nested.
    void beginRequest(const QString &request);
    /// @param result empty where the request has none
    void endRequest(const QString &result);
    /// What the script was told, outside any request of its own.
    void note(const QString &text);
    void check(const ScenarioResult::Check &check);
    /// A log line of the library.
    void log(const QString &line);
    /// A timer of the unit runs out: what comes until its end is caused by it.
    void beginTimer(const QString &purpose);
    void endTimer();
    /// The policy's status became another one without a request.
    void statusBecomes(int status);
    /// The unit starts up from now on, or has started.
    void setStartingUp(bool starting);
    /// The request or the timer that causes what happens now; empty for nothing.
    QString cause() const;
    /// Shows the requests in progress, when the process is about to stop inside one or the scenario has ended.
    void showUnfinished();

Q_SIGNALS:
    void checked(const ScenarioResult::Check &check);
    /// Something is over, as a view is shown it.
    void happened(const TimelineEvent &event);
    /// Nothing happens any more.
    void finished(qint64 time);

private:
    Q_DISABLE_COPY(Timeline)

    void addCall(const simulator::JournalEntry &entry);
    /// What the script or its program does: caused by nothing but the request in progress.
    void add(TimelineEvent event);
    /// What the unit does: caused by the request in progress, or by a timer.
    void addCaused(TimelineEvent event);
    void show(const TimelineEvent &event);

    TimelineView *m_view;
    qint64 m_start;
    QVector<TimelineEvent> m_requests; // those in progress, the innermost last
    std::optional<TimelineEvent> m_runningTimer; // what a timer has caused so far
    Heard m_lastHeard;
    bool m_isStartingUp = false;
};

#endif
