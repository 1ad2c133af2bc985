#ifndef FLASHEXAMINATION_H
#define FLASHEXAMINATION_H

#include "finding.h"

/**
 * Whether the settings' folder is there, may be written to by this user, and keeps what is written.
 *
 * @param mayWrite also write a file there as a save does, and remove it: the one way to know whether fsync() comes back
 * @param patienceMs how long that may take
 */
Findings examineFlash(bool mayWrite, int patienceMs);

#endif
