#pragma once

#include <atomic>

namespace orvalen {

/// A small, unfair, non-recursive mutex for threads whose purpose is to keep a core busy.
///
/// A thread that finds it taken spins for about as long as a scheduler's tick, far longer than a mutex would, because a
/// waiting heater shall go on heating; only if its owner has lost the processor for so long does it park and leave the
/// core to it. A thread that lets go while others wait looks away for a moment, so that they get in: else the owner,
/// whose core has the lock at hand, would take it again at once, for seconds on end. bench/lock_bench compares it with
/// its peers.
class SpinThenParkLock
{
public:
    void lock()
    {
        if (!tryLock())
            lockContended();
    }

    void unlock()
    {
        if (state.exchange(open, std::memory_order_release) == takenAndParked)
            state.notify_all();
        if (waiting.load(std::memory_order_relaxed) > 0)
            lookAway();
    }

private:
    enum State : int
    {
        open,
        taken,
        takenAndParked,
    };

    static constexpr int spinsBeforeParking = 2'000'000; // some milliseconds
    static constexpr int spinsToLookAway = 100;          // a few cache misses long

    bool tryLock()
    {
        int expected = open;
        return state.compare_exchange_strong(expected, taken, std::memory_order_acquire, std::memory_order_relaxed);
    }

    void lockContended()
    {
        waiting.fetch_add(1, std::memory_order_relaxed);
        for (int spins = 0; spins < spinsBeforeParking; ++spins) {
            if (state.load(std::memory_order_relaxed) == open && tryLock()) {
                waiting.fetch_sub(1, std::memory_order_relaxed);
                return;
            }
        }
        while (state.exchange(takenAndParked, std::memory_order_acquire) != open)
            state.wait(takenAndParked, std::memory_order_relaxed);
        waiting.fetch_sub(1, std::memory_order_relaxed);
    }

    void lookAway() const
    {
        for (int spins = 0; spins < spinsToLookAway && state.load(std::memory_order_relaxed) == open; ++spins) {
        }
    }

    std::atomic<int> state = open;
    std::atomic<int> waiting = 0;
};

} // namespace orvalen
