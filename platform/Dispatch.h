#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace orvalen {

using Task = std::function<void()>;

/// How urgently a background task should get a processor. A hint: systems without such classes ignore it.
enum class QualityOfService
{
    userInitiated,
    userInteractive,
};

/// A private queue whose tasks all run at once, each on a thread of its own.
class ConcurrentQueue
{
public:
    virtual ~ConcurrentQueue() = default;
    virtual void run(Task task) = 0;
};

/// A repeating task. Destroying it stops the repetition.
class RepeatingTask
{
public:
    virtual ~RepeatingTask() = default;
};

/// Where work runs. Every operation may be called on any thread unless it says otherwise and returns at once.
///
/// A background task never waits for another one: each gets a thread at once, or the call throws std::system_error and
/// the task never runs. (A bounded pool could queue the guard of a heater behind the heater itself.)
class Dispatch
{
public:
    virtual ~Dispatch() = default;

    /// Runs on the main thread after the current main-thread task, in posting order.
    virtual void onMain(Task task) = 0;

    /// Runs on the main thread, `delay` from now.
    virtual void onMainAfter(std::chrono::milliseconds delay, Task task) = 0;

    /// Runs on the main thread every `period`, the first time one period from now. Main thread only.
    [[nodiscard]] virtual std::unique_ptr<RepeatingTask> repeatOnMain(std::chrono::milliseconds period, Task task) = 0;

    /// Runs on a background thread.
    virtual void concurrently(QualityOfService quality, Task task) = 0;

    /// Runs on a background thread, `delay` from now, however busy or blocked every other thread is.
    virtual void concurrentlyAfter(std::chrono::milliseconds delay, Task task) = 0;

    /// A private queue. `label` names it in debuggers where the system can. Tasks still running when the queue is
    /// destroyed run to their end.
    [[nodiscard]] virtual std::unique_ptr<ConcurrentQueue> makeConcurrentQueue(const std::string &label) = 0;
};

} // namespace orvalen
