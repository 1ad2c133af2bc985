#ifndef SETTINGSEXAMINATION_H
#define SETTINGSEXAMINATION_H

#include "finding.h"

/**
 * The settings file and what lies beside it: who holds the lock, and what dead writers left. Changes nothing, and takes no lock.
 *
 * @param patienceMs how long reading the file may take
 */
Findings examineSettings(int patienceMs);

#endif
