#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include <sys/types.h>

namespace orvalen {

/// Waits for child processes, but not for ever. Any thread.
class Watchdog
{
public:
    explicit Watchdog(std::chrono::nanoseconds patience);
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;
    /// No child may be waited for any more.
    ~Watchdog();

    /// Waits until the child has ended, and takes leave of it; its wait status. The leader of a process group; after
    /// our patience the whole group is killed.
    [[nodiscard]] int waitFor(pid_t group) noexcept;

private:
    using Clock = std::chrono::steady_clock;

    struct Guarded
    {
        pid_t group = 0;
        Clock::time_point deadline{};
    };

    void watch();

    const std::chrono::nanoseconds patience;
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Guarded> guarded;
    bool isIdle = false; ///< Only then the thread has to be told of a child: else it looks soon enough by itself.
    bool isEnding = false;
    std::thread thread;
};

} // namespace orvalen
