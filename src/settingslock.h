#ifndef SETTINGSLOCK_H
#define SETTINGSLOCK_H

#include "filedescriptor.h"
#include "flashfile.h"

#include <QtCore/QByteArray>

namespace audio
{

/**
 * One process at a time rewrites the settings file: who holds the lock file "audioData.db.lock", which is QSettings' own, so that programs
 * that write with QSettings alone are kept out as well. The file is there for as long as somebody writes. Its holder also holds a kernel
 * lock on it, which dies with its holder: a lock file without one is a dead writer's, and is removed at once.
 *
 * Only who may write into the folder can open the file, and so hold the lock.
 *
 * A holder who hangs is waited for one second, once: as long as the same one holds the lock, the next tries do not wait. After 30
 * seconds, when QSettings would take its lock for stale, it is removed; the hanging one finds out before it replaces the file.
 */
class SettingsLock
{
public:
    enum class Waiting {
        Allowed,
        None, ///< and a missing folder is not made
    };

    explicit SettingsLock(Waiting waiting);
    ~SettingsLock();

    /// Why there is no lock; empty while it is held.
    const Failure &failure() const { return m_failure; }
    /// False when somebody else took this one for a hanging process's, and writes by now.
    bool isHeld() const;
    /// For the next version of the file. Nobody else has that name while the lock is held.
    QByteArray temporaryPath() const { return m_temporaryPath; }

    /// Whether there is a lock file or what a dead writer may have left.
    static bool hasLeftovers();
    /// Removes what dead writers left, while the lock is held: temporary files of the library's own, and QSettings' lock of a lock.
    void sweepLeftovers() const;

private:
    Q_DISABLE_COPY(SettingsLock)

    enum class Attempt { Succeeded, Failed, Again, Busy };

    void acquire(Waiting waiting);
    Attempt create();
    Attempt lookAtOther();
    Attempt remove(const QByteArray &path);
    Attempt fail(const Failure &failure);
    bool isHolderKnown() const;
    void rememberHolder() const;

    FileDescriptor m_file;
    Failure m_failure;
    QByteArray m_temporaryPath;
    struct stat64 m_other = {}; // of the lock file in the way
    bool m_mayMakeFolder;
    bool m_hasRemovedOther = false;
};

} // namespace audio

#endif
