#ifndef LEVELQUESTION_H
#define LEVELQUESTION_H

#include "command.h"
#include "logfilter.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

class LogReading;
class SettingsReader;

/// A question about how loud the unit of a log was, and why.
class LevelQuestion
{
public:
    enum class Kind {
        Why, ///< a source at a moment
        Quietest, ///< the moment at which something was
        Loudest,
        Jumps, ///< all moments at which a source became louder or quieter by so much
    };

    Kind kind = Kind::Why;
    QString source; ///< the platform's name; empty for all
    std::optional<LogLimit> at; ///< empty for the end of the log
    QString atGiven; ///< as it was
    double decibels = 0; ///< of a jump
    bool isJson = false;
    LogFilter::Wanted wanted; ///< from when to when, and what source

    static QVector<Command::Option> options();
    /**
     * What the command line asks; empty where it asks no such thing.
     *
     * @param problem receives what is wrong with it, else stays empty
     */
    static std::optional<LevelQuestion> read(const QCommandLineParser &parsed, QString &problem);

    /// Reads the log and prints the answer.
    /// @param unit its settings, for what the log does not say; null for none
    /// @param problem receives what is wrong with the question, now that the log is known
    /// @return an exit status
    int answer(LogReading &log, const SettingsReader *unit, QString &problem) const;

private:
    int answerWhy(LogReading &log, const SettingsReader *unit, QString &problem) const;
};

#endif
