#ifndef COMMAND_H
#define COMMAND_H

#include <QtCore/QCommandLineParser>
#include <QtCore/QString>
#include <QtCore/QVector>

/// One command of the bench, such as "play": what it is called, what it takes and what it does.
class Command
{
public:
    struct Option
    {
        QString name;
        QString value; ///< name of the value, empty for a switch
        QString help; ///< empty for what is not meant for people
        QChar letter = {}; ///< its short name; null for none
    };

    /// What the bench ends with, whatever the command; for its help.
    static QString exitStatuses();

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
