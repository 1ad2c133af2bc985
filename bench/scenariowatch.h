#ifndef SCENARIOWATCH_H
#define SCENARIOWATCH_H

#include "scenariolimits.h"
#include "threadhold.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

class QJSEngine;

/**
 * Ends a scenario that goes beyond its limits, and tells where it was.
 *
 * The engine is asked where it was by the watch's own thread, while the scenario's thread is held. The script then ends at its
 * next loop or call; its catch and finally do not run.
 *
 * To be made in the thread that runs the scenario.
 */
class ScenarioWatch
{
public:
    /// Called on the watch's thread, with the scenario's thread held, when the script could not be ended. Must not return.
    using Stuck = std::function<void(const ScenarioWatch &watch)>;

    ScenarioWatch(QJSEngine &watchedEngine, const ScenarioLimits &watchedLimits, Stuck whenStuck);
    ~ScenarioWatch();

    /// Where the engine is right now, innermost first; empty where it cannot tell. Its thread must stand still, or be the caller's.
    static QVector<ScenarioResult::Frame> place(QJSEngine &engine);

    /// From now on no limit is looked at; what was found can be read.
    void stop();

    /// What limit was reached; empty for none.
    QString error() const { return m_reached; }
    /// Where the scenario was then, innermost first; empty where the engine cannot tell.
    QVector<ScenarioResult::Frame> stack() const { return m_frames; }

private:
    Q_DISABLE_COPY(ScenarioWatch)

    void watch();
    QString excess() const;
    void end();
    bool endsInTime();
    bool waitForStop(std::chrono::milliseconds time);

    QJSEngine &m_engine;
    const qint64 m_milliseconds;
    const qint64 m_bytes;
    const Stuck m_stuck;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    ThreadHold m_hold;

    std::mutex m_mutex;
    std::condition_variable m_stopping;
    bool m_stopped = false; // guarded by the mutex
    QString m_reached; // written by the thread, read by others after its end
    QVector<ScenarioResult::Frame> m_frames; // so is this
    std::thread m_thread;
};

#endif
