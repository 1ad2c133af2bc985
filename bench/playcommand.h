#ifndef PLAYCOMMAND_H
#define PLAYCOMMAND_H

#include "command.h"

/// "play": plays a scenario and prints its timeline.
class PlayCommand : public Command
{
public:
    QString name() const override;
    QString summary() const override;
    QString arguments() const override;
    QVector<Option> options() const override;
    QString details() const override;
    bool wantsVirtualTime(const QCommandLineParser &parsed) const override;
    int run(const QCommandLineParser &parsed) override;
};

#endif
