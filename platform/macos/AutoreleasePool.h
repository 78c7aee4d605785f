#pragma once

// The two calls that every Objective-C compiler makes for a pool; clang's description of reference counting gives them.
extern "C" {
void *objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void *pool);
}

namespace orvalen {

/// Frees what the system's own functions have autoreleased on this thread meanwhile. The main thread's event loop does
/// so in each round; a thread of ours that lives on would gather it for ever.
class [[nodiscard]] AutoreleasePool
{
public:
    AutoreleasePool() = default;
    AutoreleasePool(const AutoreleasePool &) = delete;
    AutoreleasePool &operator=(const AutoreleasePool &) = delete;
    ~AutoreleasePool() { objc_autoreleasePoolPop(pool); }

private:
    void *const pool = objc_autoreleasePoolPush();
};

} // namespace orvalen
