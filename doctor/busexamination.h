#ifndef BUSEXAMINATION_H
#define BUSEXAMINATION_H

#include "finding.h"

/**
 * Whether audio focus can be asked for over the session's bus and the system's: is there a bus, has somebody the service's name or may get it, can
 * the bus start it, and does it answer. Starts nothing.
 *
 * @param patienceMs how long a bus, and the service, may take for an answer
 */
Findings examineBuses(int patienceMs);

#endif
