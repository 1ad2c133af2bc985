#include "forkedlife.h"

#include "life.h"

#include <settingsfile.h>

#include <QtCore/QDir>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

void emptyFlash()
{
    QDir folder(SettingsFile::folder());
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &name : names)
        folder.remove(name);
}

void writeWhole(int pipe, const QByteArray &bytes)
{
    for (ssize_t written = 0; written < bytes.size();) {
        const ssize_t part = write(pipe, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (part < 0 && errno != EINTR)
            return;
        written += qMax<ssize_t>(part, 0);
    }
}

QByteArray readWhole(int pipe)
{
    QByteArray bytes;
    char part[4096];
    for (;;) {
        const ssize_t count = read(pipe, part, sizeof part);
        if (count == 0 || (count < 0 && errno != EINTR))
            return bytes;
        bytes.append(part, static_cast<int>(qMax<ssize_t>(count, 0)));
    }
}

[[noreturn]] void liveAndTell(const std::vector<lives::Operation> &life, int pipe)
{
    // The test's own would tell of a crash as if it were the test's.
    for (const int crash : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGTERM})
        signal(crash, SIG_DFL);
    int livedUntil = 0;
    const std::optional<QString> problem = lives::problemOf(life, livedUntil);
    writeWhole(pipe, QByteArray::number(livedUntil) + ' ' + problem.value_or(QString()).toUtf8());
    _exit(0);
}

} // namespace

ForkedLife::ForkedLife(const std::vector<lives::Operation> &life)
{
    emptyFlash();
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        m_problem = qt_error_string(errno);
        return;
    }
    const pid_t process = fork();
    if (process == 0) {
        close(ends[0]);
        liveAndTell(life, ends[1]);
    }
    close(ends[1]);
    const QByteArray told = readWhole(ends[0]);
    close(ends[0]);
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) { }
    m_operations = told.isEmpty() ? static_cast<int>(life.size()) : told.left(told.indexOf(' ')).toInt();
    m_problem = QString::fromUtf8(told.mid(told.indexOf(' ') + 1));
    if (WIFSIGNALED(status))
        m_problem = QStringLiteral("the process ended by signal %1 (%2)").arg(WTERMSIG(status)).arg(QLatin1String(strsignal(WTERMSIG(status))));
    else if (told.isEmpty())
        m_problem = QStringLiteral("the process ended by itself, with exit status %1").arg(WEXITSTATUS(status));
}
