#pragma once

#include <condition_variable>
#include <mutex>

namespace orvalen::test {

/// A gate that others wait at. Who closes it opens it at the latest when the test ends.
class Gate
{
public:
    void close()
    {
        const std::lock_guard lock(mutex);
        isOpen = false;
    }
    void open()
    {
        const std::lock_guard lock(mutex);
        isOpen = true;
        changed.notify_all();
    }
    void pass()
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return isOpen; });
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    bool isOpen = true;
};

} // namespace orvalen::test
