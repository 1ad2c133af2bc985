#include "tracedprocess.h"

#include <QtCore/QFile>
#include <QtCore/QVector>

#include <csignal>
#include <climits>

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

[[noreturn]] void becomeProgram(QVector<char *> &arguments, const QByteArray &output)
{
    const int file = open(output.constData(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(file, STDOUT_FILENO);
    dup2(file, STDERR_FILENO);
    // The leak detector cannot work in a process that is traced already.
    setenv("ASAN_OPTIONS", QByteArray(qgetenv("ASAN_OPTIONS") + ":detect_leaks=0").constData(), 1);
    if (ptrace(PTRACE_TRACEME, 0, 0, 0) == 0)
        execv(arguments.first(), arguments.data());
    _exit(127);
}

[[noreturn]] void becomeWorker(const std::function<void()> &work)
{
    if (ptrace(PTRACE_TRACEME, 0, 0, 0) == 0) {
        kill(getpid(), SIGSTOP);
        work();
        _exit(0);
    }
    _exit(127);
}

__ptrace_syscall_info informationOf(pid_t process)
{
    __ptrace_syscall_info information = {};
    ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof information, &information);
    return information;
}

} // namespace

TracedProcess::TracedProcess(const QStringList &commandLine, const QString &output)
{
    QList<QByteArray> words;
    for (const QString &word : commandLine)
        words.append(QFile::encodeName(word));
    QVector<char *> arguments;
    for (QByteArray &word : words)
        arguments.append(word.data());
    arguments.append(nullptr);
    const QByteArray file = QFile::encodeName(output);
    m_process = fork();
    if (m_process == 0)
        becomeProgram(arguments, file);
    waitForBeginning();
}

TracedProcess::TracedProcess(const std::function<void()> &work)
{
    m_process = fork();
    if (m_process == 0)
        becomeWorker(work);
    waitForBeginning();
}

TracedProcess::~TracedProcess()
{
    kill();
}

void TracedProcess::waitForBeginning()
{
    if (isAlive() && waitForStop() != Stop::Ended)
        ptrace(PTRACE_SETOPTIONS, m_process, 0, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
}

TracedProcess::Stop TracedProcess::waitForStop()
{
    int status = 0;
    if (waitpid(m_process, &status, 0) != m_process || !WIFSTOPPED(status)) {
        m_process = -1;
        if (WIFEXITED(status))
            m_exitStatus = WEXITSTATUS(status);
        return Stop::Ended;
    }
    if (WSTOPSIG(status) == SIGSTOP)
        return Stop::Stopped;
    if (WSTOPSIG(status) != (SIGTRAP | 0x80))
        return Stop::Other;
    switch (informationOf(m_process).op) {
    case PTRACE_SYSCALL_INFO_ENTRY:
        return Stop::EntersSystemCall;
    case PTRACE_SYSCALL_INFO_EXIT:
        return Stop::LeavesSystemCall;
    default:
        return Stop::Other;
    }
}

TracedProcess::Stop TracedProcess::runToNextStop()
{
    ptrace(PTRACE_SYSCALL, m_process, 0, 0);
    return waitForStop();
}

bool TracedProcess::runToOwnStop()
{
    Stop stop = Stop::Other;
    while (stop != Stop::Stopped && stop != Stop::Ended) {
        ptrace(PTRACE_CONT, m_process, 0, 0);
        stop = waitForStop();
    }
    return stop == Stop::Stopped;
}

void TracedProcess::runToEnd()
{
    ptrace(PTRACE_CONT, m_process, 0, 0);
    int status = 0;
    while (waitpid(m_process, &status, 0) == m_process && WIFSTOPPED(status))
        ptrace(PTRACE_CONT, m_process, 0, WSTOPSIG(status));
    m_process = -1;
    if (WIFEXITED(status))
        m_exitStatus = WEXITSTATUS(status);
}

void TracedProcess::kill()
{
    if (!isAlive())
        return;
    ::kill(m_process, SIGKILL);
    while (waitForStop() != Stop::Ended) { }
}

TracedProcess::SystemCall TracedProcess::systemCall() const
{
    const __ptrace_syscall_info information = informationOf(m_process);
    SystemCall call;
    call.number = information.entry.nr;
    std::copy(std::begin(information.entry.args), std::end(information.entry.args), call.arguments.begin());
    return call;
}

qint64 TracedProcess::result() const
{
    return informationOf(m_process).exit.rval;
}

void TracedProcess::skipSystemCall() const
{
#if defined(__x86_64__)
    user_regs_struct registers = {};
    ptrace(PTRACE_GETREGS, m_process, 0, &registers);
    registers.orig_rax = ~0ULL;
    ptrace(PTRACE_SETREGS, m_process, 0, &registers);
#endif
}

void TracedProcess::setByteCount(int bytes) const
{
#if defined(__x86_64__)
    user_regs_struct registers = {};
    ptrace(PTRACE_GETREGS, m_process, 0, &registers);
    registers.rdx = static_cast<unsigned long long>(bytes);
    ptrace(PTRACE_SETREGS, m_process, 0, &registers);
#else
    Q_UNUSED(bytes)
#endif
}

void TracedProcess::failSystemCall(int error)
{
    if (systemCall().number != SYS_close) // which gives the descriptor back also where it fails
        skipSystemCall();
    runToNextStop();
    setError(error);
}

void TracedProcess::setError(int error) const
{
#if defined(__x86_64__)
    user_regs_struct registers = {};
    ptrace(PTRACE_GETREGS, m_process, 0, &registers);
    registers.rax = static_cast<unsigned long long>(-static_cast<long long>(error));
    ptrace(PTRACE_SETREGS, m_process, 0, &registers);
#else
    Q_UNUSED(error)
#endif
}

QByteArray TracedProcess::bytesAt(quint64 address, qint64 size) const
{
    QByteArray bytes(static_cast<int>(size), Qt::Uninitialized);
    const iovec here = {bytes.data(), static_cast<size_t>(size)};
    const iovec there = {reinterpret_cast<void *>(static_cast<quintptr>(address)), static_cast<size_t>(size)}; // NOLINT(performance-no-int-to-ptr)
    bytes.truncate(static_cast<int>(std::max<ssize_t>(process_vm_readv(m_process, &here, 1, &there, 1, 0), 0)));
    return bytes;
}

QByteArray TracedProcess::textAt(quint64 address) const
{
    constexpr quint64 pageSize = 4096; // the next one may not be there
    QByteArray text;
    while (text.size() < PATH_MAX) {
        const QByteArray piece = bytesAt(address, static_cast<qint64>(pageSize - address % pageSize));
        const int end = piece.indexOf('\0');
        text += end < 0 ? piece : piece.left(end);
        if (end >= 0 || piece.isEmpty())
            break;
        address += static_cast<quint64>(piece.size());
    }
    return text;
}
