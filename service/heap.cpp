#include "heap.h"

#include <cstdlib> // defines __GLIBC__

#ifdef __GLIBC__
#include <malloc.h>
#endif

void heap::returnLargeBlocks()
{
#ifdef __GLIBC__
    // The allocator's own first values, which it leaves alone once they are set.
    constexpr int threshold = 128 * 1024; // bytes
    ::mallopt(M_MMAP_THRESHOLD, threshold);
    ::mallopt(M_TRIM_THRESHOLD, threshold);
#endif
}

void heap::trim()
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}
