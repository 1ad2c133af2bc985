#ifndef REGISTRATION_H
#define REGISTRATION_H

#include "workload.h"

/// Adds NAME/work and NAME/floor to what is timed, each with its number of allocations. Between two looks at the clock lie @p rounds.
void add(const Workload &workload, int rounds);

#endif
