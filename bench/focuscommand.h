#ifndef FOCUSCOMMAND_H
#define FOCUSCOMMAND_H

#include "command.h"

/// "focus": a client of the audio focus service on the bus.
class FocusCommand : public Command
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
};

#endif
