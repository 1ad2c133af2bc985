#ifndef HELPTEXT_H
#define HELPTEXT_H

#include "commandlist.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <optional>

/// What the bench tells about its commands, made from what they say of themselves and broken to the terminal's width.
namespace HelpText
{
/// The list of commands.
QString overview(const CommandList &commands);

/// All about a command.
QString ofCommand(const Command &command);

/// All about a command, or else one of the commands' topics; empty where there is neither.
std::optional<QString> on(const QString &name, const CommandList &commands);

/// All that on() knows.
QStringList names(const CommandList &commands);

/// What the commands end with, by status: what every command does, and what they add.
QVector<Command::Ending> endings(const QVector<const Command *> &commands);

/// "unknown command comands", with advice where one of the @p known is meant.
QString unknown(const QString &name, const QStringList &known);
} // namespace HelpText

#endif
