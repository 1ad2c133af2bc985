#include "fuzzapplication.h"
#include "logtarget.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

// Called by the fuzzer, which brings main().

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) // NOLINT(readability-non-const-parameter): the fuzzer declares it so
{
    startFuzzApplication(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view log(reinterpret_cast<const char *>(data), size);
    timelineOf(log);
    scenarioOf(log);
    return 0;
}
