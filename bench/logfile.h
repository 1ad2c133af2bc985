#ifndef LOGFILE_H
#define LOGFILE_H

#include <QtCore/QFile>
#include <QtCore/QString>

/// A file of log lines as a unit would keep it: each with its time in seconds, which begins at 0 with the drive.
class LogFile
{
public:
    explicit LogFile(const QString &file);

    /// Replaces what was there. @return what is the matter; empty when it is open
    QString open();
    /// @param time ms of the timeline
    void add(qint64 time, const QString &line);
    /// What was added can be read by others.
    void flush();
    /// @return why not all of it was written; empty where it was, or was never opened
    QString close();

private:
    Q_DISABLE_COPY(LogFile)

    QFile m_file;
    QString m_problem; // the first one
};

#endif
