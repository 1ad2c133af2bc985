#include "drivelog.h"

#include "console.h"
#include "exitstatus.h"
#include "explain/logstory.h"
#include "scenariofiles.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>

#include <csignal>
#include <sys/prctl.h>

namespace
{

/// A program that does not outlive this one.
class BoundProcess : public QProcess
{
protected:
    void setupChildProcess() override { prctl(PR_SET_PDEATHSIG, SIGTERM); }
};

int fail(const QString &file, const QString &problem)
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(Console::printable(file), Console::printable(problem)));
    return UsageError;
}

} // namespace

bool DriveLog::isScenario(const QString &word)
{
    if (word.endsWith(QLatin1String(".js")))
        return true;
    QString problem;
    return word != ScenarioFiles::standardInput() && !QFileInfo::exists(word) && ScenarioFiles::find(word, problem).size() == 1;
}

int DriveLog::open(const QString &word)
{
    m_file = word;
    if (isScenario(word)) {
        const int status = play(word);
        if (status != Success)
            return status;
    }
    m_reading = std::make_unique<LogReading>(m_frames, m_file);
    return m_reading->open() ? Success : UsageError;
}

int DriveLog::play(const QString &scenario)
{
    if (!m_folder.isValid())
        return fail(scenario, m_folder.errorString());
    m_file = m_folder.filePath(QStringLiteral("log"));
    BoundProcess player;
    player.setProcessChannelMode(QProcess::MergedChannels);
    player.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("play"), QStringLiteral("--brief"), QStringLiteral("--log-to"), m_file, QStringLiteral("--"), scenario});
    constexpr int unlimited = -1; // the player has limits of its own
    const bool hasEnded = player.waitForFinished(unlimited) && player.exitStatus() == QProcess::NormalExit;
    m_hasFailed = !hasEnded || player.exitCode() != Success;
    if (m_hasFailed)
        Console::error(QString::fromUtf8(player.readAll()));
    if (!hasEnded)
        return fail(scenario, QStringLiteral("cannot be played: %1").arg(player.errorString()));
    return player.exitCode() == Success || player.exitCode() == Failed ? int(Success) : player.exitCode();
}

int DriveLog::read(LogStoryListener &listener)
{
    m_reading->read(listener);
    const int status = m_reading->status();
    return status == Success && m_hasFailed ? int(Failed) : status;
}

int DriveLog::read(LogStoryListener &listener, const LogFilter::Wanted &limits)
{
    const int status = read(listener);
    for (const auto &limit : {limits.from, limits.to}) {
        if (limit && !limit->in(clock()))
            return fail(m_file, QStringLiteral("its lines have no such times as the one that was given"));
    }
    return status;
}
