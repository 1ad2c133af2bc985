#ifndef PLAYEDSCENARIO_H
#define PLAYEDSCENARIO_H

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// A scenario that was played by a process of its own, for what it tells.
struct PlayedScenario
{
    int status = 0; ///< Success, Failed, or what else it ended with: that was said
    QByteArray output;

    /// Whether the word of a command line stands for a scenario: a file that ends in .js, or the name of one that comes with the bench.
    static bool isOne(const QString &word);

    /// @param options of "play"
    static PlayedScenario play(const QString &scenario, const QStringList &options);
};

#endif
