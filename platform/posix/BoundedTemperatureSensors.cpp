#include "platform/posix/BoundedTemperatureSensors.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace orvalen {

namespace {

using Answer = std::optional<std::vector<TemperatureReading>>;

Answer readOrNothing(TemperatureSensors &sensors)
{
    try {
        return sensors.read();
    } catch (...) {
        return std::nullopt;
    }
}

} // namespace

/// Reads are numbered from 1 on. At most one is under way: the one that has been begun and not ended.
struct BoundedTemperatureSensors::Worker
{
    explicit Worker(std::unique_ptr<TemperatureSensors> inner) : inner(std::move(inner)) {}

    void run();
    [[nodiscard]] bool isReading() const { return begun > ended; }

    const std::unique_ptr<TemperatureSensors> inner; ///< Used by the thread alone.
    std::thread thread;                              ///< Started by the first question.

    std::mutex mutex; ///< Guards all that follows, and `thread`.
    std::condition_variable asked;
    std::condition_variable answered;
    std::uint64_t wanted = 0;
    std::uint64_t begun = 0;
    std::uint64_t ended = 0;
    bool isLate = false; ///< Somebody has waited in vain for the read that is under way.
    bool isAbandoned = false;
    std::shared_ptr<const Answer> latest; ///< Of the read that ended last.
};

void BoundedTemperatureSensors::Worker::run()
{
    std::unique_lock lock(mutex);
    for (;;) {
        asked.wait(lock, [this] { return isAbandoned || wanted > ended; });
        if (isAbandoned)
            return;
        ++begun;
        lock.unlock();
        auto answer = std::make_shared<const Answer>(readOrNothing(*inner));
        lock.lock();
        ended = begun;
        isLate = false;
        latest = std::move(answer);
        answered.notify_all();
    }
}

BoundedTemperatureSensors::BoundedTemperatureSensors(std::unique_ptr<TemperatureSensors> inner,
                                                     std::chrono::nanoseconds limit)
    : limit(limit), worker(std::make_shared<Worker>(std::move(inner)))
{
}

BoundedTemperatureSensors::~BoundedTemperatureSensors()
{
    std::unique_lock lock(worker->mutex);
    worker->isAbandoned = true;
    if (!worker->thread.joinable())
        return;
    if (worker->isReading()) {
        worker->thread.detach();
        return;
    }
    lock.unlock();
    worker->asked.notify_one();
    worker->thread.join();
}

std::optional<std::vector<TemperatureReading>> BoundedTemperatureSensors::read()
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::shared_ptr<const Answer> answer;
    {
        std::unique_lock lock(worker->mutex);
        if (worker->isLate)
            return std::nullopt;
        if (!worker->thread.joinable()) {
            try {
                worker->thread = std::thread([kept = worker] { kept->run(); });
            } catch (const std::system_error &) {
                return std::nullopt; // no thread to be had just now
            }
        }
        const auto ours = worker->begun + 1;
        worker->wanted = ours;
        worker->asked.notify_one();
        worker->answered.wait_until(lock, deadline, [&] { return worker->ended >= ours || worker->isLate; });
        if (worker->ended < ours) {
            if (worker->isReading() && !worker->isLate) {
                worker->isLate = true;
                worker->answered.notify_all();
            }
            return std::nullopt;
        }
        answer = worker->latest;
    }
    return *answer;
}

} // namespace orvalen
