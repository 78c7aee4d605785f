#pragma once

#include <atomic>

namespace orvalen {

/// A small, unfair, non-recursive lock for threads whose purpose is to keep a core busy.
///
/// A thread that finds it taken spins far longer than it would at a mutex, because a waiting heater shall go on
/// heating; only if the owner has lost its processor does it park and leave a core to it. A thread that lets go while
/// others wait looks away for a moment, so that they get in: else the owner, whose core has the lock at hand, would
/// take it again at once, for seconds on end. bench/lock_bench compares it with its peers.
///
/// `unlock` touches the lock once more after it is open: whoever shares it must keep it alive until all have returned
/// from `unlock`, as a shared flag does.
template <int spinsBeforeParking =
              2'000'000> // about a millisecond: a running owner is through in less than one thousandth
class SpinThenParkLockOf
{
public:
    void lock()
    {
        if (!tryLock())
            lockContended();
    }

    void unlock()
    {
        if (state.exchange(open, std::memory_order_release) == takenWithParked)
            state.notify_all();
        if (waiting.load(std::memory_order_relaxed) > 0)
            lookAway();
    }

    /// Threads inside `lock` that have not got it yet.
    [[nodiscard]] int waitingThreads() const { return waiting.load(std::memory_order_relaxed); }

private:
    enum State : int
    {
        open,
        taken,
        takenWithParked,
    };

    static constexpr int spinsToLookAway = 100; // a few cache misses long

    bool tryLock()
    {
        int expected = open;
        return state.compare_exchange_strong(expected, taken, std::memory_order_acquire, std::memory_order_relaxed);
    }

    void lockContended()
    {
        waiting.fetch_add(1, std::memory_order_relaxed);
        while (!lockBySpinning() && state.exchange(takenWithParked, std::memory_order_acquire) != open)
            state.wait(takenWithParked, std::memory_order_relaxed);
        waiting.fetch_sub(1, std::memory_order_relaxed);
    }

    bool lockBySpinning()
    {
        for (int spins = 0; spins < spinsBeforeParking; ++spins) {
            if (state.load(std::memory_order_relaxed) == open && tryLock())
                return true;
        }
        return false;
    }

    void lookAway() const
    {
        for (int spins = 0; spins < spinsToLookAway && state.load(std::memory_order_relaxed) == open; ++spins) {
        }
    }

    std::atomic<int> state = open;
    std::atomic<int> waiting = 0;
};

using SpinThenParkLock = SpinThenParkLockOf<>;

} // namespace orvalen
