#pragma once

#include <functional>
#include <memory>

#include "platform/Dispatch.h"

namespace orvalen {

/// The main queue is Qt's event loop of the thread on which this object was made; a background task is a thread.
///
/// Made on the main thread while the application object exists. Tasks posted before the loop runs wait for it. Once the
/// application object is gone, main-thread tasks and repetitions are dropped silently; background tasks still run.
///
/// Tasks handle their own errors. An exception that leaves a background task ends that task alone and is lost; one that
/// leaves a main-thread task goes into Qt's event loop, which does not survive it.
class DispatchQt : public Dispatch
{
public:
    /// Makes the calling thread what a quality of service asks for. Must not throw.
    using PrepareThread = std::function<void(QualityOfService)>;

    /// `prepareThread`, if any, is what each thread of `concurrently` begins with; a delayed task is one that the user
    /// has initiated, one of a private queue has no quality. Threads keep a copy: it may be called after this is gone.
    explicit DispatchQt(PrepareThread prepareThread = {});
    ~DispatchQt() override;

    void onMain(Task task) override;
    void onMainAfter(std::chrono::milliseconds delay, Task task) override;
    [[nodiscard]] std::unique_ptr<RepeatingTask> repeatOnMain(std::chrono::milliseconds period, Task task) override;
    void concurrently(QualityOfService quality, Task task) override;
    void concurrentlyAfter(std::chrono::milliseconds delay, Task task) override;
    [[nodiscard]] std::unique_ptr<ConcurrentQueue> makeConcurrentQueue(const std::string &label) override;

private:
    struct MainQueue;
    /// A thread of its own for `task`, with its quality.
    void startThread(QualityOfService quality, Task task);

    PrepareThread prepareThread;
    std::shared_ptr<MainQueue> mainQueue;
};

} // namespace orvalen
