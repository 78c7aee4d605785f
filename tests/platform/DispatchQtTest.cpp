#include "platform/qt/DispatchQt.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QThread>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <future>
#include <latch>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Long enough for any machine; only a failing test waits it out.
constexpr auto patience = 30s;

class DispatchQtTest : public ::testing::Test
{
protected:
    /// Runs the event loop until `condition` holds; false when it never did.
    bool pumpUntil(const std::function<bool()> &condition)
    {
        const auto deadline = steady_clock::now() + patience;
        while (!condition()) {
            if (steady_clock::now() > deadline)
                return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
        }
        return true;
    }

    int argc = 1;
    char name[5] = "test";
    char *argv[2] = {name, nullptr};
    std::optional<QCoreApplication> application{std::in_place, argc, argv};
    DispatchQt dispatch;
};

TEST_F(DispatchQtTest, runsMainTasksInPostingOrderOnTheMainThread)
{
    std::vector<int> order;
    for (int i = 1; i <= 3; ++i)
        dispatch.onMain([&order, i, main = QThread::currentThread()] {
            EXPECT_EQ(QThread::currentThread(), main);
            order.push_back(i);
        });
    EXPECT_THAT(order, IsEmpty()) << "a task ran inside the call that posted it";
    ASSERT_TRUE(pumpUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST_F(DispatchQtTest, tasksPostedBeforeTheLoopRunsWaitForIt)
{
    bool ran = false;
    dispatch.onMain([&] { ran = true; });
    dispatch.onMain([&] { QCoreApplication::exit(7); });
    EXPECT_EQ(QCoreApplication::exec(), 7);
    EXPECT_TRUE(ran);
}

TEST_F(DispatchQtTest, aTaskPostedByAMainTaskRunsAfterIt)
{
    std::vector<int> order;
    dispatch.onMain([&] {
        dispatch.onMain([&] { order.push_back(2); });
        order.push_back(1);
    });
    ASSERT_TRUE(pumpUntil([&] { return order.size() == 2; }));
    EXPECT_THAT(order, ElementsAre(1, 2));
}

TEST_F(DispatchQtTest, eachPostingThreadKeepsItsOwnOrder)
{
    constexpr int threads = 8, tasks = 500;
    std::vector<std::vector<int>> seen(threads);
    int total = 0;
    std::vector<std::jthread> posters;
    for (int t = 0; t < threads; ++t)
        posters.emplace_back([&, t] {
            for (int i = 0; i < tasks; ++i)
                dispatch.onMain([&, t, i] {
                    seen[t].push_back(i);
                    ++total;
                });
        });
    ASSERT_TRUE(pumpUntil([&] { return total == threads * tasks; }));
    for (const auto &one : seen)
        EXPECT_TRUE(std::is_sorted(one.begin(), one.end()));
}

TEST_F(DispatchQtTest, aDelayedMainTaskComesNoEarlierThanItsDelay)
{
    std::optional<steady_clock::time_point> ran;
    const auto posted = steady_clock::now();
    std::jthread([&] { dispatch.onMainAfter(30ms, [&] { ran = steady_clock::now(); }); }).join();
    ASSERT_TRUE(pumpUntil([&] { return ran.has_value(); }));
    EXPECT_GE(*ran - posted, 30ms);
}

TEST_F(DispatchQtTest, aLongerDelayComesLaterWhateverWasPostedFirst)
{
    std::vector<int> order;
    dispatch.onMainAfter(60ms, [&] { order.push_back(2); });
    dispatch.onMainAfter(10ms, [&] { order.push_back(1); });
    ASSERT_TRUE(pumpUntil([&] { return order.size() == 2; }));
    EXPECT_THAT(order, ElementsAre(1, 2));
}

TEST_F(DispatchQtTest, aRepetitionStartsOnePeriodFromNowAndGoesOn)
{
    const auto start = steady_clock::now();
    std::vector<steady_clock::duration> ticks;
    const auto repetition = dispatch.repeatOnMain(20ms, [&] { ticks.push_back(steady_clock::now() - start); });
    ASSERT_TRUE(pumpUntil([&] { return ticks.size() == 3; }));
    EXPECT_GE(ticks[0], 20ms);
    EXPECT_GE(ticks[2], 60ms);
}

TEST_F(DispatchQtTest, droppingTheHandleStopsTheRepetition)
{
    int dropped = 0, kept = 0;
    auto first = dispatch.repeatOnMain(1ms, [&] { ++dropped; });
    const auto second = dispatch.repeatOnMain(1ms, [&] { ++kept; });
    ASSERT_TRUE(pumpUntil([&] { return dropped > 0; }));
    first.reset();
    const int before = dropped;
    kept = 0;
    ASSERT_TRUE(pumpUntil([&] { return kept >= 10; }));
    EXPECT_EQ(dropped, before);
}

TEST_F(DispatchQtTest, aRepetitionMayEndItself)
{
    int calls = 0, other = 0;
    std::unique_ptr<RepeatingTask> repetition;
    repetition = dispatch.repeatOnMain(1ms, [&, canary = std::make_shared<int>(5)] {
        ++calls;
        repetition.reset();
        EXPECT_EQ(*canary, 5) << "the running task was freed under its own feet";
    });
    const auto clockwork = dispatch.repeatOnMain(1ms, [&] { ++other; });
    ASSERT_TRUE(pumpUntil([&] { return other >= 10; }));
    EXPECT_EQ(calls, 1);
}

TEST_F(DispatchQtTest, mainTasksAfterTheApplicationAreDroppedSilently)
{
    bool ran = false;
    auto repetition = dispatch.repeatOnMain(1ms, [&] { ran = true; });
    dispatch.onMain([&] { ran = true; }); // Waiting when the application ends.
    application.reset();

    ::testing::internal::CaptureStderr();
    dispatch.onMain([&] { ran = true; });
    dispatch.onMainAfter(0ms, [&] { ran = true; });
    const auto never = dispatch.repeatOnMain(1ms, [&] { ran = true; });
    repetition.reset();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");

    application.emplace(argc, argv); // Not even the next application gets them.
    DispatchQt next;
    bool nextRan = false;
    next.onMainAfter(5ms, [&] { nextRan = true; });
    ASSERT_TRUE(pumpUntil([&] { return nextRan; }));
    EXPECT_FALSE(ran);
}

TEST_F(DispatchQtTest, aDroppedTaskMayPostWhileItIsFreed)
{
    struct PostsAtTheEnd
    {
        explicit PostsAtTheEnd(Dispatch &dispatch) : dispatch(dispatch) {}
        ~PostsAtTheEnd()
        {
            dispatch.onMain([] {});
        }

        Dispatch &dispatch;
    };
    dispatch.onMain([last = std::make_shared<PostsAtTheEnd>(dispatch)] {});
    application.reset();
    dispatch.onMain([last = std::make_shared<PostsAtTheEnd>(dispatch)] {});
    SUCCEED() << "nothing waited for itself";
}

TEST_F(DispatchQtTest, postingWhileTheApplicationEndsIsSafe)
{
    std::atomic<bool> stop = false;
    std::atomic<int> posted = 0;
    std::jthread poster([&] {
        while (!stop) {
            dispatch.onMain([] {});
            dispatch.onMainAfter(1ms, [] {});
            ++posted;
        }
    });
    ASSERT_TRUE(pumpUntil([&] { return posted > 100; }));
    application.reset();
    const int atTheEnd = posted;
    while (posted < atTheEnd + 1000)
        std::this_thread::yield();
    stop = true;
}

TEST_F(DispatchQtTest, backgroundTasksRunOnThreadsOfTheirOwn)
{
    std::promise<std::thread::id> first, second;
    dispatch.concurrently(QualityOfService::userInitiated, [&] { first.set_value(std::this_thread::get_id()); });
    dispatch.concurrently(QualityOfService::userInteractive, [&] { second.set_value(std::this_thread::get_id()); });
    auto one = first.get_future(), two = second.get_future();
    ASSERT_EQ(one.wait_for(patience), std::future_status::ready);
    ASSERT_EQ(two.wait_for(patience), std::future_status::ready);
    EXPECT_NE(one.get(), std::this_thread::get_id());
}

TEST_F(DispatchQtTest, aBackgroundThreadIsPreparedForItsQualityFirst)
{
    using Preparation = std::pair<std::thread::id, QualityOfService>;
    static thread_local std::optional<Preparation> prepared;
    DispatchQt preparing([](QualityOfService quality) { prepared.emplace(std::this_thread::get_id(), quality); });
    const auto qualityOf = [](const std::function<void(Task)> &start) {
        std::promise<std::optional<Preparation>> seen;
        std::promise<std::thread::id> thread;
        start([&] {
            seen.set_value(prepared);
            thread.set_value(std::this_thread::get_id());
        });
        const auto preparation = seen.get_future().get();
        const auto runner = thread.get_future().get();
        EXPECT_EQ(preparation ? preparation->first : runner, runner);
        return preparation ? std::optional(preparation->second) : std::nullopt;
    };

    for (const auto quality : {QualityOfService::userInitiated, QualityOfService::userInteractive})
        EXPECT_EQ(qualityOf([&](const Task &task) { preparing.concurrently(quality, task); }), quality);
    EXPECT_EQ(qualityOf([&](const Task &task) { preparing.concurrentlyAfter(1ms, task); }),
              QualityOfService::userInitiated);
    const auto queue = preparing.makeConcurrentQueue("orvalen.pulse");
    EXPECT_EQ(qualityOf([&](const Task &task) { queue->run(task); }), std::nullopt);
    EXPECT_EQ(prepared, std::nullopt) << "the thread that asks is none of those";
}

TEST_F(DispatchQtTest, aThreadIsPreparedEvenWhenTheDispatchHasGoneMeanwhile)
{
    std::latch started(1), release(1);
    std::promise<int> prepared;
    std::optional<DispatchQt> preparing(std::in_place, [&, canary = std::make_shared<int>(5)](QualityOfService) {
        started.count_down();
        release.wait();
        prepared.set_value(*canary);
    });
    std::promise<void> done;
    preparing->concurrently(QualityOfService::userInitiated, [&] { done.set_value(); });
    started.wait();
    preparing.reset();
    release.count_down();
    EXPECT_EQ(prepared.get_future().get(), 5);
    done.get_future().get();
}

TEST_F(DispatchQtTest, sixtyFourBlockedTasksDoNotKeepTheNextOneWaiting)
{
    constexpr int blocked = 64;
    std::latch allRunning(blocked), release(1), allDone(3 * blocked);
    const auto queue = dispatch.makeConcurrentQueue("orvalen.pulse");
    for (int i = 0; i < blocked; ++i) {
        dispatch.concurrently(QualityOfService::userInitiated, [&] {
            allRunning.count_down();
            release.wait();
            allDone.count_down();
        });
        dispatch.concurrentlyAfter(0ms, [&] {
            release.wait();
            allDone.count_down();
        });
        queue->run([&] {
            release.wait();
            allDone.count_down();
        });
    }
    allRunning.wait();

    std::promise<void> next, guard, spinner;
    dispatch.concurrently(QualityOfService::userInitiated, [&] { next.set_value(); });
    dispatch.concurrentlyAfter(1ms, [&] { guard.set_value(); });
    queue->run([&] { spinner.set_value(); });
    EXPECT_EQ(next.get_future().wait_for(patience), std::future_status::ready);
    EXPECT_EQ(guard.get_future().wait_for(patience), std::future_status::ready);
    EXPECT_EQ(spinner.get_future().wait_for(patience), std::future_status::ready);
    release.count_down();
    allDone.wait();
}

TEST_F(DispatchQtTest, aDelayedBackgroundTaskNeedsNoMainLoop)
{
    std::promise<steady_clock::time_point> ran;
    const auto asked = steady_clock::now();
    dispatch.concurrentlyAfter(20ms, [&] { ran.set_value(steady_clock::now()); });
    auto result = ran.get_future(); // Nobody pumps events meanwhile.
    ASSERT_EQ(result.wait_for(patience), std::future_status::ready);
    EXPECT_GE(result.get() - asked, 20ms);
}

TEST_F(DispatchQtTest, aQueueMayGoBeforeItsTasks)
{
    std::latch release(1);
    std::promise<void> done;
    auto queue = dispatch.makeConcurrentQueue("orvalen.pulse");
    queue->run([&] {
        release.wait();
        done.set_value();
    });
    queue.reset();
    release.count_down();
    EXPECT_EQ(done.get_future().wait_for(patience), std::future_status::ready);
}

TEST_F(DispatchQtTest, aQueueNamesItsThreadsAsFarAsTheSystemTakesIt)
{
    const auto nameOnQueue = [&](const std::string &label) {
        std::promise<std::string> name;
        dispatch.makeConcurrentQueue(label)->run([&] {
            char text[32] = "";
            pthread_getname_np(pthread_self(), text, sizeof text);
            name.set_value(text);
        });
        return name.get_future().get();
    };
    EXPECT_EQ(nameOnQueue("orvalen.pulse"), "orvalen.pulse");
    const std::string longLabel = "a label of more than fifteen";
    EXPECT_TRUE(longLabel.starts_with(nameOnQueue(longLabel)));
    EXPECT_GE(nameOnQueue(longLabel).size(), 15u); // all that Linux takes; others take more
}

TEST_F(DispatchQtTest, anErrorInABackgroundTaskEndsThatTaskAlone)
{
    std::promise<void> thrown, after;
    dispatch.concurrently(QualityOfService::userInitiated, [&] {
        thrown.set_value();
        throw std::runtime_error("nobody listens");
    });
    thrown.get_future().wait();
    dispatch.makeConcurrentQueue("q")->run([] { throw 1; });
    dispatch.concurrentlyAfter(10ms, [&] { after.set_value(); });
    EXPECT_EQ(after.get_future().wait_for(patience), std::future_status::ready);
}

TEST_F(DispatchQtTest, whereNoThreadIsToBeHadTheCallThrowsAndTheTaskNeverRuns)
{
    // In a process of its own, with address space for few more stacks.
    const auto check = [this] {
        std::ifstream sizes("/proc/self/statm");
        rlim_t pages = 0;
        sizes >> pages;
        const rlim_t room = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + (64u << 20);
        const rlimit limit{room, room};
        setrlimit(RLIMIT_AS, &limit);

        const auto queue = dispatch.makeConcurrentQueue("q");
        std::latch release(1);
        std::atomic<int> ran = 0;
        const Task task = [&] {
            release.wait();
            ++ran;
        };
        int accepted = 0, refused = 0;
        for (int i = 0; i < 3000; ++i) {
            try {
                switch (i % 3) {
                case 0:
                    dispatch.concurrently(QualityOfService::userInitiated, task);
                    break;
                case 1:
                    dispatch.concurrentlyAfter(0ms, task);
                    break;
                case 2:
                    queue->run(task);
                    break;
                }
                ++accepted;
            } catch (const std::system_error &) {
                ++refused;
            }
        }
        release.count_down();
        while (ran < accepted)
            std::this_thread::yield();
        std::this_thread::sleep_for(20ms); // One that was refused and runs all the same shows by now.
        std::fprintf(stderr, "%s\n", refused > 100 && ran == accepted ? "as promised" : "not as promised");
        std::_Exit(0);
    };
    EXPECT_EXIT(check(), ::testing::ExitedWithCode(0), "^as promised");
}

} // namespace
} // namespace orvalen
