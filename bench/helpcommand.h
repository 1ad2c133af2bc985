#ifndef HELPCOMMAND_H
#define HELPCOMMAND_H

#include "command.h"

/// "help": tells about the commands and their topics, people and scripts alike.
class HelpCommand : public Command
{
public:
    QString name() const override;
    QString summary() const override;
    QString arguments() const override;
    QVector<Option> options() const override;
    QString details() const override;
    Completions completions(const QStringList &before) const override;
    int run(const QCommandLineParser &parsed) override;
};

#endif
