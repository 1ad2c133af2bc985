#ifndef REPLAYOPTIONS_H
#define REPLAYOPTIONS_H

#include "command.h"

#include "storedsettings.h"

#include <QtCore/QString>

#include <optional>

class LogFrames;
class SettingsReader;

/// The options of "explain" that make a log's requests once more: as a scenario, or at once.
class ReplayOptions
{
public:
    explicit ReplayOptions(const QCommandLineParser &parsed);

    static QVector<Command::Option> rows();

    bool isWanted() const { return m_isReplayed || m_writesScenario; }
    /// A process of its own plays, so that this one runs on real time.
    bool isReplayed() const { return m_isReplayed; }
    /// What is wrong with the command line; empty for nothing.
    QString problem(const QCommandLineParser &parsed) const;

    /// @param unit its settings, to start with; null for what the log tells of them
    /// @return the exit status
    int run(LogFrames &frames, const QString &log, const SettingsReader *unit) const;

private:
    int writeScenario(LogFrames &frames, const QString &log, const std::optional<StoredSettings> &stored) const;
    int replay(LogFrames &frames, const QString &log, const std::optional<StoredSettings> &stored) const;

    bool m_isReplayed;
    bool m_writesScenario;
    QString m_scenario;
    bool m_keepsLog;
    QString m_keptLog;
};

#endif
