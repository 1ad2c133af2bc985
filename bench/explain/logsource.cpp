#include "logsource.h"

#include <QtCore/QFile>
#include <QtCore/QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace
{

constexpr std::size_t bufferSize = 4 * LogSource::longestLine;

struct Compression
{
    std::string_view magic; ///< the file's first bytes
    const char *tool;
};

using namespace std::string_view_literals;

constexpr Compression compressions[] = {
    {"\x1f\x8b"sv, "gzip"},
    {"\xfd"
     "7zXZ\0"sv,
     "xz"},
    {"\x28\xb5\x2f\xfd"sv, "zstd"},
};

QString problemOf(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

bool isSameFile(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

} // namespace

LogSource::LogSource()
    : m_buffer(bufferSize)
{
}

LogSource::~LogSource()
{
    if (m_descriptor > STDIN_FILENO && !m_process)
        ::close(m_descriptor);
    if (m_process) {
        m_process->kill();
        m_process->waitForFinished();
    }
}

QString LogSource::open(const QString &file, bool isFollowed)
{
    m_file = file;
    m_isFollowed = isFollowed;
    if (file == QLatin1String(standardInput())) {
        m_descriptor = STDIN_FILENO;
        m_isFollowed = false;
        return {};
    }
    QString problem = openFile(file);
    if (!problem.isEmpty())
        return problem;
    char first[8] = {};
    const ssize_t count = ::pread(m_descriptor, &first[0], sizeof first, 0);
    const std::string_view begin(&first[0], count > 0 ? std::size_t(count) : 0);
    for (const Compression &compression : compressions) {
        if (begin.substr(0, compression.magic.size()) == compression.magic)
            return openThrough(compression.tool, file);
    }
    return {};
}

QString LogSource::openFile(const QString &file)
{
    const int descriptor = ::open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return problemOf(errno);
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(descriptor);
        return QStringLiteral("this is a folder");
    }
    if (m_descriptor > STDIN_FILENO)
        ::close(m_descriptor);
    m_descriptor = descriptor;
    m_read = 0;
    return {};
}

QString LogSource::openThrough(const char *tool, const QString &file)
{
    m_tool = QLatin1String(tool);
    const QString program = QStandardPaths::findExecutable(m_tool);
    if (program.isEmpty())
        return QStringLiteral("this needs the program %1, which is not installed").arg(m_tool);
    ::close(m_descriptor);
    m_descriptor = -1;
    m_isFollowed = false;
    m_process = std::make_unique<QProcess>();
    m_process->start(program, {QStringLiteral("-dc"), QStringLiteral("--"), file}, QIODevice::ReadOnly);
    return m_process->waitForStarted() ? QString() : QStringLiteral("%1 cannot be started: %2").arg(m_tool, m_process->errorString());
}

LogSource::Next LogSource::next(std::string_view &line)
{
    for (;;) {
        const char *const begin = m_buffer.data() + m_begin;
        const std::size_t length = m_end - m_begin;
        const void *const found = length > m_searched ? std::memchr(begin + m_searched, '\n', length - m_searched) : nullptr;
        std::size_t size = length;
        if (found) {
            size = std::size_t(static_cast<const char *>(found) - begin);
        } else if (length < longestLine) {
            m_searched = length;
            if (fill())
                continue;
            if (m_isFollowed)
                return Next::Nothing;
            if (length == 0)
                return Next::End;
        }
        const bool isRest = m_skipsRest;
        const bool isCut = size > longestLine || (!found && length >= longestLine);
        m_skipsRest = !found && isCut;
        const std::size_t taken = found ? size + 1 : size;
        m_begin += taken;
        m_bytes += taken;
        m_searched = 0;
        if (isRest)
            continue;
        ++m_lineNumber;
        m_wasCut = isCut;
        line = std::string_view(begin, std::min(size, longestLine));
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        return Next::Line;
    }
}

bool LogSource::fill()
{
    if (m_begin > 0) {
        std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_process) {
        while (m_process->bytesAvailable() == 0 && m_process->waitForReadyRead(-1)) { }
        const qint64 count = m_process->read(m_buffer.data() + m_end, qint64(m_buffer.size() - m_end));
        m_end += std::size_t(std::max<qint64>(0, count));
        return count > 0;
    }
    for (;;) {
        const ssize_t count = ::read(m_descriptor, m_buffer.data() + m_end, m_buffer.size() - m_end);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            note(QStringLiteral("the log cannot be read any further: %1").arg(problemOf(errno)));
        if (count > 0) {
            m_end += std::size_t(count);
            m_read += quint64(count);
            return true;
        }
        if (!m_isFollowed || !hasGoneOn())
            return false;
    }
}

/// Whether the log that is followed goes on from another beginning: in a file of the same name, or in this one, which was emptied.
bool LogSource::hasGoneOn()
{
    struct stat open = {};
    struct stat named = {};
    if (::fstat(m_descriptor, &open) != 0)
        return false;
    if (quint64(open.st_size) < m_read) {
        note(QStringLiteral("the log was emptied and begins anew"));
        m_read = 0;
        return ::lseek(m_descriptor, 0, SEEK_SET) == 0;
    }
    // A file that takes its time to come back is waited for.
    if (::stat(QFile::encodeName(m_file).constData(), &named) != 0 || isSameFile(open, named) || !openFile(m_file).isEmpty())
        return false;
    if (m_end > m_begin)
        m_buffer[m_end++] = '\n'; // what the old file ended with is a line of its own
    note(QStringLiteral("the log goes on in a new file"));
    return true;
}

void LogSource::wait(int milliseconds)
{
    ::poll(nullptr, 0, milliseconds);
}

QString LogSource::failure()
{
    if (!m_process)
        return {};
    m_process->waitForFinished();
    if (m_process->exitStatus() == QProcess::NormalExit && m_process->exitCode() == 0)
        return {};
    const QString complaint = QString::fromLocal8Bit(m_process->readAllStandardError()).trimmed().section(QLatin1Char('\n'), 0, 0);
    return complaint.isEmpty() ? QStringLiteral("%1 failed").arg(m_tool) : complaint;
}

void LogSource::note(const QString &text)
{
    m_notes.push_back({m_lineNumber + 1, text});
}

std::vector<LogSource::Note> LogSource::takeNotes()
{
    return std::exchange(m_notes, {});
}
