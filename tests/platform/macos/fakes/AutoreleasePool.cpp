#include "tests/platform/macos/fakes/AutoreleasePool.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "platform/macos/AutoreleasePool.h"

namespace orvalen::fake {

namespace {

using Pool = std::vector<CFTypeRef>;
thread_local std::vector<std::unique_ptr<Pool>> pools;

} // namespace

CFTypeRef autorelease(CFTypeRef object)
{
    if (!pools.empty())
        pools.back()->push_back(object);
    return object;
}

} // namespace orvalen::fake

using namespace orvalen::fake;

void *objc_autoreleasePoolPush()
{
    pools.push_back(std::make_unique<Pool>());
    return pools.back().get();
}

void objc_autoreleasePoolPop(void *pool)
{
    if (pools.empty() || pools.back().get() != pool) {
        std::fputs("The autorelease pool's fake: the innermost pool must end first\n", stderr);
        std::abort();
    }
    for (const auto *const object : *pools.back())
        CFRelease(object);
    pools.pop_back();
}
