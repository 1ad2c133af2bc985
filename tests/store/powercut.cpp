#include "powercut.h"

#include "tracedprocess.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryFile>

#include <csignal>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

using Stop = TracedProcess::Stop;

/// Those that a file, a folder or a lock may refuse. A process without memory is another matter.
bool mayFail(quint64 systemCall)
{
    switch (systemCall) {
    case SYS_brk:
#if defined(SYS_mmap)
    case SYS_mmap:
#endif
    case SYS_munmap:
    case SYS_mprotect:
    case SYS_madvise:
    case SYS_futex:
    case SYS_gettid:
    case SYS_getpid:
    case SYS_rt_sigaction:
    case SYS_rt_sigprocmask:
    case SYS_rt_sigreturn:
    case SYS_restart_syscall:
    case SYS_clock_nanosleep:
    case SYS_kill:
        return false;
    default:
        return true;
    }
}

/// False for those that only look.
bool mayChangeFiles(const TracedProcess::SystemCall &call)
{
    switch (call.number) {
    case SYS_openat:
        return (call.arguments[2] & (O_ACCMODE | O_CREAT | O_TRUNC)) != O_RDONLY;
    case SYS_access:
    case SYS_close:
    case SYS_flock:
    case SYS_fstat:
    case SYS_getdents64:
    case SYS_lseek:
    case SYS_lstat:
#if defined(SYS_newfstatat)
    case SYS_newfstatat:
#endif
    case SYS_pread64:
    case SYS_read:
    case SYS_stat:
        return false;
    default:
        return mayFail(call.number);
    }
}

powercut::Cut runAndKillAt(int systemCall,
                           TracedProcess &process,
                           const std::function<bool(const TracedProcess::SystemCall &)> &counts,
                           const std::function<void()> &whileStopped)
{
    powercut::Cut cut;
    if (!process.isAlive() || !process.runToOwnStop())
        return cut;
    if (whileStopped)
        whileStopped();
    int count = 0;
    while (count < systemCall && !cut.isWhole) {
        const Stop stop = process.runToNextStop();
        if (stop == Stop::Ended)
            return cut;
        if (stop != Stop::EntersSystemCall)
            continue;
        const TracedProcess::SystemCall call = process.systemCall();
        if (call.number != SYS_kill)
            count += counts(call) ? 1 : 0;
        else if (call.arguments[1] == 0)
            ++cut.steps;
        else
            cut.isWhole = true;
    }
    process.kill();
    cut.systemCalls = count;
    return cut;
}

/// What a descriptor of the traced process is open for.
QString pathOf(const TracedProcess &process, quint64 descriptor)
{
    return QFileInfo(QStringLiteral("/proc/%1/fd/%2").arg(process.id()).arg(descriptor)).symLinkTarget();
}

QString nameAt(const TracedProcess &process, quint64 address)
{
    return QFile::decodeName(process.textAt(address));
}

bool isSame(powercut::Call call, quint64 systemCall)
{
    switch (call) {
    case powercut::Call::Open:
        return systemCall == SYS_openat;
    case powercut::Call::Read:
        return systemCall == SYS_read || systemCall == SYS_pread64;
    case powercut::Call::Write:
        return systemCall == SYS_write;
    case powercut::Call::Status:
#if defined(SYS_newfstatat)
        return systemCall == SYS_newfstatat;
#else
        return systemCall == SYS_fstatat64;
#endif
    case powercut::Call::KernelLock:
        return systemCall == SYS_flock;
    case powercut::Call::Sleep:
        return systemCall == SYS_clock_nanosleep;
    }
    return false;
}

bool isAt(const powercut::Moment &moment, const TracedProcess &process)
{
    const TracedProcess::SystemCall call = process.systemCall();
    if (!isSame(moment.call, call.number))
        return false;
    // Openat() and fstatat() have the name behind the folder.
    const bool isNamed = moment.call == powercut::Call::Open || moment.call == powercut::Call::Status;
    return (isNamed ? nameAt(process, call.arguments[1]) : pathOf(process, call.arguments[0])).startsWith(moment.path);
}

/// "CALL PATH", empty for other system calls.
QString changeOf(const TracedProcess &process)
{
    const TracedProcess::SystemCall call = process.systemCall();
    switch (call.number) {
    case SYS_write:
        return QStringLiteral("write ") + pathOf(process, call.arguments[0]);
    case SYS_fsync:
    case SYS_fdatasync:
        return QStringLiteral("fsync ") + pathOf(process, call.arguments[0]);
#if defined(SYS_rename)
    case SYS_rename:
        return QStringLiteral("rename ") + nameAt(process, call.arguments[0]);
#endif
    case SYS_renameat2:
        return QStringLiteral("rename ") + nameAt(process, call.arguments[1]);
#if defined(SYS_unlink)
    case SYS_unlink:
        return QStringLiteral("unlink ") + nameAt(process, call.arguments[0]);
#endif
    case SYS_unlinkat:
        return QStringLiteral("unlink ") + nameAt(process, call.arguments[1]);
    default:
        return {};
    }
}

/// Stops it at each system call until it stops itself; false when it ended.
bool runToOwnStop(TracedProcess &process, const std::function<void(TracedProcess &)> &atSystemCall)
{
    for (Stop stop = Stop::Other; stop != Stop::Stopped;) {
        stop = process.runToNextStop();
        if (stop == Stop::Ended)
            return false;
        if (stop == Stop::EntersSystemCall)
            atSystemCall(process);
    }
    return true;
}

/// Calls @p atSystemCall between its first and its second stop.
powercut::FaultyRun
runToEnd(const QStringList &commandLine, const std::function<void(TracedProcess &)> &atSystemCall, const std::function<void()> &whileStopped)
{
    powercut::FaultyRun run;
    QTemporaryFile output;
    if (!output.open())
        return run;
    TracedProcess process(commandLine, output.fileName());
    if (!process.isAlive() || !process.runToOwnStop() || !runToOwnStop(process, atSystemCall))
        return run;
    run.isTraced = true;
    whileStopped();
    process.runToEnd();
    run.hasEndedWell = process.exitStatus() == 0;
    run.output = QString::fromUtf8(output.readAll());
    return run;
}

} // namespace

void powercut::stop()
{
    kill(getpid(), SIGSTOP);
}

void powercut::tellStep()
{
    kill(getpid(), 0);
}

int powercut::runAndKillAt(int systemCall, const QStringList &commandLine, const std::function<void()> &whileStopped)
{
    TracedProcess process(commandLine);
    return ::runAndKillAt(
               systemCall, process, [](const TracedProcess::SystemCall &) { return true; }, whileStopped)
        .systemCalls;
}

powercut::Cut powercut::runAndKillAt(int systemCall, Calls calls, const std::function<void()> &work)
{
    TracedProcess process(work);
    const auto counts = [calls](const TracedProcess::SystemCall &call) { return calls == Calls::OfFiles ? mayFail(call.number) : mayChangeFiles(call); };
    return ::runAndKillAt(systemCall, process, counts, {});
}

powercut::FaultyRun powercut::runWithFault(const Fault &fault, const QStringList &commandLine, const std::function<void()> &whileStopped)
{
    int count = 0;
    const auto lookAt = [&](TracedProcess &process) {
        if (!mayFail(process.systemCall().number))
            return;
        ++count;
        if (count == fault.systemCall || (fault.isForEver && count > fault.systemCall))
            process.failSystemCall(fault.error);
    };
    FaultyRun run = runToEnd(commandLine, lookAt, whileStopped);
    if (run.isTraced)
        run.systemCalls = count;
    return run;
}

powercut::FaultyRun powercut::runWithMoments(const std::vector<Moment> &moments, const QStringList &commandLine, const std::function<void()> &whileStopped)
{
    std::vector<int> counts(moments.size());
    const auto lookAt = [&](TracedProcess &process) {
        for (size_t i = 0; i < moments.size(); ++i) {
            if (!isAt(moments[i], process) || ++counts[i] != moments[i].count)
                continue;
            moments[i].act();
            if (moments[i].mostBytes != never)
                process.setByteCount(moments[i].mostBytes);
            if (moments[i].error != 0)
                process.failSystemCall(moments[i].error);
        }
    };
    return runToEnd(commandLine, lookAt, whileStopped);
}

QStringList powercut::changesBelow(const QString &folder, const QStringList &commandLine)
{
    TracedProcess process(commandLine);
    if (!process.isAlive() || !process.runToOwnStop())
        return {};
    QStringList changes;
    const auto lookAt = [&changes, &folder](const TracedProcess &traced) {
        const QString change = changeOf(traced);
        if (change.section(QLatin1Char(' '), 1).startsWith(folder))
            changes.append(change);
    };
    if (!runToOwnStop(process, lookAt))
        return {};
    process.runToEnd();
    return process.exitStatus() == 0 ? changes : QStringList();
}
