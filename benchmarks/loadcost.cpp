// What loading a library costs: faults of pages, kB that are resident and kB that are the process's own, in one line.
//
//     qzaudio-load-cost LIBRARY [NEEDED_BY_IT...]
//
// Qt, which the program uses itself, and what is named behind the library are there already.

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtDBus/QDBusConnection>

#include <cstdio>

#include <dlfcn.h>
#include <sys/resource.h>

namespace
{

struct Cost
{
    long faults = 0;
    long resident = 0;
    long dirty = 0;
};

Cost costSoFar()
{
    Cost cost;
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    cost.faults = usage.ru_minflt;
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    file.open(QFile::ReadOnly);
    const QList<QByteArray> rows = file.readAll().split('\n');
    for (const QByteArray &row : rows) {
        const long value = row.mid(row.indexOf(':') + 1).simplified().split(' ').first().toLong();
        if (row.startsWith("Rss:"))
            cost.resident = value;
        if (row.startsWith("Private_Dirty:"))
            cost.dirty = value;
    }
    return cost;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QDBusConnection unused(QStringLiteral("unused"));
    if (argc < 2) {
        std::fputs("Usage: qzaudio-load-cost LIBRARY [NEEDED_BY_IT...]\n", stderr);
        return 2;
    }
    for (int i = argc - 1; i > 1; --i) {
        if (!::dlopen(argv[i], RTLD_NOW | RTLD_GLOBAL)) {
            std::fprintf(stderr, "%s\n", ::dlerror());
            return 1;
        }
    }
    costSoFar(); // what looking costs the first time
    const Cost before = costSoFar();
    if (!::dlopen(argv[1], RTLD_NOW | RTLD_GLOBAL)) {
        std::fprintf(stderr, "%s\n", ::dlerror());
        return 1;
    }
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    const Cost after = costSoFar();
    std::printf("%ld %ld %ld\n", usage.ru_minflt - before.faults, after.resident - before.resident, after.dirty - before.dirty);
    return 0;
}
