#include "tests/platform/macos/fakes/AutoreleasePool.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include "platform/macos/AutoreleasePool.h"

namespace orvalen::fake {

namespace {

using Pool = std::vector<std::function<void()>>;
thread_local std::vector<std::unique_ptr<Pool>> pools;

} // namespace

void leaveToPool(std::function<void()> release)
{
    if (!pools.empty())
        pools.back()->push_back(std::move(release));
}

CFTypeRef autorelease(CFTypeRef object)
{
    leaveToPool([object] { CFRelease(object); });
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
    for (auto &left = *pools.back(); !left.empty();) { // what is released may leave more to it
        const auto release = std::move(left.back());
        left.pop_back();
        release();
    }
    pools.pop_back();
}
