#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include "command.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>
#include <vector>

/**
 * The command line: finds the command, checks its options, and answers --help and --version.
 *
 * Needs no application object and no platform.
 */
class CommandLine
{
public:
    explicit CommandLine(std::vector<std::unique_ptr<Command>> knownCommands);

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

private:
    Parsed help(const QStringList &arguments) const;
    Command *find(const QString &name) const;
    QString overview() const;
    static QString helpOf(const Command &command);
    static Parsed complain(const QString &message);

    std::vector<std::unique_ptr<Command>> m_commands;
};

#endif
