#ifndef EXPLAINCOMMAND_H
#define EXPLAINCOMMAND_H

#include "command.h"

#include "explain/levelquestion.h"
#include "explain/logfilter.h"

#include <memory>
#include <optional>

class LogFrames;
class LogJsonView;
class LogReading;
class SettingsReader;

/// "explain": tells from the library's log lines what a head unit did.
class ExplainCommand : public Command
{
public:
    QString name() const override;
    QString summary() const override;
    QString arguments() const override;
    QVector<Option> options() const override;
    QString details() const override;
    QVector<Ending> endings() const override;
    Completions completions(const QStringList &before) const override;
    bool wantsVirtualTime(const QCommandLineParser &parsed) const override;
    int run(const QCommandLineParser &parsed) override;

private:
    enum class View {
        Drive,
        Requests,
        Everything,
        Json,
        Summary,
    };

    struct Request
    {
        View view = View::Drive;
        LogFilter::Wanted wanted;
        QString file;
        bool isFollowed = false;
        std::optional<LevelQuestion> question; ///< instead of a view
    };

    /// Empty where a mistake was said.
    std::optional<Request> understand(const QCommandLineParser &parsed) const;
    std::optional<LogFilter::Wanted> understandWanted(const QCommandLineParser &parsed) const;
    /// @param json receives the view where it is the one for programs
    static std::unique_ptr<TimelineView> viewFor(const Request &request, LogJsonView *&json);
    static void tell(const Request &request, LogReading &log);
    static void summarize(const Request &request, LogReading &log);
    /// @param unit its settings; null for none
    int explain(const Request &request, LogFrames &frames, const SettingsReader *unit) const;
    int answer(const LevelQuestion &question, LogReading &log, const SettingsReader *unit) const;
    /// Of a log that was read, with what is wrong with the limits that were given.
    int statusOf(LogReading &log, const LogFilter::Wanted &wanted) const;
};

#endif
