#ifndef RENDERCOMMAND_H
#define RENDERCOMMAND_H

#include "command.h"

#include "render/filtergraph.h"
#include "render/soundtrack.h"

#include <QtCore/QMap>

#include <optional>

class Rendering;

/**
 * "render": lets a scenario or a log be heard, as a file, and says how loud it is.
 *
 * A scenario is played by a process of its own as "play" does it, which records what it sounds like; a log by this one.
 */
class RenderCommand : public Command
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
    struct Request
    {
        QString word; ///< a scenario or a log
        QString output; ///< empty for none
        FilterGraph::Listener listener = FilterGraph::Listener::Loudspeakers;
        qint64 from = 0; ///< ms of the drive
        std::optional<qint64> to;
        qint64 longest = 0; ///< ms without a change; 0 for any
        QMap<QString, QString> files; ///< by source
        bool showsGraph = false;
        bool isPlayed = false;
        bool isReported = false;
        bool isJson = false;
    };

    /// A drive as it was recorded, and what became of it.
    struct Recorded
    {
        SoundTrack track;
        int status = 0; ///< of a scenario that failed; what is to be ended with where there is no sound
        bool isUsable = false;
    };

    std::optional<Request> understand(const QCommandLineParser &parsed) const;
    bool understandTimes(const QCommandLineParser &parsed, Request &request) const;
    bool understandSounds(const QCommandLineParser &parsed, Request &request) const;
    static Recorded record(const Request &request);
    static Recorded recordScenario(const QString &file, const QString &recording);
    static Recorded recordLog(const Request &request, const QString &recording);
    static int render(const Request &request, const SoundTrack &track);
    static int report(const Request &request, Rendering &rendering, const SoundTrack &track);
};

#endif
