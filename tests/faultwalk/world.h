#ifndef WORLD_H
#define WORLD_H

#include "platformrun.h"
#include "walkedfault.h"
#include "walkedoperation.h"

#include <logrecorder.h>
#include <platform.h>
#include <virtualclock.h>

#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QStringList>

#include <memory>

/**
 * A unit of its own for one walked call: a platform as new, an empty flash, a facade as new and, where it takes one, a manager.
 *
 * One at a time, since the facade is one of a process.
 */
class World
{
public:
    /// @param missing kind of the kept object that the facade is made without, empty for none
    World(Has has, const Situation &situation, const QString &missing = QString());
    ~World();

    /// Calls, and lets time pass until no timer runs.
    PlatformRun run(const WalkedOperation &operation);

    /// Ends the unit; tells what the books then still have. Nothing is left for the next world.
    QStringList end();

    Unit &unit() { return m_unit; }

    /// Starts the manager, or starts it anew.
    void startManager();
    /// The process's own manager, which lives on.
    void startInstance();
    void startFacade();
    void endManager();

private:
    Q_DISABLE_COPY(World)

    void note();
    /// What has been made since the world began and still is there.
    QStringList living() const;
    void letTimersRun();

    simulator::Platform *const m_platform = simulator::Platform::instance();
    simulator::VirtualClock *const m_clock = simulator::VirtualClock::installed();
    std::unique_ptr<ZelAudioManager> m_manager;
    std::unique_ptr<LogRecorder> m_log;
    QStringList m_foreign; ///< what another world left behind: its fault, not this one's
    QObject m_context; ///< of the connections
    Unit m_unit;
    PlatformRun m_current;
};

/// What is seen of one case.
struct Observation
{
    PlatformRun first; ///< with the fault
    PlatformRun next; ///< the same call again, without it
    QStringList unmet; ///< faults that no call met
    QStringList leftovers; ///< in the books when all is over
};

Observation observe(const WalkedOperation &operation, const Situation &situation, const WalkedFault &fault);
/// The same in a process of its own, for what happens once in a process.
Observation observeApart(const WalkedOperation &operation, const Situation &situation, const WalkedFault &fault);

#endif
