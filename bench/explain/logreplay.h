#ifndef LOGREPLAY_H
#define LOGREPLAY_H

#include "logstory.h"
#include "replaycomparison.h"
#include "scenariowriter.h"
#include "storedsettings.h"

#include <QtCore/QFile>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>
#include <QtCore/QVector>

#include <memory>
#include <optional>

class LogFile;

/**
 * Plays a log's requests on the simulated unit and compares the platform calls that they cause with those of the log.
 *
 * The platform refuses nothing, whatever the unit's did: that is what is looked for. Each process of the unit is played by one of its own, and
 * what one has stored the next one finds. What other processes did meanwhile is left out.
 */
class LogReplay : public LogStoryListener
{
public:
    /// @param log its name @param stored what the unit starts with instead of what the log tells
    LogReplay(const QString &log, const std::optional<StoredSettings> &stored);
    ~LogReplay() override;

    void request(const LoggedRequest &request) override;
    void note(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void heading(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void reboot() override;

    /**
     * Play all of it, also behind a difference, and keep the library's log of that, at the times of the log that is replayed. What leads to
     * where that begins stands at its beginning.
     *
     * @param file replaces what was there
     */
    void keepLog(const QString &file) { m_keptLog = file; }

    struct Outcome
    {
        std::optional<ReplayDifference> difference;
        quint64 calls = 0; ///< of the log
        quint64 compared = 0;
        quint64 incomplete = 0; ///< requests of which the log does not say all
        quint64 leftOut = 0; ///< requests of other processes
        bool beginsInTheMiddle = false; ///< the log has not the audio's start
        QString problem; ///< why it could not be played; empty when it was
    };

    /// The log has ended: plays it.
    Outcome play();

private:
    Q_DISABLE_COPY(LogReplay)

    void beginPart(qint64 time);
    void endPart();
    void addCalls(const LoggedRequest &request);
    bool isOfOtherThread(const LoggedRequest &request);
    QString partFile(int part, const char *ending) const;
    bool playPart(int part, LogFile &kept, Outcome &outcome) const;
    void comparePart(int part, QIODevice &told, Outcome &outcome) const;
    QString keepPart(int part, QIODevice &told, LogFile &kept) const;

    QString m_log;
    std::optional<StoredSettings> m_stored;
    QTemporaryDir m_folder;
    QString m_keptLog; // empty for none
    QVector<qint64> m_begins; // of each part, ms of the log's timeline
    int m_parts = 0;
    std::unique_ptr<ScenarioWriter> m_writer; // of the last part
    QFile m_script;
    QFile m_calls;
    QString m_problem;
    qint64 m_process = LogFrame::unknown; // of the last part
    qint64 m_thread = LogLine::unknown; // of its manager
    bool m_hasOtherThread = false;
    Outcome m_sum;
};

#endif
