#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace orvalen {

/// How long anybody waits for an answer unless told otherwise.
constexpr std::chrono::milliseconds boundedAnswerTime{500};

/// Makes the calling thread, which is about to ask, what it shall be.
using PrepareAskingThread = std::function<void()>;

/// A question to the machine that is answered within a bounded time whatever happens inside: it is asked on a thread of
/// its own, and what does not come in time is std::nullopt. While such a late answer is still on its way nobody waits
/// for it and nothing new is asked; when it has come, all is as before. An exception from inside counts as
/// std::nullopt.
///
/// An answer is never older than the question: it comes from an asking that began after it. Any thread, also several at
/// once.
template <typename Answer>
class BoundedQuestion
{
public:
    /// `question` is called on a thread of its own, never twice at once. It is kept until a late call of it returns,
    /// also beyond this object. `prepareThread`, if any, is what that thread begins with, and part of the first
    /// question's time. Must not throw.
    explicit BoundedQuestion(std::function<Answer()> question, std::chrono::nanoseconds limit = boundedAnswerTime,
                             PrepareAskingThread prepareThread = {})
        : limit(limit), worker(std::make_shared<Worker>(std::move(question), std::move(prepareThread)))
    {
    }

    /// Does not wait for a late answer either.
    ~BoundedQuestion()
    {
        std::unique_lock lock(worker->mutex);
        worker->isAbandoned = true;
        if (!worker->thread.joinable())
            return;
        if (worker->isAsking()) {
            worker->thread.detach();
            return;
        }
        lock.unlock();
        worker->asked.notify_one();
        worker->thread.join();
    }

    BoundedQuestion(const BoundedQuestion &) = delete;
    BoundedQuestion &operator=(const BoundedQuestion &) = delete;

    [[nodiscard]] std::optional<Answer> ask()
    {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        std::shared_ptr<const std::optional<Answer>> answer;
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
                if (worker->isAsking() && !worker->isLate) {
                    worker->isLate = true;
                    worker->answered.notify_all();
                }
                return std::nullopt;
            }
            answer = worker->latest;
        }
        return *answer;
    }

private:
    /// Askings are numbered from 1 on. At most one is under way: the one that has been begun and not ended.
    struct Worker
    {
        Worker(std::function<Answer()> question, PrepareAskingThread prepareThread)
            : question(std::move(question)), prepareThread(std::move(prepareThread))
        {
        }

        void run()
        {
            if (prepareThread)
                prepareThread();
            std::unique_lock lock(mutex);
            for (;;) {
                asked.wait(lock, [this] { return isAbandoned || wanted > ended; });
                if (isAbandoned)
                    return;
                ++begun;
                lock.unlock();
                auto answer = std::make_shared<const std::optional<Answer>>(answerOrNothing());
                lock.lock();
                ended = begun;
                isLate = false;
                latest = std::move(answer);
                answered.notify_all();
            }
        }

        [[nodiscard]] bool isAsking() const { return begun > ended; }

        [[nodiscard]] std::optional<Answer> answerOrNothing()
        {
            try {
                return question();
            } catch (...) {
                return std::nullopt;
            }
        }

        const std::function<Answer()> question;  ///< Used by the thread alone.
        const PrepareAskingThread prepareThread; ///< The same.
        std::thread thread;                      ///< Started by the first question.

        std::mutex mutex; ///< Guards all that follows, and `thread`.
        std::condition_variable asked;
        std::condition_variable answered;
        std::uint64_t wanted = 0;
        std::uint64_t begun = 0;
        std::uint64_t ended = 0;
        bool isLate = false; ///< Somebody has waited in vain for the answer that is on its way.
        bool isAbandoned = false;
        std::shared_ptr<const std::optional<Answer>> latest; ///< Of the asking that ended last.
    };

    const std::chrono::nanoseconds limit;
    const std::shared_ptr<Worker> worker; ///< Shared with its thread.
};

} // namespace orvalen
