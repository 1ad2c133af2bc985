#include "audiosettingsfile.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace audio
{

namespace
{

constexpr int longestWaitMs = 30000; // as long as a lock of QSettings takes to become stale
constexpr unsigned long retryIntervalMs = 1;

} // namespace

QString settingsFilePath()
{
    return QStringLiteral("/media/flash/nvm/audioData.db");
}

SettingsFileGuard::SettingsFileGuard()
{
    const QString folderPath = QFileInfo(settingsFilePath()).path();
    QDir().mkpath(folderPath);
    folder = ::open(QFile::encodeName(folderPath).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const QDeadlineTimer deadline(longestWaitMs);
    while (folder >= 0 && !locked) {
        locked = ::flock(folder, LOCK_EX | LOCK_NB) == 0;
        if (!locked && deadline.hasExpired())
            break;
        if (!locked)
            QThread::msleep(retryIntervalMs);
    }
    if (locked)
        removeUnsignedLock();
    before = currentVersion();
}

SettingsFileGuard::~SettingsFileGuard()
{
    const Version after = currentVersion();
    if (after.inode != before.inode && after.milliseconds <= before.milliseconds) {
        const qint64 next = before.milliseconds + 1;
        const timespec moment = {static_cast<time_t>(next / 1000), static_cast<long>(next % 1000 * 1000000)};
        const timespec moments[] = {moment, moment};
        ::utimensat(AT_FDCWD, QFile::encodeName(settingsFilePath()).constData(), &moments[0], 0);
    }
    if (folder >= 0)
        ::close(folder); // ends the lock
}

void SettingsFileGuard::sweepLeftovers()
{
    if (!locked)
        return; // a living writer's temporary file must not go
    const QFileInfo file(settingsFilePath());
    const QRegularExpression temporary(QStringLiteral("\\A%1\\.[A-Za-z]{6}\\z").arg(QRegularExpression::escape(file.fileName())));
    QDir directory(file.path());
    const QStringList names = directory.entryList({file.fileName() + QStringLiteral(".*")}, QDir::Files | QDir::NoSymLinks | QDir::Hidden);
    for (const QString &name : names) {
        if (temporary.match(name).hasMatch())
            directory.remove(name);
    }
}

SettingsFileGuard::Version SettingsFileGuard::currentVersion()
{
    Version version;
    struct stat status = {};
    if (::stat(QFile::encodeName(settingsFilePath()).constData(), &status) == 0) {
        version.inode = status.st_ino;
        version.milliseconds = qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000;
    }
    return version;
}

void SettingsFileGuard::removeUnsignedLock()
{
    const QFileInfo lock(settingsFilePath() + QStringLiteral(".lock"));
    if (lock.isFile() && lock.size() == 0)
        QFile::remove(lock.filePath());
}

} // namespace audio
