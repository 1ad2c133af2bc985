#include "operationstarget.h"

#include "inputbytes.h"
#include "unitlife.h"

void require(bool holds, const char *what)
{
    if (!holds)
        qFatal("does not hold: %s", what);
}

const std::vector<Operation> &allOperations()
{
    static const std::vector<Operation> all = [] {
        std::vector<Operation> joined;
        for (const std::vector<Operation> &part : {facadeOperations(), storeOperations(), managerOperations(), focusOperations(), carOperations()})
            joined.insert(joined.end(), part.begin(), part.end());
        return joined;
    }();
    return all;
}

int livedThrough(std::string_view bytes)
{
    constexpr int most = 100; // or a long input takes seconds
    InputBytes input(bytes);
    UnitLife life;
    int count = 0;
    for (; !input.atEnd() && count < most; ++count) {
        const Operation &operation = allOperations().at(std::size_t(input.index(int(allOperations().size()))));
        operation.perform(life, input);
        life.check();
    }
    return count;
}
