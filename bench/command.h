#ifndef COMMAND_H
#define COMMAND_H

#include <QtCore/QCommandLineParser>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

class HelpTopics;

/**
 * One command of the bench, such as "play": what it is called, what it takes and what it does.
 *
 * Command line, help, shell completion and the check of the manual page know no more of it than it tells here.
 */
class Command
{
public:
    struct Option
    {
        QString name;
        QString value; ///< name of the value, empty for a switch; FILE and DIR are what shells take them for
        QString help; ///< empty for what is not meant for people
        QChar letter = {}; ///< its short name; null for none
        QStringList values = {}; ///< words that the value can be
    };

    /// A status to end with, and when.
    struct Ending
    {
        int status;
        QString when;
    };

    /// What a word can be that is still to be typed.
    struct Completions
    {
        QStringList words;
        QString paths; ///< FILE or DIR where it can be such a path, too; else empty
    };

    virtual ~Command() = default;

    virtual QString name() const = 0;
    /// One line for the list of commands.
    virtual QString summary() const = 0;
    /// What follows the command's name: "FILE.js".
    virtual QString arguments() const = 0;
    virtual QVector<Option> options() const = 0;
    /// What a user should know beyond the options: paragraphs, which the help breaks to the terminal's width, and lists, whose lines begin
    /// with blanks and stand as they are.
    virtual QString details() const = 0;
    /// What it ends with besides what every command does (HelpText::endings()).
    virtual QVector<Ending> endings() const;
    /// What an argument can be that follows those @p before.
    virtual Completions completions(const QStringList &before) const;
    /// What "help" tells besides the commands; null for nothing. The command's own.
    virtual const HelpTopics *helpTopics() const;

    /// Whether timers are to run on virtual time. Asked before the application object is made.
    virtual bool wantsVirtualTime(const QCommandLineParser &parsed) const;

    /// Says what is wrong with the command line, on the standard error, and gives the exit status for it.
    int complain(const QString &message) const;

    /// Does it, with an application object, and gives the exit status.
    virtual int run(const QCommandLineParser &parsed) = 0;

protected:
    Command() = default;
    Q_DISABLE_COPY(Command)
};

#endif
