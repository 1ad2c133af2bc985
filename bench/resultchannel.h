#ifndef RESULTCHANNEL_H
#define RESULTCHANNEL_H

#include "scenarioresult.h"

#include <QtCore/QByteArray>

#include <optional>

/**
 * How the process that plays a scenario tells the one that watches it: a file in memory, written to as things happen, so that what is
 * known is known also after a process that was killed.
 */
class ResultChannel
{
public:
    /// The watching side: makes the file. Programs that are started inherit it.
    ResultChannel();
    /// The playing side. @param inherited the number of the file
    explicit ResultChannel(int inherited);
    ~ResultChannel();

    int descriptor() const;

    void writeStart();
    void writeCheck(const ScenarioResult::Check &check);
    void writeEnd(const ScenarioResult &result);

    struct Received
    {
        bool hasStarted = false;
        bool hasEnded = false;
        ScenarioResult result;
    };
    Received read() const;

private:
    Q_DISABLE_COPY(ResultChannel)

    void write(const QByteArray &line);

    int m_file;
};

#endif
