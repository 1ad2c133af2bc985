#ifndef DRIVELOG_H
#define DRIVELOG_H

#include "driveheading.h"

#include "explain/logfilter.h"
#include "explain/logframes.h"
#include "explain/logreading.h"

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>
#include <QtCore/QVector>

#include <memory>

class LogStoryListener;

/// The log of a drive: one that there is, or that of a scenario, which is played for it by a process of its own. Says what is the matter with it.
class DriveLog
{
public:
    DriveLog() = default;

    /// Plays the scenario, where it is one. @return an exit status: Success also for a scenario that failed, whose log goes as far as it came
    int open(const QString &word);

    /// The log's time; only of one that is open.
    const LogClock &clock() const { return m_reading->clock(); }

    /// What a scenario says of its parts, which its log does not have; none of a log.
    QVector<DriveHeading> headings() const { return m_headings; }

    /// Tells all of it. @return an exit status: Failed for a scenario that failed
    int read(LogStoryListener &listener);
    /// The same, where a limit has to be a time of the log.
    int read(LogStoryListener &listener, const LogFilter::Wanted &limits);

private:
    Q_DISABLE_COPY(DriveLog)

    int play(const QString &scenario);

    QTemporaryDir m_folder;
    QString m_file;
    QVector<DriveHeading> m_headings;
    LogFrames m_frames;
    std::unique_ptr<LogReading> m_reading;
    bool m_hasFailed = false;
};

#endif
