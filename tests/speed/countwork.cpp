// Does the work that is counted, and shows where each part of it begins and ends to whoever counts: callgrind, strace, or a plugin of the
// emulator. What it counts itself, and prints after each part's title and number of rounds, is what the heap is asked for.
//
// Usage: countwork work                        each piece of work and its floor
//        countwork start|startByHand TITLE     the first start, or its floor, of which a process has one
//        countwork fill                        nothing that counts: makes a settings file with all values

#include "filledstore.h"
#include "settingsworkloads.h"
#include "starts.h"
#include "workloads.h"

#include <allocations.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLoggingCategory>

#include <cstdio>
#include <string>
#include <unistd.h>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_ZERO_STATS
#define CALLGRIND_DUMP_STATS_AT(title)
#endif

namespace
{

/// No mode of a file: tells the call that is a mark from all others.
constexpr int mark = 0x5ee8;
constexpr const char *endMark = "end";

/// Symbols are bound, caches filled, and blocks of memory at hand before anything counts.
constexpr int roundsBefore = 5;
constexpr int rounds = 100;
constexpr int roundsOfSettings = 10; ///< they take long, in an emulator or under callgrind
constexpr int mostForeignKeys = 100;

template<typename Work>
void count(const std::string &title, int number, const Work &work)
{
    ::access(title.c_str(), mark);
    const int allocationsBefore = allocationCount();
    CALLGRIND_ZERO_STATS;
    work(number);
    CALLGRIND_DUMP_STATS_AT(title.c_str());
    const int allocations = allocationCount() - allocationsBefore;
    ::access(endMark, mark);
    std::printf("%s\t%d\t%d\n", title.c_str(), number, allocations);
}

void count(const Workload &workload, int number)
{
    setUp(workload);
    for (const auto part : {workload.work, workload.floor})
        if (part)
            part(roundsBefore);
    const std::string name = workload.name;
    count(name + " work", number, workload.work);
    if (workload.floor)
        count(name + " floor", number, workload.floor);
}

/// Whether it is a save among so many foreign keys that it takes all the time there is.
bool isLong(const Workload &workload)
{
    const std::string name = workload.name;
    const std::string save = "settings/save/";
    return name.compare(0, save.size(), save) == 0 && std::stoi(name.substr(save.size())) > mostForeignKeys;
}

void countAll()
{
    for (const Workload &workload : allWorkloads())
        count(workload, rounds);
    for (const Workload &workload : settingsWorkloads())
        if (!isLong(workload))
            count(workload, roundsOfSettings);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const std::string what = argc > 1 ? argv[1] : "";
    if (what == "work" && argc == 2) {
        countAll();
    } else if (what == "fill" && argc == 2) {
        filledStore();
    } else if (what == "start" && argc == 3) {
        count(argv[2], 1, [](int) { start(); });
    } else if (what == "startByHand" && argc == 3) {
        count(argv[2], 1, [](int) { startByHand(); });
    } else {
        std::fputs("usage: countwork work|fill, or countwork start|startByHand TITLE\n", stderr);
        return 2;
    }
    return 0;
}
