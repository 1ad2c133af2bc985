#include "registration.h"

#include "workloads.h"

#include <allocations.h>

#include <benchmark/benchmark.h>

#include <string>

namespace
{

void addPart(const Workload &workload, const char *part, void (*work)(int), int rounds)
{
    const std::string name = std::string(workload.name) + '/' + part;
    const auto run = [workload, work, rounds](benchmark::State &state) {
        setUp(workload);
        work(1); // what is kept for good is made now
        const int before = allocationCount();
        while (state.KeepRunningBatch(rounds))
            work(rounds);
        state.counters["allocations"] = static_cast<double>(allocationCount() - before) / static_cast<double>(state.iterations());
    };
    benchmark::RegisterBenchmark(name.c_str(), run);
}

} // namespace

void add(const Workload &workload, int rounds)
{
    addPart(workload, "work", workload.work, rounds);
    if (workload.floor)
        addPart(workload, "floor", workload.floor, rounds);
}
