#include "drivelog.h"

#include "playedscenario.h"

#include "console.h"
#include "exitstatus.h"
#include "explain/logstory.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace
{

int fail(const QString &file, const QString &problem)
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(Console::printable(file), Console::printable(problem)));
    return UsageError;
}

QVector<DriveHeading> headingsIn(const QByteArray &report)
{
    QVector<DriveHeading> headings;
    const auto lines = report.split('\n');
    for (const QByteArray &line : lines) {
        const QJsonObject event = QJsonDocument::fromJson(line).object();
        if (event.value(QLatin1String("event")) == QLatin1String("heading"))
            headings.append({qint64(event.value(QLatin1String("time")).toDouble()), event.value(QLatin1String("text")).toString()});
    }
    return headings;
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
    const PlayedScenario played = PlayedScenario::play(scenario, {QStringLiteral("--json"), QStringLiteral("--log-to"), m_file});
    m_headings = headingsIn(played.output);
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
