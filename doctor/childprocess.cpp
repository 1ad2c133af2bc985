#include "childprocess.h"

#include <QtCore/QElapsedTimer>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ChildProcess
{

namespace
{

// A platform may end the process with any status: only this says that the work came to its end.
constexpr char endMark = '\0';

[[noreturn]] void workAndEnd(const std::function<void(const Tell &)> &work, int pipe)
{
    const rlimit noCoreFile = {};
    ::setrlimit(RLIMIT_CORE, &noCoreFile);
    const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(nowhere, stream);
    const Tell tell = [pipe](const QByteArray &text) {
        const ssize_t written = ::write(pipe, text.constData(), static_cast<std::size_t>(text.size()));
        Q_UNUSED(written)
    };
    work(tell);
    tell(QByteArray(1, endMark));
    // What the platform's library would do at the end of a process is not asked for.
    ::_exit(0);
}

/// Reads until the work, the process or the patience is at its end; false for the last of these.
bool readAll(int pipe, int patienceMs, Outcome &outcome)
{
    for (;;) {
        pollfd readable{pipe, POLLIN, 0};
        const int ready = ::poll(&readable, 1, patienceMs);
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return false;
        std::array<char, 4096> buffer = {};
        const ssize_t size = ::read(pipe, buffer.data(), buffer.size());
        if (size <= 0)
            return true;
        outcome.told.append(buffer.data(), static_cast<int>(size));
        // Not until the pipe is closed: what the work has started may hold it open.
        if (outcome.told.endsWith(endMark)) {
            outcome.told.chop(1);
            outcome.isWhole = true;
            return true;
        }
    }
}

/// A process that waits for a device cannot even be killed: it is left behind, and the system's first process buries it.
bool waitForEnd(pid_t child, int *status)
{
    constexpr qint64 longestMs = 1000;
    constexpr useconds_t intervalUs = 1000;
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        const pid_t ended = ::waitpid(child, status, WNOHANG);
        if (ended == child)
            return true;
        if ((ended < 0 && errno != EINTR) || clock.hasExpired(longestMs))
            return false;
        ::usleep(intervalUs);
    }
}

QString endingOf(int status)
{
    if (WIFSIGNALED(status))
        return QStringLiteral("crashes, signal %1").arg(WTERMSIG(status));
    return QStringLiteral("ends the process, status %1").arg(WEXITSTATUS(status));
}

} // namespace

Outcome run(const std::function<void(const Tell &)> &work, int patienceMs)
{
    Outcome outcome;
    int ends[2] = {};
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        outcome.ending = QStringLiteral("cannot be tried, there is no pipe");
        return outcome;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        workAndEnd(work, ends[1]);
    }
    ::close(ends[1]);
    if (child > 0) {
        int status = 0;
        const bool isInTime = readAll(ends[0], patienceMs, outcome);
        // It may have ended and left somebody behind who holds the pipe open.
        const bool hasEnded = isInTime ? waitForEnd(child, &status) : ::waitpid(child, &status, WNOHANG) == child;
        if (!hasEnded) {
            ::kill(child, SIGKILL);
            waitForEnd(child, &status);
        }
        if (!outcome.isWhole)
            outcome.ending = hasEnded ? endingOf(status) : QStringLiteral("does not come back within %1 ms").arg(patienceMs);
    } else {
        outcome.ending = QStringLiteral("cannot be tried, there is no process");
    }
    ::close(ends[0]);
    return outcome;
}

} // namespace ChildProcess
