#ifndef COMPLETION_H
#define COMPLETION_H

#include "commandlist.h"

#include <QtCore/QStringList>

/// For shells, which complete a command line that is being typed.
namespace Completion
{
/**
 * What the last of the words can become, which may be empty or the beginning of what it will be.
 *
 * @param words without the program's name; of "--color=al" the result completes "al" only
 */
Command::Completions of(const QStringList &words, const CommandList &commands);
} // namespace Completion

#endif
