#ifndef RECORDINGBACKUP_H
#define RECORDINGBACKUP_H

#include "recording.h"

#include <QtCore/QFile>
#include <QtCore/QLockFile>
#include <QtCore/QString>

#include <memory>

/**
 * What was recorded and not saved, kept in a file beside, line by line as it comes, so that it is there after a window that crashed.
 *
 * The file has a name of its own for each window that runs, and is gone when the window ends in order and of itself.
 */
class RecordingBackup
{
public:
    /// @param keptIn folder, made where it is missing
    explicit RecordingBackup(const QString &keptIn);
    ~RecordingBackup();

    /// All of a recording; nothing of one that has nothing unsaved.
    void keep(const Recording &recording);
    /// Its last step, which was added behind all that keep() or this was given before.
    void append(const Recording &recording);
    void clear();
    /// Whatever there is stays when this ends.
    void leaveBehind() { m_isLeftBehind = true; }

    /// A file that a window left behind which does not run any more; empty for none. It belongs to this window from now on.
    QString takeLeftBehind();

private:
    Q_DISABLE_COPY(RecordingBackup)

    QString path(const QString &name, const char *suffix) const;

    const QString m_folder;
    QString m_name;
    std::unique_ptr<QLockFile> m_lock;
    std::unique_ptr<QLockFile> m_otherLock;
    QFile m_file;
    bool m_isLeftBehind = false;
    qint64 m_lastTime = 0; // of what the file has
};

#endif
