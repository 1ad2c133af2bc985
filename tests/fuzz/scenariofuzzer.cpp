#include "fuzzapplication.h"
#include "scenariotarget.h"

#include <cstddef>
#include <cstdint>

// Called by the fuzzer, which brings main().

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) // NOLINT(readability-non-const-parameter): the fuzzer declares it so
{
    startFuzzApplication(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    played({reinterpret_cast<const char *>(data), size});
    return 0;
}
