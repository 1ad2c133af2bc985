#ifndef PLAYCOMMAND_H
#define PLAYCOMMAND_H

#include "command.h"
#include "scripthelp.h"

#include <optional>

/**
 * "play": plays scenarios and shows what happens in them.
 *
 * Each is played by a process of its own (ScenarioRun), which is this command again with --in-process.
 */
class PlayCommand : public Command
{
public:
    QString name() const override;
    QString summary() const override;
    QString arguments() const override;
    QVector<Option> options() const override;
    QString details() const override;
    QVector<Ending> endings() const override;
    Completions completions(const QStringList &before) const override;
    const HelpTopics *helpTopics() const override;
    bool wantsVirtualTime(const QCommandLineParser &parsed) const override;
    int run(const QCommandLineParser &parsed) override;

private:
    enum class View { Brief, Drive, Requests, Everything, Json };

    /// What the command line asks for, once it was found to make sense.
    struct Request
    {
        View view = View::Drive;
        int repetitions = 1;
        int seconds = 0; ///< limit of real time; 0 for none
        int megabytes = 0; ///< limit of memory; 0 for none
        bool isStrict = false;
        bool isRealtime = false;
        bool showsLog = false;
        QString logFile; ///< empty for none
        QString soundFile; ///< what it sounds like is recorded there; empty for nowhere
        QString color;
        QString junit;
        QString flash;
    };

    /// Empty where it makes none: then it has complained.
    std::optional<Request> understand(const QCommandLineParser &parsed) const;
    static int list(const QStringList &words);
    static int playInProcess(const Request &request, const QString &file, int resultsTo);
    static int playAll(const Request &given, const QStringList &words);
    static QStringList optionsFor(const Request &request);

    ScriptHelp m_scriptHelp;
};

#endif
