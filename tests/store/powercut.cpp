#include "powercut.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryFile>
#include <QtCore/QVector>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

/// What a traced process is stopped for.
enum class Stop {
    Ended,
    Stopped, ///< by SIGSTOP
    EntersSystemCall,
    Other,
};

Stop waitForStop(pid_t process)
{
    int status = 0;
    if (waitpid(process, &status, 0) != process || !WIFSTOPPED(status))
        return Stop::Ended;
    if (WSTOPSIG(status) == SIGSTOP)
        return Stop::Stopped;
    if (WSTOPSIG(status) != (SIGTRAP | 0x80))
        return Stop::Other;
    __ptrace_syscall_info info = {};
    ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof info, &info);
    return info.op == PTRACE_SYSCALL_INFO_ENTRY ? Stop::EntersSystemCall : Stop::Other;
}

/// At its entry: the number, and the arguments.
__ptrace_syscall_info entryOf(pid_t process)
{
    __ptrace_syscall_info info = {};
    ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof info, &info);
    return info;
}

quint64 systemCallOf(pid_t process)
{
    return entryOf(process).entry.nr;
}

/// A text in the memory of the traced process.
QString textAt(pid_t process, quint64 address)
{
    std::array<char, 256> text = {};
    const iovec here = {text.data(), text.size() - 1};
    const iovec there = {reinterpret_cast<void *>(address), text.size() - 1}; // NOLINT(performance-no-int-to-ptr): the kernel's way of handing it over
    process_vm_readv(process, &here, 1, &there, 1, 0);
    return QFile::decodeName(text.data());
}

/// What a descriptor of the traced process is open for.
QString pathOf(pid_t process, quint64 descriptor)
{
    return QFileInfo(QStringLiteral("/proc/%1/fd/%2").arg(process).arg(descriptor)).symLinkTarget();
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

bool isAt(const powercut::Moment &moment, pid_t process)
{
    const __ptrace_syscall_info info = entryOf(process);
    if (!isSame(moment.call, info.entry.nr))
        return false;
    // Openat() and fstatat() have the name behind the folder.
    const bool isNamed = moment.call == powercut::Call::Open || moment.call == powercut::Call::Status;
    return (isNamed ? textAt(process, info.entry.args[1]) : pathOf(process, info.entry.args[0])).startsWith(moment.path);
}

/// "CALL PATH", empty for other system calls.
QString changeOf(pid_t process)
{
    const __ptrace_syscall_info info = entryOf(process);
    switch (info.entry.nr) {
    case SYS_write:
        return QStringLiteral("write ") + pathOf(process, info.entry.args[0]);
    case SYS_fsync:
    case SYS_fdatasync:
        return QStringLiteral("fsync ") + pathOf(process, info.entry.args[0]);
#if defined(SYS_rename)
    case SYS_rename:
        return QStringLiteral("rename ") + textAt(process, info.entry.args[0]);
#endif
    case SYS_renameat2:
        return QStringLiteral("rename ") + textAt(process, info.entry.args[1]);
#if defined(SYS_unlink)
    case SYS_unlink:
        return QStringLiteral("unlink ") + textAt(process, info.entry.args[0]);
#endif
    case SYS_unlinkat:
        return QStringLiteral("unlink ") + textAt(process, info.entry.args[1]);
    default:
        return {};
    }
}

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

/// At its entry: the kernel gets the number of no system call.
void skipSystemCall(pid_t process)
{
#if defined(__x86_64__)
    user_regs_struct registers = {};
    ptrace(PTRACE_GETREGS, process, 0, &registers);
    registers.orig_rax = ~0ULL;
    ptrace(PTRACE_SETREGS, process, 0, &registers);
#else
    Q_UNUSED(process)
#endif
}

/// At its entry: a third argument that is a number of bytes.
void setByteCount(pid_t process, int bytes)
{
#if defined(__x86_64__)
    user_regs_struct registers = {};
    ptrace(PTRACE_GETREGS, process, 0, &registers);
    registers.rdx = static_cast<unsigned long long>(bytes);
    ptrace(PTRACE_SETREGS, process, 0, &registers);
#else
    Q_UNUSED(process)
    Q_UNUSED(bytes)
#endif
}

/// At its exit.
void setError(pid_t process, int error)
{
#if defined(__x86_64__)
    user_regs_struct registers = {};
    ptrace(PTRACE_GETREGS, process, 0, &registers);
    registers.rax = static_cast<unsigned long long>(-static_cast<long long>(error));
    ptrace(PTRACE_SETREGS, process, 0, &registers);
#else
    Q_UNUSED(process)
    Q_UNUSED(error)
#endif
}

pid_t startTraced(const QStringList &commandLine, const QString &output = QStringLiteral("/dev/null"))
{
    QList<QByteArray> words;
    for (const QString &word : commandLine)
        words.append(QFile::encodeName(word));
    QVector<char *> arguments;
    for (QByteArray &word : words)
        arguments.append(word.data());
    arguments.append(nullptr);
    const pid_t process = fork();
    if (process != 0)
        return process;
    const int file = open(QFile::encodeName(output).constData(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(file, STDOUT_FILENO);
    dup2(file, STDERR_FILENO);
    // The leak detector cannot work in a process that is traced already.
    setenv("ASAN_OPTIONS", QByteArray(qgetenv("ASAN_OPTIONS") + ":detect_leaks=0").constData(), 1);
    if (ptrace(PTRACE_TRACEME, 0, 0, 0) == 0)
        execv(arguments.first(), arguments.data());
    _exit(127);
}

/// Lets it run to its next stop by itself; false when it ended.
bool runToStop(pid_t process)
{
    Stop stop = Stop::Other;
    while (stop != Stop::Stopped) {
        ptrace(PTRACE_CONT, process, 0, 0);
        stop = waitForStop(process);
        if (stop == Stop::Ended)
            return false;
    }
    return true;
}

void killProcess(pid_t process)
{
    kill(process, SIGKILL);
    while (waitForStop(process) != Stop::Ended) { }
}

/// From its entry to its exit.
void failSystemCall(pid_t process, int error)
{
    skipSystemCall(process);
    ptrace(PTRACE_SYSCALL, process, 0, 0);
    waitForStop(process);
    setError(process, error);
}

/// Starts it and lets it run to its first stop; -1 where that cannot be.
pid_t startToFirstStop(const QStringList &commandLine, const QString &output = QStringLiteral("/dev/null"))
{
    const pid_t process = startTraced(commandLine, output);
    if (process < 0 || waitForStop(process) == Stop::Ended)
        return -1;
    ptrace(PTRACE_SETOPTIONS, process, 0, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    return runToStop(process) ? process : -1;
}

/// Stops it at each system call until its second stop; false when it ended.
bool runToSecondStop(pid_t process, const std::function<void()> &atSystemCall)
{
    for (Stop stop = Stop::Other; stop != Stop::Stopped;) {
        ptrace(PTRACE_SYSCALL, process, 0, 0);
        stop = waitForStop(process);
        if (stop == Stop::Ended)
            return false;
        if (stop == Stop::EntersSystemCall)
            atSystemCall();
    }
    return true;
}

/// From a stop on; whether its exit status is 0.
bool runToEnd(pid_t process)
{
    ptrace(PTRACE_CONT, process, 0, 0);
    int status = 0;
    while (waitpid(process, &status, 0) == process && WIFSTOPPED(status))
        ptrace(PTRACE_CONT, process, 0, WSTOPSIG(status));
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

int powercut::runAndKillAt(int systemCall, const QStringList &commandLine, const std::function<void()> &whileStopped)
{
    const pid_t process = startToFirstStop(commandLine);
    if (process < 0)
        return -1;
    if (whileStopped)
        whileStopped();
    Stop stop = Stop::Other;
    int count = 0;
    while (count < systemCall) {
        ptrace(PTRACE_SYSCALL, process, 0, 0);
        stop = waitForStop(process);
        if (stop == Stop::Ended)
            return -1;
        if (stop != Stop::EntersSystemCall)
            continue;
        if (systemCallOf(process) == SYS_kill)
            break;
        ++count;
    }
    killProcess(process);
    return count;
}

powercut::FaultyRun powercut::runWithFault(const Fault &fault, const QStringList &commandLine, const std::function<void()> &whileStopped)
{
    FaultyRun run;
    QTemporaryFile output;
    if (!output.open())
        return run;
    const pid_t process = startToFirstStop(commandLine, output.fileName());
    if (process < 0)
        return run;
    int count = 0;
    bool isFailing = false;
    for (Stop stop = Stop::Other; stop != Stop::Stopped;) {
        ptrace(PTRACE_SYSCALL, process, 0, 0);
        stop = waitForStop(process);
        if (stop == Stop::Ended)
            return run;
        if (stop == Stop::EntersSystemCall && mayFail(systemCallOf(process))) {
            ++count;
            isFailing = count == fault.systemCall || (fault.isForEver && count > fault.systemCall);
            if (isFailing && systemCallOf(process) != SYS_close) // which gives the descriptor back also where it fails
                skipSystemCall(process);
        } else if (stop == Stop::Other && isFailing) {
            setError(process, fault.error);
            isFailing = false;
        }
    }
    whileStopped();
    run.hasEndedWell = runToEnd(process);
    run.systemCalls = count;
    run.output = QString::fromUtf8(output.readAll());
    return run;
}

powercut::FaultyRun powercut::runWithMoments(const std::vector<Moment> &moments, const QStringList &commandLine, const std::function<void()> &whileStopped)
{
    FaultyRun run;
    QTemporaryFile output;
    if (!output.open())
        return run;
    const pid_t process = startToFirstStop(commandLine, output.fileName());
    if (process < 0)
        return run;
    std::vector<int> counts(moments.size());
    const auto lookAt = [&] {
        for (size_t i = 0; i < moments.size(); ++i) {
            if (!isAt(moments[i], process) || ++counts[i] != moments[i].count)
                continue;
            moments[i].act();
            if (moments[i].mostBytes != never)
                setByteCount(process, moments[i].mostBytes);
            if (moments[i].error != 0)
                failSystemCall(process, moments[i].error);
        }
    };
    if (!runToSecondStop(process, lookAt))
        return run;
    whileStopped();
    run.hasEndedWell = runToEnd(process);
    run.output = QString::fromUtf8(output.readAll());
    return run;
}

QStringList powercut::changesBelow(const QString &folder, const QStringList &commandLine)
{
    const pid_t process = startToFirstStop(commandLine);
    if (process < 0)
        return {};
    QStringList changes;
    const auto lookAt = [&] {
        const QString change = changeOf(process);
        if (change.section(QLatin1Char(' '), 1).startsWith(folder))
            changes.append(change);
    };
    return runToSecondStop(process, lookAt) && runToEnd(process) ? changes : QStringList();
}
