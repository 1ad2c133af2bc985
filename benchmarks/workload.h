#ifndef WORKLOAD_H
#define WORKLOAD_H

#include <vector>

/**
 * A piece of work that is timed, and whose instructions and allocations are counted.
 *
 * It stands beside its floor: the least that the same work can cost on the same platform, in the same program. What counts is the ratio.
 */
struct Workload
{
    const char *name; ///< AREA/OPERATION, such as "volume/setStreamVolume"
    bool isLogged; ///< whether log lines are made, and dropped by the handler
    void (*prepare)(); ///< once, before the others; may be null
    void (*work)(int rounds);
    void (*floor)(int rounds); ///< null where the floor is nothing
};

using Workloads = std::vector<Workload>;

#endif
