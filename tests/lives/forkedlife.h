#ifndef FORKEDLIFE_H
#define FORKEDLIFE_H

#include "operations.h"

/**
 * A life in a process of its own, on an empty flash: nothing of the one before is left, and what kills the process is told, too.
 *
 * The process is a copy of this one, which must not have used the library or the platform.
 */
class ForkedLife
{
public:
    explicit ForkedLife(const std::vector<lives::Operation> &life);

    /// Empty where all is well.
    QString problem() const { return m_problem; }
    /// That were lived; the last one showed the problem.
    int operations() const { return m_operations; }

private:
    int m_operations = 0;
    QString m_problem;
};

#endif
