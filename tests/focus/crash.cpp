#include "crash.h"

#include <QtCore/QtGlobal>

#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

Crash crashOf(const std::function<void()> &code)
{
    int channel[2] = {-1, -1};
    if (::pipe(channel) != 0)
        qFatal("no pipe for the child's output");
    const pid_t child = ::fork();
    if (child == 0) {
        // As a program without a test around it: Qt's own message handler, the system's own end by a signal, no core file.
        const rlimit noCore{0, 0};
        ::setrlimit(RLIMIT_CORE, &noCore);
        static_cast<void>(std::signal(SIGABRT, SIG_DFL));
        qInstallMessageHandler(nullptr);
        ::dup2(channel[1], STDERR_FILENO);
        ::close(channel[0]);
        ::close(channel[1]);
        code();
        ::_exit(EXIT_SUCCESS);
    }
    ::close(channel[1]);
    Crash crash;
    char buffer[512];
    for (ssize_t count = 0; (count = ::read(channel[0], buffer, sizeof buffer)) > 0;)
        crash.errorOutput.append(buffer, static_cast<int>(count));
    ::close(channel[0]);
    int status = 0;
    crash.aborted = child > 0 && ::waitpid(child, &status, 0) == child && WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
    return crash;
}
