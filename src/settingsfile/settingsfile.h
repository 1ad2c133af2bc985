#ifndef SETTINGSFILE_H
#define SETTINGSFILE_H

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QString>

#include <sys/stat.h>
#include <unistd.h>

/**
 * The settings file as seen without reading it.
 *
 * The one header of the library's own that daemon, doctor, QML modules, bench and window include, too. It is no part of its interface.
 */
namespace SettingsFile
{

/// The one place on the unit's flash; see audio::AudioDataBase. As system calls take it, which is every few microseconds.
constexpr char nativePath[] = "/media/flash/nvm/audioData.db";
constexpr char nativeFolder[] = "/media/flash/nvm";

/// Larger files are no settings files: only so many bytes of them are read.
constexpr int largestSize = 1024 * 1024;
/// So long a save waits for another process's; then it is refused.
constexpr qint64 longestWaitMs = 1000;
/// Older locks are taken away, as those of QSettings are, from processes that hang.
constexpr qint64 staleLockMs = 30000;

inline QString path()
{
    return QLatin1String(nativePath);
}

inline QString folder()
{
    return QLatin1String(nativeFolder);
}

/// Whether its folder is there and may be written to. The store makes the folder where it can.
inline bool canBeSaved()
{
    return access(nativeFolder, W_OK | X_OK) == 0;
}

/**
 * Tells two states of a file apart: another text after each rewrite, "" while there is no file.
 *
 * A rewrite puts a new file in the old one's place, so it shows even when size and time stay the same.
 */
inline QByteArray stamp(const QString &file = path())
{
    struct stat status = {};
    if (stat(QFile::encodeName(file).constData(), &status) != 0)
        return {};
    return QByteArray::number(quint64(status.st_ino)) + ' ' + QByteArray::number(qint64(status.st_size)) + ' '
        + QByteArray::number(qint64(status.st_mtim.tv_sec)) + '.' + QByteArray::number(qint64(status.st_mtim.tv_nsec));
}

} // namespace SettingsFile

#endif
