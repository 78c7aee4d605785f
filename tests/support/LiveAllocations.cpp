#include "tests/support/LiveAllocations.h"

#include <cstdlib>
#include <new>

namespace {

long count = 0;

} // namespace

long orvalen::test::liveAllocations()
{
    return count;
}

void *operator new(std::size_t size)
{
    void *memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    ++count;
    return memory;
}

void operator delete(void *memory) noexcept
{
    count -= memory != nullptr;
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    operator delete(memory);
}
