#ifndef WORKLOADS_H
#define WORKLOADS_H

#include "workload.h"

const Workloads &volumeWorkloads();
const Workloads &equalizerWorkloads();
const Workloads &routingWorkloads();
const Workloads &policyWorkloads();
const Workloads &focusWorkloads();
const Workloads &loggingWorkloads();

/// All of them. The program needs a QCoreApplication, for the timers, and a flash of its own (tools/with-flash).
Workloads allWorkloads();

/// Switches the log as the workload wants it, with a handler that drops each line, and prepares the workload.
void setUp(const Workload &workload);

#endif
