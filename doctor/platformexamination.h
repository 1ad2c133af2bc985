#ifndef PLATFORMEXAMINATION_H
#define PLATFORMEXAMINATION_H

#include "finding.h"

/**
 * Which platform is linked, and whether it answers each call that changes nothing.
 *
 * The calls are made in a process of their own, which is ended when one of them takes longer than @p patienceMs: what hangs or crashes there
 * is a finding. Call it before the process has another thread.
 */
Findings examinePlatform(int patienceMs);

#endif
