#ifndef SCENARIOSTACK_H
#define SCENARIOSTACK_H

#include "scenarioresult.h"

/// How a scenario came to a place, read from what the script engine tells. The bench's own functions are left out.
namespace ScenarioStack
{
using Frames = QVector<ScenarioResult::Frame>;

/// @param stack the property of an Error: a line "function@file:path:7" for each call, innermost first
Frames fromError(const QString &stack);

/// @param stack what the engine writes for debuggers: [frame={level="0",func="name",file="path",fullname="path",line="7",...},...]
Frames fromDebugger(const QString &stack);

/// The innermost line; 0 for none.
int line(const Frames &frames);

/// The same without most of the calls in the middle where there are very many. A frame of line 0 tells how many are left out.
Frames shortened(const Frames &frames);
} // namespace ScenarioStack

#endif
