#ifndef STARTOPTIONS_H
#define STARTOPTIONS_H

#include <QtCore/QString>
#include <QtCore/QStringList>

/// What the command line of qzaudio-desk asks for.
struct StartOptions
{
    QString file; ///< absolute; a scenario, or else a unit's log; empty for none
    QString room; ///< as the user wrote it; empty for the first
    QString look; ///< "dark", "light", or empty for the one that was chosen last
    bool wantsHelp = false;
    bool wantsVersion = false;
    QString problem; ///< what is wrong with the command line, in one line; empty for nothing

    /// A QCoreApplication is needed, which knows where scenarios are installed. @param arguments with the program's name as the first
    static StartOptions parse(const QStringList &arguments);
    /// A QCoreApplication is needed, whose name Qt puts into it.
    static QString helpText();
};

#endif
