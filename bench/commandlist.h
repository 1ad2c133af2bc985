#ifndef COMMANDLIST_H
#define COMMANDLIST_H

#include "command.h"

#include <memory>
#include <vector>

/// Commands, in the order in which the help lists them.
using CommandList = std::vector<std::unique_ptr<Command>>;

/// The bench's own, made anew each time. What they are stands in bench/CMakeLists.txt, which writes this function.
CommandList knownCommands();

/// The one of this name, null for none.
Command *findCommand(const CommandList &commands, const QString &name);

QStringList commandNames(const CommandList &commands);

#endif
