#ifndef OPTIONS_H
#define OPTIONS_H

#include <QtCore/QString>
#include <QtCore/QStringList>

/// What the command line of qzaudio-doctor says.
struct Options
{
    enum class Action { Examine, ShowHelp, ShowVersion, Complain };

    Action action = Action::Examine;
    QString complaint; ///< what is wrong, for Complain
    bool json = false;
    bool writeTest = false;
    int patienceMs = 2000;

    /// @param arguments without the program's name
    static Options parse(const QStringList &arguments);
    /// @param columns 0 where nobody knows how many there are
    static QString help(int columns);
};

#endif
