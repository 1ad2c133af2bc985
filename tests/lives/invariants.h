#ifndef INVARIANTS_H
#define INVARIANTS_H

#include "operations.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

namespace lives
{

/**
 * Watches a life for what has to hold at each moment, whatever happens.
 *
 * Where behaviour that is meant breaks one of these, that stands in the table of exceptions, and nowhere else.
 */
class Watch
{
public:
    /// Before each operation.
    void before(const LivedUnit &unit);
    /// After it. Throws a Discrepancy with the invariant's name where one does not hold.
    void after(Role role, const LivedUnit &unit, UnitModel &model);

    /// What the invariants and their exceptions look at.
    struct Moment
    {
        Role role;
        const LivedUnit &unit;
        UnitModel &model;
        const Watch &watch;
    };

    /// The volume on the main track that a source has of its own, and what became of it.
    struct Source
    {
        int own = -1; ///< as set last by a user, an application or a start-up
        bool isPastPolicy = false; ///< an application set it without the manager
        bool isRefused = false; ///< the platform did not take a volume since
        int loweredBy = 0; ///< the status that put another volume in its place, 0 for none
    };

    bool wasOn = false;
    std::array<int, 6> volumesBefore = {};
    QHash<QString, Source> sources; ///< by the platform's name
    QString restored; ///< the source that a restore status of this operation has given its volume back, null for none
    int restoreStatus = 0;
    bool isDuckingRefused = false; ///< the platform did not duck or mute when it was told to
    bool isDuckingPastPolicy = false;
    bool isForgotten = false; ///< the platform has lost its power, and all it was told
    QStringList leftovers; ///< of processes that were killed
    bool areSettingsToBeRead = false;

private:
    void noteVolumes(const Moment &moment);
    void noteDucking(const Moment &moment);
    void noteSettings(const Moment &moment);

    QByteArray m_stamp;
    int m_revision = -1;
};

} // namespace lives

#endif
