#ifndef LOGEXAMINATION_H
#define LOGEXAMINATION_H

#include "finding.h"

/// Which of the library's log lines are written, as this process's environment has it.
Findings examineLog();

#endif
