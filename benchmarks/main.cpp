// Each workload beside its floor, on a platform that does nothing of its own.

#include "registration.h"
#include "settingsworkloads.h"
#include "workloads.h"

#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    constexpr int manyRounds = 100;
    const Workloads workloads = allWorkloads();
    for (const Workload &workload : workloads)
        add(workload, manyRounds);
    for (const Workload &workload : settingsWorkloads())
        add(workload, 1);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
