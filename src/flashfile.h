#ifndef FLASHFILE_H
#define FLASHFILE_H

#include <settingsfile.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <functional>

#include <sys/stat.h>

namespace audio
{

/// What did not work, and why: "write: No space left on device". Empty where all went well.
using Failure = QString;

/// Of the system call that has just failed.
Failure failureOf(const char *systemCall);

/**
 * The settings file on the flash, read and replaced as a whole. Every result of the system is looked at.
 *
 * Nothing here locks; see SettingsLock.
 */
namespace flashfile
{

/// Where a damaged file is kept, the latest one: "/media/flash/nvm/audioData.db.damaged"
QByteArray damagedPath();

struct Content
{
    Failure failure; ///< where something is there that could not be read whole. A missing file is no failure
    bool exists = false;
    bool isTooLarge = false;
    bool mayBeLink = true; ///< false where the path was seen to be none
    QByteArray bytes;
    struct stat64 status = {};
};

/// Never waits, whatever lies in the file's place.
Content read(const char *path = SettingsFile::nativePath);

struct Replacement
{
    Failure failure; ///< the old file is still there, unless isDone
    bool isDone = false;
    bool isOvertaken = false; ///< somebody else may write by now: read and try again
};

/**
 * Puts a file with these bytes in the place of @p path, so that at each moment the old one or the new one is there, whole, and the new one
 * is on the flash when this returns. The new one is read back and compared before it takes the name.
 *
 * @param old what was read there before: the new file takes over its permissions, and gets a later time, in ms, by which readers
 *        with QSettings tell versions
 * @param temporaryPath of the next version, in the same folder; of this writer alone
 * @param mayReplace is asked at the last moment
 */
Replacement replace(const char *path, const QByteArray &bytes, const Content &old, const QByteArray &temporaryPath, const std::function<bool()> &mayReplace);

/// Keeps a damaged file beside, as damagedPath(), unless it is there already.
Failure keepDamaged(const Content &damaged, const QByteArray &temporaryPath);

} // namespace flashfile

} // namespace audio

#endif
