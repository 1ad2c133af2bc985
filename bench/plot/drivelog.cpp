#include "drivelog.h"

#include "playedscenario.h"

#include "console.h"
#include "exitstatus.h"
#include "explain/logstory.h"

namespace
{

int fail(const QString &file, const QString &problem)
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(Console::printable(file), Console::printable(problem)));
    return UsageError;
}

} // namespace

int DriveLog::open(const QString &word)
{
    m_file = word;
    if (PlayedScenario::isOne(word)) {
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
    const PlayedScenario played = PlayedScenario::play(scenario, {QStringLiteral("--brief"), QStringLiteral("--log-to"), m_file});
    m_hasFailed = played.status == Failed;
    return m_hasFailed ? int(Success) : played.status;
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
