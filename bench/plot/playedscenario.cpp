#include "playedscenario.h"

#include "boundprocess.h"
#include "console.h"
#include "exitstatus.h"
#include "scenariofiles.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>

#include <csignal>

namespace
{

void say(const QString &scenario, const QString &text)
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(Console::printable(scenario), text));
}

} // namespace

bool PlayedScenario::isOne(const QString &word)
{
    if (word.endsWith(QLatin1String(".js")))
        return true;
    QString problem;
    return word != ScenarioFiles::standardInput() && !QFileInfo::exists(word) && ScenarioFiles::find(word, problem).size() == 1;
}

PlayedScenario PlayedScenario::play(const QString &scenario, const QStringList &options)
{
    BoundProcess player(SIGTERM); // it has a flash to take away
    player.start(QCoreApplication::applicationFilePath(), QStringList(QStringLiteral("play")) + options + QStringList{QStringLiteral("--"), scenario});
    constexpr int unlimited = -1; // the player has limits of its own
    const bool hasEnded = player.waitForFinished(unlimited) && player.exitStatus() == QProcess::NormalExit;
    PlayedScenario played{hasEnded ? player.exitCode() : int(UsageError), player.readAllStandardOutput()};
    if (!hasEnded)
        say(scenario, QStringLiteral("cannot be played: %1").arg(player.errorString()));
    else if (played.status == Failed)
        say(scenario, QStringLiteral("the scenario failed; \"qzaudio-bench play\" tells why"));
    else if (played.status != Success)
        Console::error(QString::fromUtf8(player.readAllStandardError()));
    return played;
}
