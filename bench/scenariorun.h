#ifndef SCENARIORUN_H
#define SCENARIORUN_H

#include "scenarioresult.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

class Interruption;

/**
 * Plays one scenario in a process of its own, on a flash of its own, and watches it: whatever the scenario does, its result comes
 * back.
 *
 * The process is this program again, started by qzaudio-with-flash. It shares the standard output and error.
 */
class ScenarioRun
{
public:
    struct Settings
    {
        QStringList options; ///< of the playing process
        QString flash; ///< folder for the settings; empty for one that is gone afterwards
        int seconds = 0; ///< of real time, after which the process is killed if it did not end by itself; 0 for no limit
        bool storyToError = false; ///< the standard output belongs to a report
        int output = -1; ///< descriptor that gets the standard output; -1 for this process's own
    };

    /// @param interrupted ends a run at once
    ScenarioRun(const Settings &chosen, Interruption &interrupted);

    struct Outcome
    {
        ScenarioResult result;
        QString problem; ///< why it could not be played at all; empty when it was
        qint64 milliseconds = 0; ///< of real time
        bool isInterrupted = false;
        bool isOutputLost = false; ///< what the playing process wrote did not arrive
    };

    /// @param file as given on the command line @param input the scenario's text where the file is the standard input
    Outcome play(const QString &file, const QByteArray &input);

    /// Whether settings are kept in the library's own folder, so that no other has to be put in its place.
    static bool isLibrarysFolder(const QString &flash);

private:
    Settings m_settings;
    Interruption &m_interruption;
};

#endif
