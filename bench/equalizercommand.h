#ifndef EQUALIZERCOMMAND_H
#define EQUALIZERCOMMAND_H

#include "command.h"

class EqualizerText;

/// qzaudio-bench equalizer: curves from other tools' text files, and to them.
class EqualizerCommand : public Command
{
public:
    QString name() const override;
    QString summary() const override;
    QString arguments() const override;
    QVector<Option> options() const override;
    QString details() const override;
    QVector<Ending> endings() const override;
    Completions completions(const QStringList &before) const override;
    int run(const QCommandLineParser &parsed) override;

private:
    int importFrom(const QString &file, const QCommandLineParser &parsed) const;
    int exportOf(const QStringList &presets, const QCommandLineParser &parsed) const;
    int storeHere(const QString &gains) const;
};

#endif
