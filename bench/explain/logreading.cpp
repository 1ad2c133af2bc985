#include "logreading.h"

#include "console.h"
#include "exitstatus.h"
#include "interruption.h"
#include "logstory.h"

namespace
{

/// ms after which the lines that came last are taken for all of a request, where the log is followed.
constexpr int patience = 200;

} // namespace

LogReading::LogReading(LogFrames &frames, const QString &file)
    : m_frames(frames)
    , m_file(file)
{
}

bool LogReading::open(bool isFollowed)
{
    m_isFollowed = isFollowed;
    const QString problem = m_source.open(m_file, isFollowed);
    if (!problem.isEmpty())
        fail(problem);
    return problem.isEmpty();
}

void LogReading::read(LogStoryListener &listener)
{
    LogStory story(m_frames, m_clock, listener);
    std::string_view line;
    while (Interruption::received() == 0) {
        const LogSource::Next next = m_source.next(line);
        story.addNotes(m_source.takeNotes());
        if (next == LogSource::Next::End)
            break;
        if (next == LogSource::Next::Line) {
            story.add(line, m_source.lineNumber(), m_source.wasCut());
        } else if (m_isFollowed) {
            m_source.wait(patience);
            if (m_source.next(line) == LogSource::Next::Line)
                story.add(line, m_source.lineNumber(), m_source.wasCut());
            else
                story.pause();
        }
    }
    story.finish();
    m_understood = story.understood();
}

int LogReading::status()
{
    const QString failure = m_source.failure();
    if (!failure.isEmpty())
        return fail(failure);
    if (m_understood > 0 || Interruption::received() != 0)
        return Success;
    Console::error(
        QStringLiteral("qzaudio-bench: %1: no line of the audio library in %2 lines; looked for [DBG], [ERR] and [QT] with the library's words behind them\n")
            .arg(Console::printable(m_file))
            .arg(m_source.lineNumber()));
    return NothingFound;
}

int LogReading::fail(const QString &problem) const
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(Console::printable(m_file), Console::printable(problem)));
    return UsageError;
}
