#ifndef OPERATIONS_H
#define OPERATIONS_H

#include <vector>

class InputBytes;
class UnitLife;

/// One thing that can be done with a unit, with whatever arguments the bytes give.
struct Operation
{
    const char *name;
    void (*perform)(UnitLife &life, InputBytes &input);
};

/// Ends the process where that does not hold.
void require(bool holds, const char *what);

std::vector<Operation> facadeOperations();
std::vector<Operation> storeOperations();
std::vector<Operation> managerOperations();
std::vector<Operation> focusOperations();
/// Time, faults of the platform, power, and what others do to the settings file.
std::vector<Operation> carOperations();

#endif
