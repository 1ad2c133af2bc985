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
 * QSettings replaces the file atomically under a lock of its own, but alone it falls short in three places:
 * - It takes its memory of the file for current while size and time stamp (milliseconds) are unchanged. Two processes that write
 *   in the same tick of the kernel's clock would lose each other's values. So one process at a time writes (a kernel lock on the
 *   folder, which dies with its holder and leaves nothing on the flash), and each version of the file gets a time of its own.
 * - A process that dies between making the ".lock" file and signing it leaves an empty one, which would block everybody for the
 *   30 seconds that locks take to become stale. It is removed.
 * - A process that dies while it writes leaves its temporary file. sweepLeftovers() removes these.
 *
 * Where the folder is missing it is made; where it cannot be locked within 30 seconds the write goes on all the same.
 */
class SettingsFileGuard
{
public:
    SettingsFileGuard();
    ~SettingsFileGuard();

    /// Removes the temporary files of dead writers of this file, nothing else.
    void sweepLeftovers();

private:
    Q_DISABLE_COPY(SettingsFileGuard)

    struct Version
    {
        quint64 inode = 0;
        qint64 milliseconds = 0;
    };
    static Version currentVersion();
    void removeUnsignedLock();

    int folder = -1;
    bool locked = false;
    Version before;
};

} // namespace audio
