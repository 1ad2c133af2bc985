#include "equalizertarget.h"

#include <cstddef>
#include <cstdint>

// Called by the fuzzer, which brings main().

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    importedFrom({reinterpret_cast<const char *>(data), size});
    return 0;
}
