#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "core/ThermalEngine.h"
#include "tests/support/FakeMachine.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;

/// Real threads, and a clock that a sleeper moves: nobody waits, and the thread sanitizer sees what the rules share.
class RealThreads : public Dispatch, public Clock
{
public:
    ~RealThreads() override { join(); }

    std::chrono::nanoseconds now() const override { return std::chrono::nanoseconds(time.load()); }
    void sleepFor(std::chrono::nanoseconds duration) override
    {
        time += duration.count();
        std::this_thread::yield();
    }

    void onMain(Task task) override
    {
        const std::lock_guard guard(lock);
        main.push_back(std::move(task));
        changed.notify_all();
    }
    void onMainAfter(std::chrono::milliseconds, Task task) override { onMain(std::move(task)); }
    std::unique_ptr<RepeatingTask> repeatOnMain(std::chrono::milliseconds, Task) override { return nullptr; }
    void concurrently(QualityOfService, Task task) override { run(std::move(task)); }
    void concurrentlyAfter(std::chrono::milliseconds delay, Task task) override
    {
        const std::lock_guard guard(lock);
        deadMen.push_back({delay, std::move(task)});
    }
    std::unique_ptr<ConcurrentQueue> makeConcurrentQueue(const std::string &) override
    {
        struct Queue : ConcurrentQueue
        {
            explicit Queue(RealThreads &owner) : owner(owner) {}
            void run(Task task) override
            {
                owner.run([&owner = owner, task = std::move(task)] {
                    owner.beginSpinning();
                    task();
                });
            }
            RealThreads &owner;
        };
        return std::make_unique<Queue>(*this);
    }

    /// Runs main-thread tasks until `done`.
    template <typename Done>
    void runMainUntil(Done done)
    {
        while (!done()) {
            Task task;
            {
                std::unique_lock guard(lock);
                changed.wait(guard, [this] { return !main.empty(); });
                task = std::move(main.front());
                main.pop_front();
            }
            task();
        }
    }

    /// Runs what has been posted so far.
    void drainMain()
    {
        while (!main.empty()) {
            const auto task = std::move(main.front());
            main.pop_front();
            task();
        }
    }

    void run(Task task)
    {
        const std::lock_guard guard(lock);
        threads.emplace_back(std::move(task));
    }

    /// Whether a spinner has begun, which is waited for.
    bool isSpinning()
    {
        std::unique_lock guard(lock);
        return spinning.wait_for(guard, 60s, [this] { return spinners > 0; });
    }

    /// Every thread must end by itself.
    void join()
    {
        while (true) {
            std::vector<std::thread> ending;
            {
                const std::lock_guard guard(lock);
                ending.swap(threads);
            }
            if (ending.empty())
                return;
            for (auto &thread : ending)
                thread.join();
        }
    }

    struct DeadMan
    {
        std::chrono::milliseconds delay;
        Task task;
    };
    std::vector<DeadMan> deadMen;

private:
    void beginSpinning()
    {
        const std::lock_guard guard(lock);
        ++spinners;
        spinning.notify_all();
    }

    std::atomic<std::int64_t> time = 0;
    std::mutex lock;
    std::condition_variable changed;
    std::condition_variable spinning;
    int spinners = 0; ///< That have begun so far.
    std::deque<Task> main;
    std::vector<std::thread> threads;
};

struct PulseThreads : ::testing::Test
{
    RealThreads threads;
    test::FakeMachine machine;
    const std::thread::id testThread = std::this_thread::get_id(); // plays the main thread
    std::atomic<int> progressCalls = 0;
    std::atomic<int> completions = 0;

    void startPulse(ThermalEngine &engine)
    {
        engine.executeControlledPulse(
            40.0,
            [this](double, double) {
                EXPECT_EQ(std::this_thread::get_id(), testThread);
                EXPECT_EQ(completions, 0);
                ++progressCalls;
            },
            [this](double) {
                EXPECT_EQ(std::this_thread::get_id(), testThread);
                ++completions;
            });
    }

    ThermalEngine::Machine engineMachine()
    {
        return {machine.sensors, machine.idle, machine.power, machine.graphics, machine.processors, threads, threads};
    }
};

TEST_F(PulseThreads, everyWorkerEndsWhenTheTargetIsReached)
{
    struct WarmingEngine : ThermalEngine
    {
        using ThermalEngine::ThermalEngine;
        SystemThermalData readSensors() override { return {30.0 + reads++, 0.0, 0.0, 0.0, 0.0, 0.0}; }
        std::atomic<int> reads = 0;
    } engine(engineMachine());
    startPulse(engine);
    threads.runMainUntil([this] { return completions == 1; });
    threads.join();
    threads.drainMain();
    EXPECT_EQ(progressCalls, 10);
}

TEST_F(PulseThreads, nothingWaitsForAGraphicsDriverThatLoads)
{
    std::atomic<bool> isLoading = false;
    std::atomic<bool> isLoaded = false;
    struct WarmingEngine : ThermalEngine
    {
        WarmingEngine(const Machine &machine, RealThreads &threads, std::atomic<bool> &isLoading)
            : ThermalEngine(machine), threads(threads), isLoading(isLoading)
        {
        }
        SystemThermalData readSensors() override
        {
            if (reads > 0) { // the first is before the workers
                isLoading.wait(false);
                EXPECT_TRUE(threads.isSpinning()) << "the driver is still loading";
            }
            return {30.0 + reads++, 0.0, 0.0, 0.0, 0.0, 0.0};
        }
        std::atomic<int> reads = 0;
        RealThreads &threads;
        std::atomic<bool> &isLoading;
    } engine(engineMachine(), threads, isLoading);
    machine.graphics.beforeOpen = [&] {
        isLoading = true;
        isLoading.notify_all();
        isLoaded.wait(false);
    };
    startPulse(engine);
    threads.runMainUntil([this] { return completions == 1; });
    isLoaded = true;
    isLoaded.notify_all();
    threads.join();
    threads.drainMain();
    EXPECT_EQ(progressCalls, 10);
    EXPECT_TRUE(machine.graphics.bufferSizes.empty()) << "the flag had fallen when the device was there";
    EXPECT_EQ(machine.graphics.copies, 0);
}

TEST_F(PulseThreads, aGraphicsDriverThatHangsHoldsOneThreadHoweverManyPulsesCome)
{
    std::atomic<int> opens = 0;
    std::atomic<bool> isReleased = false;
    machine.graphics.beforeOpen = [&] {
        ++opens;
        opens.notify_all();
        isReleased.wait(false);
    };
    struct WarmingEngine : ThermalEngine
    {
        using ThermalEngine::ThermalEngine;
        SystemThermalData readSensors() override
        {
            if (reads % 2 == 1) // the second of each pulse
                opens.wait(0);
            return {reads++ % 2 == 0 ? 30.0 : 40.0, 0.0, 0.0, 0.0, 0.0, 0.0};
        }
        std::atomic<int> reads = 0;
        std::atomic<int> &opens;
        WarmingEngine(const Machine &machine, std::atomic<int> &opens) : ThermalEngine(machine), opens(opens) {}
    } engine(engineMachine(), opens);
    for (int pulse = 1; pulse <= 5; ++pulse) {
        progressCalls = 0, completions = 0;
        startPulse(engine);
        threads.runMainUntil([this] { return completions == 1; });
    }
    isReleased = true;
    isReleased.notify_all();
    threads.join();
    EXPECT_EQ(opens, 1);

    machine.graphics.beforeOpen = [&] {
        ++opens;
        opens.notify_all();
    };
    completions = 0;
    opens = 0;
    engine.reads = 0;
    startPulse(engine);
    threads.runMainUntil([this] { return completions == 1; });
    threads.join();
    EXPECT_EQ(opens, 1) << "a driver that comes back after all is used again";
}

TEST_F(PulseThreads, everyWorkerEndsByTheDeadManWhileTheReadHangs)
{
    struct HangingEngine : ThermalEngine
    {
        using ThermalEngine::ThermalEngine;
        SystemThermalData readSensors() override
        {
            if (++reads == 4) {
                hanging = true;
                hanging.notify_all();
                released.wait(false);
            }
            return {30.0, 0.0, 0.0, 0.0, 0.0, 0.0};
        }
        std::atomic<int> reads = 0;
        std::atomic<bool> hanging = false;
        std::atomic<bool> released = false;
    } engine(engineMachine());
    startPulse(engine);
    engine.hanging.wait(false);
    ASSERT_EQ(threads.deadMen.size(), 1u);
    EXPECT_EQ(threads.deadMen.front().delay, 20s);
    threads.run(threads.deadMen.front().task);
    threads.runMainUntil([this] { return completions == 1; });

    engine.released = true; // the supervisor comes back late and finds nothing left to do
    engine.released.notify_all();
    threads.join();
    threads.drainMain();
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(progressCalls, 2);
}

TEST_F(PulseThreads, theDeadManAndTheSupervisorMayComeAtTheSameMoment)
{
    for (int round = 0; round < 200; ++round) {
        completions = 0;
        threads.deadMen.clear();
        struct WarmingEngine : ThermalEngine
        {
            using ThermalEngine::ThermalEngine;
            SystemThermalData readSensors() override { return {38.0 + reads++, 0.0, 0.0, 0.0, 0.0, 0.0}; }
            std::atomic<int> reads = 0;
        } engine(engineMachine());
        startPulse(engine);
        threads.run(threads.deadMen.front().task);
        threads.runMainUntil([this] { return completions == 1; });
        threads.join();
        threads.drainMain();
        EXPECT_EQ(completions, 1);
    }
}

} // namespace
} // namespace orvalen
