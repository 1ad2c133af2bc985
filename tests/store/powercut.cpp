#include "powercut.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QVector>

#include <csignal>

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
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

quint64 systemCallOf(pid_t process)
{
    __ptrace_syscall_info info = {};
    ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof info, &info);
    return info.entry.nr;
}

pid_t startTraced(const QStringList &commandLine)
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
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    if (ptrace(PTRACE_TRACEME, 0, 0, 0) == 0)
        execv(arguments.first(), arguments.data());
    _exit(127);
}

void killProcess(pid_t process)
{
    kill(process, SIGKILL);
    while (waitForStop(process) != Stop::Ended) { }
}

} // namespace

int powercut::runAndKillAt(int systemCall, const QStringList &commandLine, const std::function<void()> &whileStopped)
{
    const pid_t process = startTraced(commandLine);
    if (process < 0 || waitForStop(process) == Stop::Ended)
        return -1;
    ptrace(PTRACE_SETOPTIONS, process, 0, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    Stop stop = Stop::Other;
    while (stop != Stop::Stopped) {
        ptrace(PTRACE_CONT, process, 0, 0);
        stop = waitForStop(process);
        if (stop == Stop::Ended)
            return -1;
    }
    if (whileStopped)
        whileStopped();
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
