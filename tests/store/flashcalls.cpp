#include "flashcalls.h"

#include "flash.h"
#include "tracedprocess.h"

#include <QtCore/QFile>

#include <algorithm>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace
{

using Kind = FlashCall::Kind;
using Stop = TracedProcess::Stop;

// Neither names nor bytes of files are changed by these. Permissions and times of files are: no promise is about those.
constexpr quint64 harmless[] = {
    SYS_access,     SYS_brk,      SYS_clock_gettime, SYS_clock_nanosleep, SYS_close,     SYS_faccessat, SYS_fchmod,       SYS_fchown,         SYS_flock,
    SYS_fstat,      SYS_futex,    SYS_getdents64,    SYS_getpid,          SYS_getrandom, SYS_gettid,    SYS_gettimeofday, SYS_lseek,          SYS_lstat,
    SYS_madvise,    SYS_mprotect, SYS_munmap,        SYS_pread64,         SYS_read,      SYS_readlink,  SYS_rt_sigaction, SYS_rt_sigprocmask, SYS_sched_yield,
    SYS_stat,       SYS_statx,    SYS_utimensat,
#if defined(SYS_newfstatat)
    SYS_newfstatat,
#endif
};

/// The process at the entry of a call, and what it does when it succeeds.
class CallReader
{
public:
    CallReader(const TracedProcess &process, flashcalls::Record &record)
        : m_process(process)
        , m_call(process.systemCall())
        , m_record(record)
    {
    }

    /// False where nothing is to be told of it.
    bool read();
    /// At its exit.
    void finish(qint64 result);

private:
    quint64 argument(int index) const { return m_call.arguments[static_cast<size_t>(index)]; }
    bool fail(const QByteArray &path = {});
    bool readOpen(int path, quint64 flags);
    bool readMapping();
    bool readDescriptor(Kind kind);
    bool readPaths(Kind kind, int count);
    QByteArray nameAt(int index);
    QByteArray descriptorPath(const char *folder, quint64 descriptor) const;
    bool isOnFlash(quint64 descriptor, struct stat &status) const;
    qint64 positionOf(quint64 descriptor);

    const TracedProcess &m_process;
    const TracedProcess::SystemCall m_call;
    flashcalls::Record &m_record;
    FlashCall m_told;
};

bool CallReader::fail(const QByteArray &path)
{
    m_record.unknown.append(QStringLiteral("system call %1 %2").arg(m_call.number).arg(QFile::decodeName(path)));
    return false;
}

/// Empty where the path leads elsewhere.
QByteArray CallReader::nameAt(int index)
{
    const QByteArray path = m_process.textAt(argument(index));
    const QByteArray folder = QFile::encodeName(flash::folder()) + '/';
    if (!path.startsWith('/') || path.contains("/../") || (path.startsWith(folder) && path.indexOf('/', folder.size()) >= 0)) {
        fail(path); // not spelled in the one way that is understood here
        return {};
    }
    return path.startsWith(folder) ? path.mid(folder.size()) : QByteArray();
}

QByteArray CallReader::descriptorPath(const char *folder, quint64 descriptor) const
{
    return "/proc/" + QByteArray::number(m_process.id()) + '/' + folder + '/' + QByteArray::number(static_cast<int>(descriptor));
}

bool CallReader::isOnFlash(quint64 descriptor, struct stat &status) const
{
    struct stat folder = {};
    return stat(descriptorPath("fd", descriptor).constData(), &status) == 0 && stat(QFile::encodeName(flash::folder()).constData(), &folder) == 0
        && status.st_dev == folder.st_dev;
}

/// Where the next write() goes.
qint64 CallReader::positionOf(quint64 descriptor)
{
    QFile file(QFile::decodeName(descriptorPath("fdinfo", descriptor)));
    const QList<QByteArray> words = file.open(QIODevice::ReadOnly) ? file.readAll().simplified().split(' ') : QList<QByteArray>();
    // "pos: 0 flags: 0100002 ..."
    if (words.size() < 4 || (words.at(3).toLongLong(nullptr, 8) & O_APPEND) != 0)
        fail();
    return words.value(1).toLongLong();
}

bool CallReader::readOpen(int path, quint64 flags)
{
    m_told.name = nameAt(path);
    if (m_told.name.isEmpty() || (flags & (O_ACCMODE | O_CREAT | O_TRUNC)) == O_RDONLY)
        return false;
    if ((flags & O_TMPFILE) == O_TMPFILE)
        return fail();
    const bool isThere = QFile::exists(flash::folder() + QLatin1Char('/') + QFile::decodeName(m_told.name));
    m_told.kind = isThere ? Kind::Truncate : Kind::Create;
    return isThere ? (flags & O_TRUNC) != 0 : (flags & O_CREAT) != 0;
}

/// A mapped file could be written to without any call.
bool CallReader::readMapping()
{
    struct stat status = {};
    const bool isShared = (argument(2) & PROT_WRITE) != 0 && (argument(3) & MAP_SHARED) != 0 && (argument(3) & MAP_ANONYMOUS) == 0;
    return isShared && isOnFlash(argument(4), status) ? fail() : false;
}

bool CallReader::readDescriptor(Kind kind)
{
    struct stat status = {};
    if (!isOnFlash(argument(0), status))
        return false;
    m_told.kind = kind == Kind::SynchronizeFile && S_ISDIR(status.st_mode) ? Kind::SynchronizeFolder : kind;
    m_told.file = status.st_ino;
    return true;
}

bool CallReader::readPaths(Kind kind, int count)
{
    m_told.kind = kind;
    m_told.name = nameAt(0);
    m_told.newName = count > 1 ? nameAt(1) : QByteArray();
    if (count > 1 && m_told.name.isEmpty() != m_told.newName.isEmpty())
        return fail(); // in or out of the folder
    return !m_told.name.isEmpty();
}

bool CallReader::read()
{
    switch (m_call.number) {
    case SYS_openat:
        return readOpen(1, argument(2));
#if defined(SYS_open)
    case SYS_open:
        return readOpen(0, argument(1));
#endif
#if defined(SYS_mmap)
    case SYS_mmap:
#endif
#if defined(SYS_mmap2)
    case SYS_mmap2:
#endif
        return readMapping();
    case SYS_write:
    case SYS_pwrite64:
        if (!readDescriptor(Kind::Write))
            return false;
        m_told.bytes = m_process.bytesAt(argument(1), static_cast<qint64>(argument(2)));
        m_told.position = m_call.number == SYS_write ? positionOf(argument(0)) : static_cast<qint64>(argument(3));
        return true;
    case SYS_ftruncate:
        m_told.position = static_cast<qint64>(argument(1));
        return readDescriptor(Kind::Truncate);
    case SYS_fsync:
    case SYS_fdatasync:
        return readDescriptor(Kind::SynchronizeFile);
    case SYS_link:
        return readPaths(Kind::Link, 2);
    case SYS_rename:
        return readPaths(Kind::Rename, 2);
    case SYS_unlink:
        return readPaths(Kind::Unlink, 1);
    default:
        return std::find(std::begin(harmless), std::end(harmless), m_call.number) != std::end(harmless) ? false : fail();
    }
}

void CallReader::finish(qint64 result)
{
    if (result < 0)
        return;
    struct stat status = {};
    if (m_told.kind == Kind::Write)
        m_told.bytes.truncate(static_cast<int>(result));
    else if (m_told.file == 0 && (m_told.kind == Kind::Create || m_told.kind == Kind::Truncate) && isOnFlash(static_cast<quint64>(result), status))
        m_told.file = status.st_ino;
    m_record.calls.append(m_told);
}

} // namespace

flashcalls::Record flashcalls::record(const std::function<void()> &work)
{
    Record record;
    TracedProcess process(work);
    if (!process.isAlive() || !process.runToOwnStop())
        return record;
    for (Stop stop = process.runToNextStop(); stop != Stop::Ended; stop = process.runToNextStop()) {
        if (stop != Stop::EntersSystemCall)
            continue;
        const TracedProcess::SystemCall call = process.systemCall();
        if (call.number == SYS_kill) {
            record.isWhole = call.arguments[1] != 0;
            if (record.isWhole)
                break;
            record.calls.append(FlashCall{});
            continue;
        }
        CallReader reader(process, record);
        if (reader.read() && process.runToNextStop() == Stop::LeavesSystemCall)
            reader.finish(process.result());
    }
    return record;
}
