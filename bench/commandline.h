#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include "commandlist.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

/**
 * The command line: finds the command, checks its options, and answers --help and --version.
 *
 * Needs no application object and no platform.
 */
class CommandLine
{
public:
    explicit CommandLine(CommandList given);

    struct Parsed
    {
        Command *command = nullptr; ///< to be run; null when everything is said already
        int exitStatus = 0; ///< then the status to end with
    };

    /**
     * @param arguments without the program's name
     * @param options receives the command's options and positional arguments
     *
     * Help and version go to the standard output, complaints to the standard error.
     */
    Parsed parse(const QStringList &arguments, QCommandLineParser &options) const;

    /// Says what is wrong with a command line of which the command is not known. Gives the exit status for it.
    static int complain(const QString &message);

private:
    CommandList m_commands;
};

#endif
