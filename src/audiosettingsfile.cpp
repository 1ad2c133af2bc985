#include "audiosettingsfile.h"

#include <QtCore/QDateTime>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QThread>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace audio
{

namespace
{

constexpr qint64 staleTimeMs = 30000; // as long as a lock of QSettings takes to become stale
constexpr unsigned long retryIntervalMs = 1;

class Descriptor
{
public:
    Descriptor(const QString &path, int flags)
        : number(::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC))
    {
    }
    ~Descriptor()
    {
        if (number >= 0)
            ::close(number); // ends its kernel lock as well
    }
    int release() { return std::exchange(number, -1); }

    int number;

private:
    Q_DISABLE_COPY(Descriptor)
};

QString folderPath()
{
    return QFileInfo(settingsFilePath()).path();
}

QString lockFilePath()
{
    return settingsFilePath() + QStringLiteral(".lock");
}

qint64 modificationTime(const struct stat64 &status)
{
    return qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000;
}

/// One try; false with errno EWOULDBLOCK when somebody else holds it.
bool tryKernelLock(const Descriptor &file)
{
    return ::flock(file.number, LOCK_EX | LOCK_NB) == 0;
}

/// True also where somebody else was faster: a lock file's holder lets go of it before it removes it.
bool removeLockFile(const QString &path)
{
    return ::unlink(QFile::encodeName(path).constData()) == 0 || errno == ENOENT;
}

/// QSaveFile makes its temporary names of six random letters. Names that read like somebody's own copy ("backup", "Backup",
/// "BACKUP") may be just that.
bool looksRandom(const QString &letters)
{
    const auto isUpper = [](QChar letter) { return letter.isUpper(); };
    const bool allUpper = std::all_of(letters.begin(), letters.end(), isUpper);
    return !allUpper && std::any_of(letters.begin() + 1, letters.end(), isUpper);
}

/// Calls @p isDead with the file information and the six letters of each name that a temporary file may have; removes where it says so.
template<typename IsDead>
void removeTemporaryFiles(IsDead isDead)
{
    const QString prefix = QFileInfo(settingsFilePath()).fileName() + QLatin1Char('.');
    const QRegularExpression sixLetters(QStringLiteral("\\A[A-Za-z]{6}\\z"));
    const QFileInfoList files = QDir(folderPath()).entryInfoList({prefix + QStringLiteral("??????")}, QDir::Files | QDir::NoSymLinks | QDir::Hidden);
    for (const QFileInfo &file : files) {
        const QString letters = file.fileName().mid(prefix.size());
        if (sixLetters.match(letters).hasMatch() && isDead(file, letters))
            QFile::remove(file.filePath());
    }
}

/// Whatever its name reads like: made under a dead writer's lock, it is the dead writer's.
void removeTemporaryFilesOfLock(qint64 lockedAt)
{
    removeTemporaryFiles([lockedAt](const QFileInfo &file, const QString &) {
        const qint64 writtenAt = file.lastModified().toMSecsSinceEpoch();
        return writtenAt >= lockedAt && writtenAt - lockedAt <= staleTimeMs;
    });
}

enum class LockFile {
    None,
    Held,
    Abandoned, ///< by a process that hangs, or it could not be removed
};

/// What stands in the way of a lock of one's own. A dead holder's lock file does not: it is removed, with the holder's temporary file.
LockFile checkLockFile(const QString &path)
{
    const Descriptor lock(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (lock.number < 0)
        return LockFile::None;
    const bool isDead = tryKernelLock(lock);
    if (!isDead && errno != EWOULDBLOCK)
        return LockFile::None; // this file system has no kernel locks: QSettings must judge by itself
    struct stat64 status = {};
    if (::fstat64(lock.number, &status) != 0 || status.st_nlink == 0)
        return LockFile::Held; // its holder has removed it, and there may be another by now
    const qint64 lockedAt = modificationTime(status);
    if (!isDead)
        return qAbs(QDateTime::currentMSecsSinceEpoch() - lockedAt) > staleTimeMs ? LockFile::Abandoned : LockFile::Held;
    removeTemporaryFilesOfLock(lockedAt);
    if (::fstat64(lock.number, &status) != 0 || status.st_nlink == 0)
        return LockFile::Held; // it was about to be removed, and there may be another by now
    return removeLockFile(path) ? LockFile::None : LockFile::Abandoned;
}

} // namespace

QString settingsFilePath()
{
    return QStringLiteral("/media/flash/nvm/audioData.db");
}

SettingsFileGuard::SettingsFileGuard()
{
    QDir().mkpath(folderPath());
    Descriptor directory(folderPath(), O_RDONLY | O_DIRECTORY);
    const QDeadlineTimer deadline(staleTimeMs);
    while (directory.number >= 0 && !tryKernelLock(directory) && errno == EWOULDBLOCK && !deadline.hasExpired())
        QThread::msleep(retryIntervalMs);
    LockFile lockFile = checkLockFile(lockFilePath());
    for (; lockFile == LockFile::Held; lockFile = checkLockFile(lockFilePath()))
        QThread::msleep(retryIntervalMs);
    isBlocked = lockFile == LockFile::Abandoned && !removeLockFile(lockFilePath());
    folder = directory.release();
    before = currentVersion();
}

SettingsFileGuard::~SettingsFileGuard()
{
    const Version after = currentVersion();
    if (after.inode != before.inode) {
        if (after.milliseconds <= before.milliseconds) {
            const qint64 next = before.milliseconds + 1;
            const timespec moment = {static_cast<time_t>(next / 1000), static_cast<long>(next % 1000 * 1000000)};
            const timespec moments[] = {moment, moment};
            ::utimensat(AT_FDCWD, QFile::encodeName(settingsFilePath()).constData(), &moments[0], 0);
        }
        if (folder >= 0)
            ::fsync(folder);
    }
    if (folder >= 0)
        ::close(folder); // ends the lock
}

bool SettingsFileGuard::mayWrite() const
{
    return !isBlocked;
}

void SettingsFileGuard::sweepLeftovers()
{
    const Descriptor directory(folderPath(), O_RDONLY | O_DIRECTORY);
    if (directory.number < 0 || !tryKernelLock(directory) || checkLockFile(lockFilePath()) != LockFile::None)
        return; // a living writer's temporary file must not go
    checkLockFile(lockFilePath() + QStringLiteral(".rmlock")); // made while a stale lock file is removed
    removeTemporaryFiles([](const QFileInfo &file, const QString &letters) { return file.size() == 0 || looksRandom(letters); });
}

SettingsFileGuard::Version SettingsFileGuard::currentVersion()
{
    Version version;
    struct stat64 status = {};
    if (::stat64(QFile::encodeName(settingsFilePath()).constData(), &status) == 0) {
        version.inode = status.st_ino;
        version.milliseconds = modificationTime(status);
    }
    return version;
}

} // namespace audio
