#ifndef OPTIONS_H
#define OPTIONS_H

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/// What the command line of qzaudio-focusd says.
struct Options
{
    enum class Action { Serve, ShowHelp, ShowVersion, Complain };

    Action action = Action::Serve;
    QString complaint; ///< what is wrong, for Complain
    bool systemBus = false;
    QString name = QStringLiteral("tavi.AudioService");
    QString path = QStringLiteral("/tavi/AudioService");
    int megaBaseCount = 4;
    bool volume = true;
    bool log = false;
    int watchdogSeconds = 30; ///< 0: none
    QVector<uint> callUsers; ///< numbers of the users who may request with the call's client id; empty: everybody

    /// @param arguments without the program's name
    static Options parse(const QStringList &arguments);
    static QString help();
};

#endif
