#ifndef SETTINGSCOMMAND_H
#define SETTINGSCOMMAND_H

#include "command.h"

class SettingsReader;

/// "settings": shows a settings file, and follows its changes.
class SettingsCommand : public Command
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
    static QString table(const SettingsReader &reader);
    static QByteArray json(const SettingsReader &reader);
    static int watch(const QString &file);
};

#endif
