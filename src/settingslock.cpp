#include "settingslock.h"

#include <QtCore/QByteArrayList>
#include <QtCore/QDateTime>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QThread>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <unistd.h>

namespace audio
{

namespace
{

constexpr qint64 makingTimeMs = 20; // in which a lock file may be there whose maker has not locked it yet
// A process that saves all the time lets go of the lock for some microseconds only.
constexpr unsigned long retryIntervalUs = 100;
constexpr unsigned long removalTimeMs = 1; // in which QSettings removes the lock file that it has let go of
constexpr int mostTries = 100; // without waiting, where lock files come and go

QByteArray lockPath()
{
    return QByteArray(SettingsFile::nativePath) + ".lock";
}

QByteArray temporaryPrefix()
{
    return QByteArray(SettingsFile::nativePath) + ".new-";
}

/// QSettings' own while it removes a stale lock; a dead process's would stop QSettings for 30 seconds.
QByteArray lockOfLockPath()
{
    return lockPath() + ".rmlock";
}

/// Of a save with the library. Only the holder of the lock has one, so with the lock in hand it is a dead writer's.
bool isTemporaryFile(const QByteArray &path)
{
    const QByteArray prefix = temporaryPrefix();
    bool isNumber = false;
    if (path.startsWith(prefix))
        path.mid(prefix.size()).toULongLong(&isNumber);
    struct stat64 status = {};
    return isNumber && ::lstat64(path.constData(), &status) == 0 && S_ISREG(status.st_mode);
}

bool isThere(const QByteArray &path)
{
    struct stat64 status = {};
    return ::lstat64(path.constData(), &status) == 0;
}

/// What is in the folder under the settings file's name with more behind it; nothing where the folder cannot be listed.
std::optional<QByteArrayList> pathsBeside()
{
    DIR *const folder = ::opendir(SettingsFile::nativeFolder);
    if (!folder)
        return std::nullopt;
    QByteArrayList paths;
    while (const dirent64 *const entry = ::readdir64(folder)) {
        const QByteArray path = QByteArray(SettingsFile::nativeFolder) + '/' + &entry->d_name[0];
        if (path.startsWith(SettingsFile::nativePath) && path != SettingsFile::nativePath)
            paths.append(path);
    }
    ::closedir(folder);
    return paths;
}

qint64 ageOf(const struct stat64 &status)
{
    return QDateTime::currentMSecsSinceEpoch() - (qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000);
}

/// Also where the clock was set: nobody holds a lock in the future.
bool isStale(const struct stat64 &status)
{
    return qAbs(ageOf(status)) > SettingsFile::staleLockMs;
}

bool tryKernelLock(int file)
{
    return untilNotInterrupted([file] { return ::flock(file, LOCK_EX | LOCK_NB); }) == 0;
}

/// A child that is made while this process holds the lock, and lives on without exec, would hold it as well, for as long as it lives.
std::atomic_int heldDescriptor{-1};

/// Held for the moments in which a lock file is open that letGoInChild() does not know: fork() waits for their end.
std::mutex unknownDescriptor;

void waitBeforeFork()
{
    unknownDescriptor.lock();
}

void goOnAfterFork()
{
    unknownDescriptor.unlock();
}

void letGoInChild()
{
    unknownDescriptor.unlock();
    const int descriptor = heldDescriptor.exchange(-1);
    if (descriptor >= 0)
        ::close(descriptor);
}

/// The holder that was waited for in vain.
struct KnownHolder
{
    QMutex mutex;
    dev_t device = 0;
    ino64_t inode = 0;
    timespec changed = {};
    QDeadlineTimer patience; // until it ends nobody is waited for: one call that saves several values waits once
};

KnownHolder &knownHolder()
{
    static auto *const holder = new KnownHolder; // for ever: stores save until the very end of the process
    return *holder;
}

/// Those who may write into the folder may open the lock file.
mode_t lockModeOf(const struct stat64 &folder)
{
    mode_t mode = S_IRUSR | S_IWUSR;
    if (folder.st_mode & S_IWGRP)
        mode |= S_IRGRP | S_IWGRP;
    if (folder.st_mode & S_IWOTH)
        mode |= S_IROTH | S_IWOTH;
    return mode;
}

} // namespace

SettingsLock::SettingsLock(Waiting waiting)
    : m_mayMakeFolder(waiting == Waiting::Allowed)
{
    static std::once_flag once;
    std::call_once(once, [] { ::pthread_atfork(waitBeforeFork, goOnAfterFork, letGoInChild); });
    acquire(waiting);
    if (m_hasRemovedOther && m_file.isOpen())
        sweepLeftovers();
}

SettingsLock::~SettingsLock()
{
    if (!m_file.isOpen())
        return;
    if (isHeld())
        ::unlink(lockPath().constData());
    int own = m_file.number(); // another thread may hold the next lock by now
    heldDescriptor.compare_exchange_strong(own, -1);
}

bool SettingsLock::isHeld() const
{
    struct stat64 status = {};
    return m_file.isOpen() && ::fstat64(m_file.number(), &status) == 0 && status.st_nlink > 0;
}

void SettingsLock::acquire(Waiting waiting)
{
    const QDeadlineTimer deadline(waiting == Waiting::Allowed ? SettingsFile::longestWaitMs : 0);
    for (int tries = 1;; ++tries) {
        Attempt attempt = create();
        if (attempt == Attempt::Busy)
            attempt = lookAtOther();
        if (attempt == Attempt::Succeeded || attempt == Attempt::Failed)
            return;
        const bool isBusy = attempt == Attempt::Busy;
        if (deadline.hasExpired() ? isBusy || tries > mostTries : isBusy && isHolderKnown()) {
            if (isBusy && waiting == Waiting::Allowed)
                rememberHolder();
            fail(QStringLiteral("somebody else holds the lock file"));
            return;
        }
        if (isBusy)
            QThread::usleep(retryIntervalUs);
    }
}

SettingsLock::Attempt SettingsLock::fail(const Failure &failure)
{
    m_file = FileDescriptor();
    m_failure = failure;
    return Attempt::Failed;
}

/// Busy where there is one already.
SettingsLock::Attempt SettingsLock::create()
{
    const QByteArray path = lockPath();
    const std::lock_guard<std::mutex> guard(unknownDescriptor);
    m_file
        = FileDescriptor(untilNotInterrupted([&] { return ::open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR); }));
    if (!m_file.isOpen()) {
        if (errno == EEXIST)
            return Attempt::Busy;
        const Failure failure = failureOf("open the lock file");
        const bool isFolderMissing = errno == ENOENT && std::exchange(m_mayMakeFolder, false);
        return isFolderMissing && QDir().mkpath(SettingsFile::folder()) ? Attempt::Again : fail(failure);
    }
    // Where the file system has no kernel locks, the file alone has to do, as it does for QSettings.
    if (!tryKernelLock(m_file.number()) && errno == EWOULDBLOCK)
        return Attempt::Again; // somebody took it for a dead writer's
    struct stat64 status = {};
    if (::fstat64(m_file.number(), &status) != 0)
        return fail(failureOf("fstat"));
    if (status.st_nlink == 0)
        return Attempt::Again;
    heldDescriptor = m_file.number();
    m_temporaryPath = temporaryPrefix() + QByteArray::number(static_cast<qulonglong>(status.st_ino));
    struct stat64 folder = {};
    if (::stat64(SettingsFile::nativeFolder, &folder) == 0) {
        const mode_t mode = lockModeOf(folder);
        // Best effort, both: without it others wait until this one goes.
        if ((mode & S_IRGRP) && folder.st_gid != status.st_gid && ::fchown(m_file.number(), static_cast<uid_t>(-1), folder.st_gid) != 0)
            errno = 0;
        if (mode != (S_IRUSR | S_IWUSR) && ::fchmod(m_file.number(), mode) != 0)
            errno = 0;
    }
    return Attempt::Succeeded;
}

/// What stands in the way. A dead writer's lock file does not: it is removed.
SettingsLock::Attempt SettingsLock::lookAtOther()
{
    const QByteArray path = lockPath();
    const std::lock_guard<std::mutex> guard(unknownDescriptor);
    const FileDescriptor other(untilNotInterrupted([&] { return ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!other.isOpen()) {
        const int error = errno;
        if (error == ENOENT || ::lstat64(path.constData(), &m_other) != 0)
            return error == ENOENT || errno == ENOENT ? Attempt::Again : fail(failureOf("lstat"));
        if (!S_ISREG(m_other.st_mode) || isStale(m_other))
            return remove(path); // a link or a socket is nobody's lock
        errno = error;
        return error == EACCES ? Attempt::Busy : fail(failureOf("open the lock file"));
    }
    if (::fstat64(other.number(), &m_other) != 0)
        return fail(failureOf("fstat"));
    if (!S_ISREG(m_other.st_mode))
        return remove(path);
    if (!tryKernelLock(other.number()))
        return isStale(m_other) ? remove(path) : Attempt::Busy; // also where the file system has no kernel locks
    if (::fstat64(other.number(), &m_other) != 0 || m_other.st_nlink == 0)
        return Attempt::Again; // its holder has removed it
    if (m_other.st_size == 0 && qAbs(ageOf(m_other)) < makingTimeMs)
        return Attempt::Busy;
    // QSettings lets go of its lock file before it removes it: to be faster than that would have it remove the next one's.
    QThread::msleep(removalTimeMs);
    if (::fstat64(other.number(), &m_other) != 0 || m_other.st_nlink == 0)
        return Attempt::Again;
    return remove(path);
}

SettingsLock::Attempt SettingsLock::remove(const QByteArray &path)
{
    if (::unlink(path.constData()) == 0 || errno == ENOENT) {
        m_hasRemovedOther = true;
        return Attempt::Again;
    }
    return fail(QStringLiteral("it is blocked by a lock file that cannot be removed"));
}

bool SettingsLock::isHolderKnown() const
{
    KnownHolder &known = knownHolder();
    const QMutexLocker locker(&known.mutex);
    const bool isSame = known.device == m_other.st_dev && known.inode == m_other.st_ino && known.changed.tv_sec == m_other.st_ctim.tv_sec
        && known.changed.tv_nsec == m_other.st_ctim.tv_nsec;
    return isSame || !known.patience.hasExpired();
}

void SettingsLock::rememberHolder() const
{
    KnownHolder &known = knownHolder();
    const QMutexLocker locker(&known.mutex);
    known.device = m_other.st_dev;
    known.inode = m_other.st_ino;
    known.changed = m_other.st_ctim;
    known.patience = QDeadlineTimer(SettingsFile::longestWaitMs);
}

bool SettingsLock::hasLeftovers()
{
    const std::optional<QByteArrayList> paths = pathsBeside();
    if (!paths)
        return isThere(lockPath()) || isThere(lockOfLockPath());
    return std::any_of(
        paths->begin(), paths->end(), [](const QByteArray &path) { return path == lockPath() || path == lockOfLockPath() || isTemporaryFile(path); });
}

void SettingsLock::sweepLeftovers() const
{
    const std::lock_guard<std::mutex> guard(unknownDescriptor);
    const FileDescriptor lockOfLock(::open(lockOfLockPath().constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (lockOfLock.isOpen() && tryKernelLock(lockOfLock.number()))
        ::unlink(lockOfLockPath().constData());
    const QByteArrayList paths = pathsBeside().value_or(QByteArrayList());
    for (const QByteArray &path : paths) {
        if (isTemporaryFile(path))
            ::unlink(path.constData());
    }
}

} // namespace audio
