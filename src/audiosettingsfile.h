#pragma once

#include <QtCore/QString>
#include <QtCore/qglobal.h>

namespace audio
{

/// "/media/flash/nvm/audioData.db"
QString settingsFilePath();

/**
 * Held while the settings file is rewritten: makes QSettings lose nothing.
 *
 * QSettings replaces the file atomically under a lock file of its own, but alone it falls short in these places:
 * - It takes its memory of the file for current while size and time stamp (milliseconds) are unchanged. Two processes that write
 *   in the same tick of the kernel's clock would lose each other's values. So one process at a time writes (a kernel lock on the
 *   folder, which dies with its holder and leaves nothing on the flash), and each version of the file gets a time of its own.
 * - The lock file of a process that died can block everybody for the 30 seconds that it takes to become stale: when it was not
 *   signed yet, or when another process has the dead one's number by now. A living process holds a kernel lock on its lock
 *   file, so one without is removed at once.
 * - A process that hangs while it writes blocks everybody for ever. Its lock file is removed after 30 seconds.
 * - A process that dies while it writes leaves its temporary file. It goes with the lock file, or see sweepLeftovers().
 * - The new name of the file is not forced to the flash. The folder is synchronized before the guard ends.
 *
 * Where the folder is missing it is made. Where nothing can be locked the write goes on all the same.
 */
class SettingsFileGuard
{
public:
    /// Waits for other writers, up to 30 seconds for one that hangs.
    SettingsFileGuard();
    ~SettingsFileGuard();

    /// False where a lock file lies in the way that cannot be removed, in a folder that is not ours: QSettings would wait for ever.
    bool mayWrite() const;

    /// Removes what dead writers of this file left in its folder, nothing else. Does nothing, without waiting, while somebody writes.
    static void sweepLeftovers();

private:
    Q_DISABLE_COPY(SettingsFileGuard)

    struct Version
    {
        quint64 inode = 0;
        qint64 milliseconds = 0;
    };
    static Version currentVersion();

    int folder = -1;
    bool isBlocked = false;
    Version before;
};

} // namespace audio
