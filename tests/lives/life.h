#ifndef LIFE_H
#define LIFE_H

#include "invariants.h"
#include "operations.h"

#include <optional>

namespace lives
{

/**
 * A unit from the factory on, operation by operation beside its model.
 *
 * Make one in a process that has used nothing of the library yet, with a virtual clock and an empty flash.
 */
class Life
{
public:
    Life();

    /// Throws a Discrepancy where the unit does not do what the model tells, or an invariant does not hold.
    void live(const Operation &operation);
    /// What can only be said, or is too slow to be said each time.
    void end();

private:
    Q_DISABLE_COPY(Life)

    void compareAnswers(const QVariantList &given, const QVariantList &told) const;
    void compareNews();
    void compareState();
    void compareVolumes() const;
    void rememberVolumes(Role role);

    LivedUnit m_unit;
    UnitModel m_model;
    QMap<QPair<QString, QString>, int> m_trackVolumes; // that the chip should hold
    Watch m_watch;
};

/// What is wrong with a life, told; nothing where all is well. @p livedUntil receives the number of the operation that showed it
std::optional<QString> problemOf(const std::vector<Operation> &life, int &livedUntil);

} // namespace lives

#endif
