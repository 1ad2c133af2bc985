#ifndef SETTINGSWORKLOADS_H
#define SETTINGSWORKLOADS_H

#include "workload.h"

/// What reads and writes the settings file. Their time is the file system's: tools/with-flash --dir puts the file on another one.
const Workloads &settingsWorkloads();

#endif
