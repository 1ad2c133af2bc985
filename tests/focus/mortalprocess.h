#ifndef MORTALPROCESS_H
#define MORTALPROCESS_H

#include <QtCore/QProcess>
#include <QtCore/QStringList>

/**
 * A program that dies with the test, also when the test crashes.
 *
 * Its standard output is read line by line.
 */
class MortalProcess : public QProcess
{
    Q_OBJECT

public:
    explicit MortalProcess(QObject *parent = nullptr);
    ~MortalProcess() override;

    /**
     * Starts a program of this build and waits for its first line of output; its other lines are left to be read.
     *
     * @return the line without its end, or an empty text when none came in time
     */
    QString startAndReadLine(const QString &file, const QStringList &arguments);
    /// Waits for a line of output, running the event loop.
    QString readNextLine();
    /// Asks it to stop and waits for its end; false when it did not end in time.
    bool stop();

protected:
    void setupChildProcess() override;
};

#endif
