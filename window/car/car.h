#ifndef CAR_H
#define CAR_H

#include "carnews.h"
#include "carsnapshot.h"
#include "logfile.h"
#include "mailbox.h"
#include "render/soundrecorder.h"
#include "scenarioengine.h"
#include "timeline.h"
#include "timelinelog.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>
#include <QtCore/QVariantMap>

#include <atomic>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>

/**
 * The simulated car of a window: its head unit, its time, and what is done to it.
 *
 * Lives on a thread with a VirtualClock, whose time it lets pass as fast as the window wants. A scenario that drives it waits in here, so
 * that it can be paused and stopped anywhere.
 */
class Car
{
public:
    using Teller = std::function<void(const QVariantMap &message)>;

    struct Files
    {
        QString log; ///< gets the library's log
        QString sound; ///< gets what the drive sounds like
        bool isMeasured = false; ///< whether scripts measure that, which takes memory for each change
    };

    /// @param tells is called on the thread of the car
    Car(Mailbox &requests, const Files &files, const Teller &tells);
    ~Car();

    /// Does what it is asked for until the mailbox is closed.
    void run();
    /// Ends the scripts of requests up to this number, one that runs now among them. May be called from any thread.
    void interrupt(quint64 upTo);

private:
    Q_DISABLE_COPY(Car)

    struct Step
    {
        qint64 time;
        QString line;
    };

    qint64 now() const { return m_timeline.now(); }
    /// The time until which the car may drive now.
    qint64 reachable() const;
    void setSpeed(double speed);
    void takeRequests(std::chrono::milliseconds patience);
    void doRequest(const QVariantMap &request);

    void start(const QVariantMap &request);
    void play(const QVariantMap &request);
    void perform(const QString &line, bool isExpected);
    void redo();
    void driveTo(qint64 time);
    /// Lets time pass for a script that waits.
    void pass(qint64 milliseconds);
    void arrive();
    bool isInterrupted() const { return m_request <= m_interruptedUpTo; }
    /// Before a script: lets it run, unless that is over already.
    void allowScript();

    void recordStep(qint64 time, const QString &line, const QString &outcome, bool isFailed, bool isExpected);
    void publish(bool isUrgent = false);
    void tellSteps();
    void tellList(const char *what, const char *name, const QVariantList &list);

    Mailbox &m_requests;
    const Teller m_tell;
    Timeline m_timeline;
    LogFile m_log;
    TimelineLog m_logRecorder;
    SoundRecorder m_sound;
    std::optional<SoundRecorder> m_measuredSound;
    ScenarioResult m_result; // of all expectations
    ScenarioEngine m_scripts;
    CarNews m_news;
    CarSnapshot m_snapshot;
    QObject m_ear; // what the timeline's signals are told to

    QVariantList m_steps; // that were done and not told yet
    QElapsedTimer m_stepsSince; // the last of them were told in a portion
    int m_stepsAtOnce = 0; // since then
    std::deque<Step> m_upcoming;
    QString m_scenario; // that drives; empty while driven by hand
    bool m_isFast = false; // on the way to a moment
    qint64 m_fastUntil = -1; // until there time does not count
    bool m_isInLine = false; // a line or scenario runs
    int m_requestsOfLine = 0;

    std::mutex m_interrupting;
    std::atomic<quint64> m_interruptedUpTo{0};
    quint64 m_request = 0; // number of the one that is done now

    double m_speed = 0;
    QElapsedTimer m_real; // since the speed was set
    qint64 m_anchor = 0; // the car's time then
    QElapsedTimer m_published;
    bool m_isChanged = true;
};

#endif
