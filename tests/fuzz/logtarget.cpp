#include "logtarget.h"

#include "textview.h"

#include <explain/loggedunit.h>
#include <explain/logsource.h>
#include <explain/logstory.h>
#include <explain/logsummary.h>
#include <explain/scenariowriter.h>
#include <platform.h>
#include <timeline.h>

#include <algorithm>

namespace
{

/// Tells the unit and counts, as the bench does.
class Listener : public LogStoryListener
{
public:
    Listener(Timeline &timeline, LogSummary &summary)
        : m_unit(timeline)
        , m_summary(summary)
    {
    }

    void request(const LoggedRequest &request) override
    {
        m_unit.apply(request);
        m_summary.request(request);
    }
    void note(qint64 time, quint64 /*line*/, const QString &text) override { m_unit.note(time, text); }
    void focus(const FocusChange &change) override
    {
        m_unit.note(change.time, change.text);
        m_summary.focus(change);
    }
    void heading(qint64 time, quint64 /*line*/, const QString &text) override { m_unit.heading(time, text); }
    void reboot() override { LoggedUnit::restart(); }

private:
    LoggedUnit m_unit;
    LogSummary &m_summary;
};

/// Tells what the lines say, as the bench reads them from a file.
void tell(std::string_view log, LogStory &story)
{
    quint64 number = 0;
    while (!log.empty()) {
        const std::size_t end = std::min(log.find('\n'), log.size());
        std::string_view line = log.substr(0, end);
        log.remove_prefix(std::min(end + 1, log.size()));
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        const bool isTooLong = line.size() > LogSource::longestLine;
        story.add(line.substr(0, LogSource::longestLine), ++number, isTooLong);
    }
    story.finish();
}

} // namespace

QStringList timelineOf(std::string_view log)
{
    simulator::Platform::instance()->reset();
    LogFrames frames;
    LogClock clock;
    TextView view;
    Timeline timeline(&view);
    const auto limit = LogLimit::read(QStringLiteral("12:03:07"));
    LogSummary summary(clock, {limit, {}, {}, {}, false});
    Listener listener(timeline, summary);
    LogStory story(frames, clock, listener);
    tell(log, story);
    timeline.showUnfinished();
    summary.finish();
    return view.texts + QStringList(summary.toText());
}

QString scenarioOf(std::string_view log)
{
    QByteArray text;
    LogFrames frames;
    LogClock clock;
    ScenarioWriter writer([&text](const QByteArray &part) { text.append(part); }, ScenarioWriter::Purpose::Reading, QStringLiteral("unit.log"));
    LogStory story(frames, clock, writer);
    tell(log, story);
    writer.finish();
    return QString::fromUtf8(text);
}
