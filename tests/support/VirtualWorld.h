#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/Dispatch.h"

namespace orvalen::test {

/// A clock and its queues in which thirty days take seconds. Everything runs on the test's own thread, in order of
/// virtual time: a task that sleeps lets the others run meanwhile, nested in its sleep.
///
/// Two consequences: only one sleeping task at a time keeps its exact rhythm, and `advance` may overshoot while a task
/// sleeps in it; what shall happen in mid-pulse is scheduled beforehand with `at`. Tasks that load the machine (user
/// interactive ones, and those of a private queue) never sleep; they are kept in `heaters` and not run.
class VirtualWorld : public Clock, public Dispatch
{
public:
    std::chrono::nanoseconds now() const override { return time; }
    void sleepFor(std::chrono::nanoseconds duration) override { advance(duration); }

    void onMain(Task task) override { at(time, std::move(task)); }
    void onMainAfter(std::chrono::milliseconds delay, Task task) override { at(time + delay, std::move(task)); }
    std::unique_ptr<RepeatingTask> repeatOnMain(std::chrono::milliseconds period, Task task) override;
    void concurrently(QualityOfService quality, Task task) override;
    void concurrentlyAfter(std::chrono::milliseconds delay, Task task) override;
    std::unique_ptr<ConcurrentQueue> makeConcurrentQueue(const std::string &label) override;

    /// Runs `task` at that moment of virtual time.
    void at(std::chrono::nanoseconds moment, Task task) { events.emplace(moment, std::move(task)); }

    /// Runs everything that is due within `duration` and leaves the clock there.
    void advance(std::chrono::nanoseconds duration);

    /// Moves the clock without running anything, as a suspended machine does; what was due runs late.
    void jump(std::chrono::nanoseconds duration) { time += duration; }

    /// Runs what is due now.
    void settle() { advance(std::chrono::nanoseconds::zero()); }

    /// Ends everything that is under way, such as a pulse: runs until nothing but repeating tasks is left.
    void runUntilIdle();

    [[nodiscard]] std::size_t pendingEvents() const { return events.size(); }

    struct Heater
    {
        std::string queue; ///< Label of the private queue; empty for the global one.
        Task task;
    };
    std::vector<Heater> heaters;
    int threadsLeft = 1'000'000; ///< Background threads that can still be had; beyond them every request throws.

private:
    class Repetition;
    class HeaterQueue;
    void takeThread();
    bool runNext(std::chrono::nanoseconds until);

    std::chrono::nanoseconds time{0};
    std::multimap<std::chrono::nanoseconds, Task> events; // equal keys keep their order of insertion
    int repetitions = 0;
};

} // namespace orvalen::test
