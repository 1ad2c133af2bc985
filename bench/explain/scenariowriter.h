#ifndef SCENARIOWRITER_H
#define SCENARIOWRITER_H

#include "logstory.h"
#include "replaytimes.h"
#include "requestscript.h"
#include "scenariostep.h"
#include "storedsettings.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <optional>

/**
 * Writes a scenario that does what a log tells: the same requests at the same times. What timers of the library did is awaited.
 *
 * Line by line as the log is read; only what a timed mute begins waits for its end.
 */
class ScenarioWriter : public LogStoryListener
{
public:
    enum class Purpose {
        Reading, ///< with the log's headings and times, what the platform was sent as expectations, and what it refused as faults
        Replay, ///< the requests alone
    };

    /// Receives the scenario's text in parts.
    using Output = std::function<void(const QByteArray &)>;

    /// @param log its name @param stored what the unit starts with instead of what the log tells
    /// @param goesOn the unit has what an earlier scenario left it
    ScenarioWriter(Output receivesText, Purpose chosen, const QString &log, std::optional<StoredSettings> stored = std::nullopt, bool goesOn = false);

    void request(const LoggedRequest &request) override;
    void note(qint64 time, quint64 line, const QString &text) override;
    void heading(qint64 time, quint64 line, const QString &text) override;
    void reboot() override;
    /// The log has ended.
    void finish();

    /// What the timer is for that the request is one of, in words.
    static QString purposeOf(const LoggedRequest &request);
    /// The heading behind which the log begins.
    static QString beginning();

    /// Whether the last request is in the scenario: of some a log does not say how they were made.
    bool hasMadeLast() const { return m_hasMadeLast; }
    /// Requests so far, and those of which the log does not say all.
    quint64 requests() const { return m_requests; }
    quint64 incomplete() const { return m_incomplete; }
    qint64 duration() const { return m_times.now(); }

private:
    struct TimedMute
    {
        qint64 start; // in the scenario's time
        qint64 told; // in the log's
        int line; // of those that wait
    };

    void writeHead(const LoggedRequest &request);
    void writeSettings(const StoredSettings &stored);
    void begin(const LoggedRequest &request);
    void startManager(const LoggedRequest &request);
    void await(const LoggedRequest &request, qint64 time, const QString &purpose);
    bool awaitsUnmute(const LoggedRequest &request);
    void make(const LoggedRequest &request);
    void makeStatements(const LoggedRequest &request);
    void addStep(const LoggedRequest &request);
    void flushStep();
    void waitUntil(qint64 time, bool isTimer, const QString &remark);
    void resolveMute(qint64 count, const QString &remark = {});
    void endMute(const QString &remark);
    void comment(const QString &text);
    void write(const QString &line);
    void writeNow(const QString &line);
    bool isForPeople() const { return m_purpose == Purpose::Reading; }

    Output m_output;
    Purpose m_purpose;
    QString m_log;
    std::optional<StoredSettings> m_stored;
    bool m_goesOn;
    ReplayTimes m_times;
    RequestScript m_script;
    ScenarioStep m_step;
    QStringList m_stepLines; // what the step does
    bool m_stepIsTimer = false;
    qint64 m_waited = 0; // the scenario's time as written
    std::optional<TimedMute> m_mute;
    QStringList m_waiting; // lines, until the timed mute ends
    QStringList m_headings; // until the next request
    QStringList m_notes;
    bool m_hasMadeLast = false;
    bool m_hasBegun = false;
    bool m_isOn = false;
    bool m_isLargeHome = false;
    quint64 m_requests = 0;
    quint64 m_incomplete = 0;
};

#endif
