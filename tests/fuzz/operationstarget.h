#ifndef OPERATIONSTARGET_H
#define OPERATIONSTARGET_H

#include "operations.h"

#include <string_view>
#include <vector>

/// Everything that can be done with a unit. What stands here is the meaning of corpora, so that new ones come last in their table.
const std::vector<Operation> &allOperations();

/**
 * Lives through what the bytes say: operations, with any arguments, one after the other on one unit. Gives how many.
 *
 * Ends the process where something does not hold that has to, whatever was done. Needs an application object on virtual time, and a
 * flash.
 */
int livedThrough(std::string_view bytes);

#endif
