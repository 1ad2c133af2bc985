#ifndef LOGREADING_H
#define LOGREADING_H

#include "logclock.h"
#include "logsource.h"

#include <QtCore/QString>

class LogFrames;
class LogStoryListener;

/// A log, from its file to whoever listens to its story. Says on the standard error what is the matter with it.
class LogReading
{
public:
    /// @param file a name, or LogSource::standardInput()
    LogReading(LogFrames &frames, const QString &file);

    /// @return false where the log cannot be opened, which was said
    bool open(bool isFollowed = false);
    /// Tells all of the log; of one that is followed, until interrupted.
    void read(LogStoryListener &listener);
    /// What became of it: Success, or what it says. To be asked when all that was read has been shown, since an archive that is cut has told
    /// something all the same.
    int status();

    /// The log's time, as far as it was read.
    LogClock &clock() { return m_clock; }
    const QString &file() const { return m_file; }
    /// Whether any line of the library was in it.
    bool hasToldAnything() const { return m_understood > 0; }

private:
    Q_DISABLE_COPY(LogReading)

    int fail(const QString &problem) const;

    LogFrames &m_frames;
    const QString m_file;
    LogSource m_source;
    LogClock m_clock;
    bool m_isFollowed = false;
    quint64 m_understood = 0;
};

#endif
