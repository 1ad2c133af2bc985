#ifndef WALKEDFAULT_H
#define WALKEDFAULT_H

#include "platformrun.h"

#include <objectkind.h>

#include <faults.h>

/// One thing that goes wrong in a run, at one of the calls that the run makes when nothing does.
struct WalkedFault
{
    enum Way {
        None,
        RefusedOnce,
        RefusedFromThenOn,
        RefusedAfterWriting,
        NullOnce, ///< the factory gives no object
        NullFromThenOn,
        KeptNull, ///< the facade was made without the object that it keeps
        Slow, ///< by so little that timers keep their order
        VerySlow, ///< each call takes longer than most timers
    };

    Way way = None;
    QString call; ///< "Volume.setTrackVolume", "Volume.create"; a kind for KeptNull
    int occurrence = 0; ///< which of the calls of this name, from 1
    QString text; ///< of the call, for people

    /// All that the run can meet.
    static QVector<WalkedFault> all(const PlatformRun &run);

    void order(simulator::Faults &faults) const;
    /// ms
    int callDuration() const;
    /// Whether the @p n th call of this name, from 1, meets it.
    bool hits(const QString &name, int n) const;
    /// What the platform then answers.
    int code(int n) const;

    QString describe() const;
};

/// How many faults a run can meet, counted from the journal's text alone.
int countFaults(const QStringList &journal);

#endif
