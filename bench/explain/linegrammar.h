#ifndef LINEGRAMMAR_H
#define LINEGRAMMAR_H

#include "loglines.h"

/**
 * Which lines an operation writes, itself and through those that it calls.
 *
 * The library tells where an operation begins and never where it ends. That it has ended shows when a line comes that it does not write:
 * then the line belongs to an operation around it, or begins another request.
 */
namespace LineGrammar
{

/// Where in an operation the next line may come from: an index of its lines, from 0.
using Position = int;
constexpr Position notThere = -1;

/**
 * @param operation of which @p position is known
 * @return the position behind the line @p next; notThere where the operation does not write it any more
 */
Position after(LogLines::Id operation, Position position, LogLines::Id next);

/// A line that any operation may write, wherever it stands: that something failed which is not meant to.
bool isAnywhere(LogLines::Id id);

/// Written when one of the policy's timers runs out: the timer's name, as in policynames::timers. Null for any other line.
const char *timerOf(LogLines::Id id);

} // namespace LineGrammar

#endif
