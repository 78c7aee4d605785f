#include "tests/support/VirtualWorld.h"

#include <algorithm>
#include <system_error>

namespace orvalen::test {

class VirtualWorld::Repetition : public RepeatingTask
{
public:
    Repetition(VirtualWorld &world, std::chrono::milliseconds period, Task task)
        : world(world), state(std::make_shared<State>(State{period, std::move(task)}))
    {
        ++world.repetitions;
        schedule(world, state);
    }
    ~Repetition() override { --world.repetitions; }

private:
    struct State
    {
        std::chrono::milliseconds period;
        Task task;
    };

    static void schedule(VirtualWorld &world, const std::shared_ptr<State> &state)
    {
        world.at(world.time + state->period, [&world, weak = std::weak_ptr(state)] {
            if (const auto alive = weak.lock()) {
                schedule(world, alive); // first: a slow task does not shift the rhythm
                alive->task();
            }
        });
    }

    VirtualWorld &world;
    std::shared_ptr<State> state;
};

class VirtualWorld::HeaterQueue : public ConcurrentQueue
{
public:
    HeaterQueue(VirtualWorld &world, std::string label) : world(world), label(std::move(label)) {}
    void run(Task task) override
    {
        world.takeThread();
        world.heaters.push_back({label, std::move(task)});
    }

private:
    VirtualWorld &world;
    std::string label;
};

std::unique_ptr<RepeatingTask> VirtualWorld::repeatOnMain(std::chrono::milliseconds period, Task task)
{
    return std::make_unique<Repetition>(*this, period, std::move(task));
}

void VirtualWorld::concurrently(QualityOfService quality, Task task)
{
    takeThread();
    if (quality == QualityOfService::userInteractive)
        heaters.push_back({{}, std::move(task)});
    else
        at(time, std::move(task));
}

std::unique_ptr<ConcurrentQueue> VirtualWorld::makeConcurrentQueue(const std::string &label)
{
    return std::make_unique<HeaterQueue>(*this, label);
}

void VirtualWorld::concurrentlyAfter(std::chrono::milliseconds delay, Task task)
{
    takeThread();
    at(time + delay, std::move(task));
}

void VirtualWorld::takeThread()
{
    if (threadsLeft <= 0)
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    --threadsLeft;
}

bool VirtualWorld::runNext(std::chrono::nanoseconds until)
{
    if (events.empty() || events.begin()->first > until)
        return false;
    auto event = events.extract(events.begin());
    time = std::max(time, event.key());
    event.mapped()();
    return true;
}

void VirtualWorld::advance(std::chrono::nanoseconds duration)
{
    const auto until = time + duration;
    while (runNext(until)) {
    }
    time = std::max(time, until);
}

void VirtualWorld::runUntilIdle()
{
    while (events.size() > static_cast<std::size_t>(repetitions))
        runNext(events.begin()->first);
}

} // namespace orvalen::test
