#include "streaming/server/DisplayFrames.h"

#include <algorithm>
#include <functional>
#include <future>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// Time that stands still unless somebody sleeps, and captures that do what the test says.
class FakeSource : public FrameSource
{
public:
    Time now() noexcept override
    {
        const std::lock_guard lock(mutex);
        ++timesAsked;
        asked.notify_all();
        return time;
    }

    void sleepUntil(Time until) noexcept override
    {
        const std::lock_guard lock(mutex);
        slept.push_back(std::chrono::duration_cast<std::chrono::milliseconds>(until - time));
        time = std::max(time, until);
    }

    Capture capture(std::int64_t display) noexcept override
    {
        {
            const std::lock_guard lock(mutex);
            captured.push_back(display);
            began.push_back(time);
        }
        return behaviour(display);
    }

    void pass(std::chrono::nanoseconds duration)
    {
        const std::lock_guard lock(mutex);
        time += duration;
    }

    /// Runs `enter` on another thread and returns once it has looked at the time, which it does first.
    std::future<Frame> arriving(std::function<Frame()> enter)
    {
        std::unique_lock lock(mutex);
        const auto before = timesAsked;
        auto arrival = std::async(std::launch::async, std::move(enter));
        asked.wait(lock, [&] { return timesAsked > before; });
        return arrival;
    }

    std::function<Capture(std::int64_t)> behaviour = [](std::int64_t) { return good("picture"); };
    std::vector<std::int64_t> captured;
    std::vector<Time> began;
    std::vector<std::chrono::milliseconds> slept;

    static Capture good(std::string_view bytes) { return {true, Frame::of(bytes)}; }
    static Capture nothing() { return {true, {}}; }
    static Capture failed() { return {false, {}}; }

private:
    std::mutex mutex;
    std::condition_variable asked;
    int timesAsked = 0;
    Time time{1h};
};

/// A capture that lasts until the test ends it.
class Gate
{
public:
    FrameSource::Capture pass(FrameSource::Capture outcome)
    {
        entered.set_value();
        open.get_future().wait();
        return outcome;
    }

    std::promise<void> entered;
    std::promise<void> open;
};

class DisplayFramesTest : public testing::Test
{
protected:
    FakeSource source;
    DisplayFrames frames{source};
};

TEST_F(DisplayFramesTest, aCaptureIsGoodForLessThanATenthOfASecond)
{
    auto viewer = frames.watch(1);
    EXPECT_EQ(viewer.nextFrame().bytes(), "picture");
    auto other = frames.watch(1);
    source.pass(99'999us);
    EXPECT_EQ(other.nextFrame().bytes(), "picture");
    EXPECT_THAT(source.captured, ElementsAre(1));
    source.pass(1us);
    EXPECT_EQ(other.nextFrame().bytes(), "picture");
    EXPECT_THAT(source.captured, ElementsAre(1, 1));
}

TEST_F(DisplayFramesTest, itsAgeCountsFromItsBeginning)
{
    auto viewer = frames.watch(1);
    source.behaviour = [this](std::int64_t) {
        source.pass(70ms);
        return FakeSource::good("picture");
    };
    (void)viewer.nextFrame();
    source.pass(29ms);
    (void)viewer.nextFrame();
    EXPECT_THAT(source.captured, ElementsAre(1));
    source.pass(1ms);
    (void)viewer.nextFrame();
    EXPECT_THAT(source.captured, ElementsAre(1, 1));
}

TEST_F(DisplayFramesTest, framesAreSharedAndNotCopied)
{
    auto viewer = frames.watch(1);
    auto other = frames.watch(1);
    EXPECT_EQ(viewer.nextFrame().bytes().data(), other.nextFrame().bytes().data());
}

TEST_F(DisplayFramesTest, eachDisplayHasItsOwn)
{
    source.behaviour = [](std::int64_t display) { return FakeSource::good(std::to_string(display)); };
    for (const std::int64_t display : {2, 1, 0, -1, 2})
        EXPECT_EQ(frames.watch(display).nextFrame().bytes(), std::to_string(display));
    EXPECT_THAT(source.captured, ElementsAre(2, 1, 0, -1));
}

TEST_F(DisplayFramesTest, aFailureRestsAndThenBringsTheDisplaysLastFrame)
{
    auto viewer = frames.watch(2);
    auto other = frames.watch(2);
    (void)frames.watch(1).nextFrame();
    source.behaviour = [](std::int64_t) { return FakeSource::good("second"); };
    (void)viewer.nextFrame();
    (void)other.nextFrame();
    source.pass(500ms);
    source.behaviour = [](std::int64_t) { return FakeSource::failed(); };
    EXPECT_EQ(viewer.nextFrame().bytes(), "second");
    EXPECT_THAT(source.slept, ElementsAre(1500ms));
}

TEST_F(DisplayFramesTest, orElseTheMainDisplays)
{
    (void)frames.watch(1).nextFrame();
    source.behaviour = [](std::int64_t) { return FakeSource::failed(); };
    for (const std::int64_t display : {2, 0, -5})
        EXPECT_EQ(frames.watch(display).nextFrame().bytes(), "picture");
    EXPECT_THAT(source.slept, ElementsAre(1500ms, 1500ms, 1500ms));
}

TEST_F(DisplayFramesTest, orElseNone)
{
    source.behaviour = [](std::int64_t) { return FakeSource::failed(); };
    auto main = frames.watch(1);
    EXPECT_TRUE(main.nextFrame().isEmpty());
    EXPECT_TRUE(frames.watch(2).nextFrame().isEmpty());
    EXPECT_TRUE(main.nextFrame().isEmpty());
    EXPECT_THAT(source.captured, ElementsAre(1, 2, 1));
    EXPECT_THAT(source.slept, ElementsAre(1500ms, 1500ms, 1500ms));
}

TEST_F(DisplayFramesTest, aDisplayThatLeavesNothingShowsTheMainOne)
{
    auto second = frames.watch(2);
    source.behaviour = [](std::int64_t) { return FakeSource::good("second"); };
    (void)second.nextFrame();
    source.behaviour = [](std::int64_t) { return FakeSource::nothing(); };
    source.pass(1s);
    EXPECT_EQ(second.nextFrame().bytes(), "second"); // the main display has no frame yet
    source.behaviour = [](std::int64_t display) {
        return display == 1 ? FakeSource::good("main") : FakeSource::nothing();
    };
    (void)frames.watch(1).nextFrame();
    source.pass(1s);
    EXPECT_EQ(second.nextFrame().bytes(), "main");
    source.behaviour = [](std::int64_t) { return FakeSource::failed(); };
    source.pass(1s);
    EXPECT_EQ(second.nextFrame().bytes(), "second"); // its own frame was not touched
}

TEST_F(DisplayFramesTest, butNotOneThatIsTheMainOneUnderAnotherNumber)
{
    (void)frames.watch(1).nextFrame();
    source.behaviour = [](std::int64_t) { return FakeSource::nothing(); };
    EXPECT_TRUE(frames.watch(0).nextFrame().isEmpty());
    EXPECT_TRUE(frames.watch(-2).nextFrame().isEmpty());
    source.pass(1s);
    EXPECT_EQ(frames.watch(1).nextFrame().bytes(), "picture");
    EXPECT_TRUE(source.slept.empty());
}

TEST_F(DisplayFramesTest, whoComesEarlyEnoughDuringACaptureSharesIt)
{
    Gate gate;
    source.behaviour = [&](std::int64_t) { return gate.pass(FakeSource::good("shared")); };
    auto first = frames.watch(1);
    auto second = frames.watch(1);
    auto one = source.arriving([&] { return first.nextFrame(); });
    gate.entered.get_future().wait();
    source.pass(99ms);
    auto other = source.arriving([&] { return second.nextFrame(); });
    source.pass(5s);
    gate.open.set_value();
    EXPECT_EQ(one.get().bytes(), "shared");
    EXPECT_EQ(other.get().bytes(), "shared");
    EXPECT_THAT(source.captured, ElementsAre(1));
}

TEST_F(DisplayFramesTest, thoseWhoComeLaterShareTheNext)
{
    Gate gate;
    std::atomic<int> run = 0;
    source.behaviour = [&](std::int64_t) {
        return ++run == 1 ? gate.pass(FakeSource::good("old")) : FakeSource::good("new");
    };
    auto first = frames.watch(1);
    auto one = source.arriving([&] { return first.nextFrame(); });
    gate.entered.get_future().wait();
    source.pass(100ms);
    std::vector<std::future<Frame>> late;
    for (int i = 0; i < 5; ++i)
        late.push_back(source.arriving([&] {
            auto viewer = frames.watch(1);
            return viewer.nextFrame();
        }));
    gate.open.set_value();
    EXPECT_EQ(one.get().bytes(), "old");
    for (auto &viewer : late)
        EXPECT_EQ(viewer.get().bytes(), "new");
    EXPECT_THAT(source.captured, ElementsAre(1, 1));
}

TEST_F(DisplayFramesTest, aFailureIsSharedToo)
{
    Gate gate;
    source.behaviour = [&](std::int64_t) { return gate.pass(FakeSource::failed()); };
    auto first = frames.watch(1);
    auto second = frames.watch(1);
    auto one = source.arriving([&] { return first.nextFrame(); });
    gate.entered.get_future().wait();
    auto other = source.arriving([&] { return second.nextFrame(); });
    gate.open.set_value();
    EXPECT_TRUE(one.get().isEmpty());
    EXPECT_TRUE(other.get().isEmpty());
    EXPECT_THAT(source.captured, ElementsAre(1));
    EXPECT_THAT(source.slept, ElementsAre(1500ms)); // one rest for both
}

TEST_F(DisplayFramesTest, nobodyTriesAgainWhileAFailureRests)
{
    /// Lets the test act while somebody sleeps.
    class Resting : public FakeSource
    {
    public:
        void sleepUntil(Time until) noexcept override
        {
            if (whileResting)
                std::exchange(whileResting, nullptr)();
            FakeSource::sleepUntil(until);
        }
        std::function<void()> whileResting;
    } resting;
    DisplayFrames restingFrames(resting);
    auto first = restingFrames.watch(1);
    std::future<Frame> late;
    std::size_t capturesBefore = 0;
    resting.behaviour = [&](std::int64_t) {
        if (resting.captured.size() > 1)
            return FakeSource::good("later");
        return FakeSource::failed();
    };
    resting.whileResting = [&] {
        resting.pass(200ms);
        late = resting.arriving([&] {
            auto viewer = restingFrames.watch(1);
            return viewer.nextFrame();
        });
        capturesBefore = resting.captured.size();
    };
    EXPECT_TRUE(first.nextFrame().isEmpty());
    EXPECT_EQ(capturesBefore, 1U);
    EXPECT_EQ(late.get().bytes(), "later");
    ASSERT_EQ(resting.began.size(), 2U);
    EXPECT_GE(resting.began[1] - resting.began[0], 1500ms);
}

TEST_F(DisplayFramesTest, displaysDoNotWaitForOneAnother)
{
    Gate gate;
    source.behaviour = [&](std::int64_t display) {
        return display == 2 ? gate.pass(FakeSource::good("slow")) : FakeSource::good("quick");
    };
    auto second = frames.watch(2);
    auto slow = source.arriving([&] { return second.nextFrame(); });
    gate.entered.get_future().wait();
    EXPECT_EQ(frames.watch(1).nextFrame().bytes(), "quick");
    EXPECT_EQ(frames.watch(3).nextFrame().bytes(), "quick");
    gate.open.set_value();
    EXPECT_EQ(slow.get().bytes(), "slow");
}

TEST_F(DisplayFramesTest, countingOnShowsTheMainDisplay)
{
    source.behaviour = [](std::int64_t display) { return FakeSource::good(std::to_string(display)); };
    for (std::int64_t display = 2; display <= 256; ++display)
        EXPECT_EQ(frames.watch(display).nextFrame().bytes(), std::to_string(display));
    EXPECT_EQ(frames.watch(257).nextFrame().bytes(), "1");
    EXPECT_EQ(frames.watch(-1).nextFrame().bytes(), "1");
    EXPECT_EQ(frames.watch(256).nextFrame().bytes(), "256");
    EXPECT_EQ(frames.watch(1).nextFrame().bytes(), "1");
    EXPECT_EQ(source.captured.size(), 256U);
}

TEST_F(DisplayFramesTest, aLoneViewerGetsYoungFramesInARhythm)
{
    source.behaviour = [this](std::int64_t) {
        source.pass(8ms);
        return FakeSource::good("picture");
    };
    auto viewer = frames.watch(1);
    (void)viewer.nextFrame();
    EXPECT_TRUE(source.slept.empty()); // the first comes as soon as it can
    for (int i = 0; i < 10; ++i) {
        source.pass(80ms);
        (void)viewer.nextFrame();
    }
    // The second was still young enough at 88 ms. From the third on: 10 ms until the command, 2 ms after it.
    ASSERT_EQ(source.captured.size(), 10U);
    EXPECT_EQ(source.slept.size(), 18U);
    for (std::size_t i = 2; i < source.began.size(); ++i)
        EXPECT_EQ(source.began[i] - source.began[i - 1], 100ms);
}

TEST_F(DisplayFramesTest, aSecondViewerEndsTheRhythmAndItsGoingBringsItBack)
{
    source.behaviour = [this](std::int64_t) {
        source.pass(8ms);
        return FakeSource::good("picture");
    };
    auto viewer = frames.watch(1);
    (void)viewer.nextFrame();
    {
        auto other = frames.watch(1);
        (void)other.nextFrame();
        source.pass(500ms);
        (void)viewer.nextFrame();
        EXPECT_TRUE(source.slept.empty());
    }
    (void)frames.watch(2).nextFrame();
    source.pass(100ms);
    (void)viewer.nextFrame();
    EXPECT_THAT(source.slept, ElementsAre(10ms, 2ms));
}

TEST_F(DisplayFramesTest, soDoesItsSilenceOfASecond)
{
    source.behaviour = [this](std::int64_t) {
        source.pass(8ms);
        return FakeSource::good("picture");
    };
    auto viewer = frames.watch(1);
    auto stalled = frames.watch(1);
    (void)viewer.nextFrame();
    (void)stalled.nextFrame(); // 8 ms after the beginning
    for (int i = 0; i < 9; ++i) {
        source.pass(100ms);
        (void)viewer.nextFrame();
    }
    EXPECT_TRUE(source.slept.empty()); // 980 ms
    source.pass(100ms);
    (void)viewer.nextFrame();
    EXPECT_THAT(source.slept, ElementsAre(10ms, 2ms));
    (void)stalled.nextFrame(); // has woken up
    source.pass(100ms);
    (void)viewer.nextFrame();
    EXPECT_THAT(source.slept, ElementsAre(10ms, 2ms));
}

TEST_F(DisplayFramesTest, evenOfTheOneWhoAskedLast)
{
    auto viewer = frames.watch(1);
    (void)viewer.nextFrame();
    {
        auto other = frames.watch(1);
        (void)other.nextFrame();
    }
    source.pass(100ms);
    (void)viewer.nextFrame();
    EXPECT_THAT(source.slept, ElementsAre(18ms, 2ms));
}

TEST_F(DisplayFramesTest, aFrameIsSupersededByTheNextAndNotBefore)
{
    auto viewer = frames.watch(1);
    const Frame first = viewer.nextFrame();
    source.behaviour = [](std::int64_t) { return FakeSource::failed(); };
    source.pass(1s);
    EXPECT_FALSE(viewer.nextFrame().isSuperseded());
    (void)frames.watch(2).nextFrame();
    EXPECT_FALSE(first.isSuperseded());
    source.behaviour = [](std::int64_t) { return FakeSource::good("next"); };
    source.pass(1s);
    const Frame second = viewer.nextFrame();
    EXPECT_TRUE(first.isSuperseded());
    EXPECT_FALSE(second.isSuperseded());
}

TEST_F(DisplayFramesTest, noDisplayKeepsAnothersOldFrame)
{
    source.behaviour = [](std::int64_t display) {
        return display == 1 ? FakeSource::good("main") : FakeSource::nothing();
    };
    const auto before = Frame::supersededMemory();
    for (std::int64_t display = 2; display < 20; ++display) {
        (void)frames.watch(1).nextFrame();
        EXPECT_EQ(frames.watch(display).nextFrame().bytes(), "main");
        source.pass(1s);
    }
    EXPECT_EQ(Frame::supersededMemory(), before);
}

TEST_F(DisplayFramesTest, lastFramesTakeNoMoreMemoryThanTheyMay)
{
    constexpr std::size_t size = 100'000;
    DisplayFrames few(source, 256, 10 * size);
    source.behaviour = [](std::int64_t display) {
        return FakeSource::good(std::to_string(display) + std::string(size, ' '));
    };
    std::int64_t display = 1;
    for (bool isItsOwn = true; isItsOwn && display < 100; ++display)
        isItsOwn = few.watch(display).nextFrame().bytes().starts_with(std::to_string(display) + ' ');
    const auto refused = display - 1;
    EXPECT_GE(refused, 5); // somewhat more is taken than the bytes
    EXPECT_LE(refused, 11);
    const auto captures = source.captured.size();
    EXPECT_TRUE(few.watch(refused).nextFrame().bytes().starts_with("1 "));
    EXPECT_TRUE(few.watch(1000).nextFrame().bytes().starts_with("1 "));
    EXPECT_TRUE(few.watch(-1).nextFrame().bytes().starts_with("1 "));
    EXPECT_EQ(source.captured.size(), captures); // the main display's was young enough
    source.pass(1s);
    EXPECT_TRUE(few.watch(2).nextFrame().bytes().starts_with("2 "));
    EXPECT_TRUE(few.watch(1000).nextFrame().bytes().starts_with("1 "));
}

TEST_F(DisplayFramesTest, aDisplayWhoseFrameFindsNoRoomShowsTheMainOneFromThenOn)
{
    DisplayFrames small(source, 256, 500'000);
    source.behaviour = [](std::int64_t display) { return FakeSource::good(std::to_string(display)); };
    auto main = small.watch(1);
    auto viewer = small.watch(2);
    (void)main.nextFrame();
    EXPECT_EQ(viewer.nextFrame().bytes(), "2");
    source.behaviour = [](std::int64_t display) {
        return FakeSource::good(display == 1 ? "1" : std::string(600'000, '2'));
    };
    source.pass(1s);
    EXPECT_EQ(viewer.nextFrame().bytes(), "1");
    EXPECT_EQ(small.watch(2).nextFrame().bytes(), "1");
    // What it kept is free for another; the main display's own is kept however large it is.
    EXPECT_EQ(small.watch(3).nextFrame().bytes(), "1");
    source.behaviour = [](std::int64_t display) {
        return FakeSource::good(display == 1 ? std::string(600'000, '1') : std::to_string(display));
    };
    source.pass(1s);
    EXPECT_EQ(main.nextFrame().bytes(), std::string(600'000, '1'));
    EXPECT_EQ(small.watch(4).nextFrame().bytes(), std::string(600'000, '1'));
}

TEST_F(DisplayFramesTest, whoWaitedForAFrameWithoutRoomSeesTheMainDisplay)
{
    Gate gate;
    DisplayFrames small(source, 256, 500'000);
    source.behaviour = [&](std::int64_t display) {
        return display == 1 ? FakeSource::good("1") : gate.pass(FakeSource::good(std::string(600'000, '2')));
    };
    auto first = small.watch(2);
    auto second = small.watch(2);
    auto one = source.arriving([&] { return first.nextFrame(); });
    gate.entered.get_future().wait();
    auto other = source.arriving([&] { return second.nextFrame(); });
    gate.open.set_value();
    EXPECT_EQ(one.get().bytes(), "1");
    EXPECT_EQ(other.get().bytes(), "1");
    EXPECT_EQ(std::count(source.captured.begin(), source.captured.end(), 2), 1);
}

TEST_F(DisplayFramesTest, thereAreNeverMoreThanTenCapturesASecond)
{
    for (const int count : {1, 2, 3, 10, 50}) {
        for (const auto duration : {0ms, 8ms, 25ms, 70ms, 130ms}) {
            FakeSource busy;
            DisplayFrames busyFrames(busy);
            busy.behaviour = [&](std::int64_t) {
                busy.pass(duration);
                return FakeSource::good("picture");
            };
            std::vector<std::unique_ptr<DisplayFrames::Viewer>> viewers;
            for (int i = 0; i < count; ++i)
                viewers.emplace_back(new DisplayFrames::Viewer(busyFrames.watch(1)));
            for (int i = 0; i < 2000; ++i) {
                (void)viewers[i % viewers.size()]->nextFrame();
                busy.pass(80ms / count);
            }
            for (std::size_t i = 1; i < busy.began.size(); ++i)
                ASSERT_GE(busy.began[i] - busy.began[i - 1], 100ms);
        }
    }
}

} // namespace
} // namespace orvalen
