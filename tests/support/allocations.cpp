#include "allocations.h"

#include <cstddef>

namespace
{

thread_local int count = 0;

} // namespace

int allocationCount()
{
    return count;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// The compiler brings the function, but no header that declares it.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*allocated)(const volatile void *, std::size_t), void (*freed)(const volatile void *));

namespace
{

void blockAllocated(const volatile void *, std::size_t)
{
    ++count;
}

void blockFreed(const volatile void *)
{
}

[[maybe_unused]] const int hooks = __sanitizer_install_malloc_and_free_hooks(blockAllocated, blockFreed);

} // namespace

#else

extern "C" {

void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t number, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);

void *malloc(std::size_t size)
{
    ++count;
    return __libc_malloc(size);
}

void *calloc(std::size_t number, std::size_t size)
{
    ++count;
    return __libc_calloc(number, size);
}

void *realloc(void *block, std::size_t size)
{
    ++count;
    return __libc_realloc(block, size);
}
}

#endif
