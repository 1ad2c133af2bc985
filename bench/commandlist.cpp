#include "commandlist.h"

#include <algorithm>

Command *findCommand(const CommandList &commands, const QString &name)
{
    const auto found = std::find_if(commands.cbegin(), commands.cend(), [&name](const auto &command) { return command->name() == name; });
    return found == commands.cend() ? nullptr : found->get();
}

QStringList commandNames(const CommandList &commands)
{
    QStringList names;
    for (const auto &command : commands)
        names.append(command->name());
    return names;
}
