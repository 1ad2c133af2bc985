#ifndef PLOTCOMMAND_H
#define PLOTCOMMAND_H

#include "command.h"

#include "explain/logfilter.h"
#include "plot/equalizerplot.h"
#include "plot/figure.h"

#include <optional>

/// "plot": draws what the unit does, on the terminal or into a file.
class PlotCommand : public Command
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
    /// A figure, or none where the status says why; of a drive that failed both.
    struct Drawn
    {
        std::optional<Figure> figure;
        int status = 0;
    };

    Drawn drawSubject(const QStringList &words, const QCommandLineParser &parsed) const;
    Drawn drawEqualizer(const QStringList &words, const QCommandLineParser &parsed) const;
    Drawn drawFade(const QCommandLineParser &parsed) const;
    Drawn drawTimeline(const QString &word, const QCommandLineParser &parsed) const;
    Drawn wrong(const QString &message) const { return {{}, complain(message)}; }
    /// What is wrong with the options of this subject; empty for nothing.
    static QString problemOfOptions(const QString &subject, const QCommandLineParser &parsed);
    static int write(const Figure &figure, const QString &file);
};

#endif
