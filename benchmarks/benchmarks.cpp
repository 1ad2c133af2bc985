// Each workload beside its floor, on a platform that does nothing of its own.

#include "workloads.h"

#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

#include <string>

namespace
{

void add(const Workload &workload, const char *part, void (*work)(int))
{
    const std::string name = std::string(workload.name) + '/' + part;
    benchmark::RegisterBenchmark(name.c_str(), [workload, work](benchmark::State &state) {
        setUp(workload);
        constexpr int rounds = 10;
        while (state.KeepRunningBatch(rounds))
            work(rounds);
    });
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    const Workloads workloads = allWorkloads();
    for (const Workload &workload : workloads) {
        add(workload, "work", workload.work);
        if (workload.floor)
            add(workload, "floor", workload.floor);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
