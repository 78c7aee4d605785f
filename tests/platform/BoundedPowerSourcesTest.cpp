#include "platform/posix/BoundedPowerSources.h"

#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "platform/linux/PowerSourcesSysfs.h"
#include "tests/support/Gate.h"
#include "tests/support/SysfsTree.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

constexpr auto never = 10min;
constexpr auto soon = 20ms;

const char *const laptop = R"(
[class/power_supply/AC]
type = Mains
online = 1
[class/power_supply/BAT0]
type = Battery
capacity = 64
)";

TEST(BoundedPowerSources, passOnWhatIsInside)
{
    const test::SysfsTree tree(laptop);
    BoundedPowerSources sources(std::make_shared<PowerSourcesSysfs>(tree.root()));
    ASSERT_EQ(sources.list().size(), 1u);
    EXPECT_EQ(sources.list().front().state, "AC Power");
    EXPECT_EQ(sources.list().front().currentCapacity, 64);
}

TEST(BoundedPowerSources, stayAsTheyWereWhileAFileHangsAndComeBackWithItsAnswer)
{
    test::SysfsTree tree(laptop);
    BoundedPowerSources sources(std::make_shared<PowerSourcesSysfs>(tree.root()), soon);
    while (sources.list().empty()) // on a busy machine
        std::this_thread::yield();
    tree.makeHang("class/power_supply/BAT0/capacity");
    for (int i = 0; i < 3; ++i) {
        const auto list = sources.list();
        ASSERT_EQ(list.size(), 1u);
        EXPECT_EQ(list.front().state, "AC Power");
        EXPECT_EQ(list.front().currentCapacity, 64);
    }
    tree.answer("class/power_supply/BAT0/capacity", "63");
    while (sources.list().front().currentCapacity != 63) // the late answer is on its way
        std::this_thread::yield();
}

TEST(BoundedPowerSources, areNoneBeforeTheFirstAnswer)
{
    test::SysfsTree tree(laptop);
    BoundedPowerSources sources(std::make_shared<PowerSourcesSysfs>(tree.root()), soon);
    tree.makeHang("class/power_supply/BAT0/capacity");
    EXPECT_TRUE(sources.list().empty());
    EXPECT_TRUE(sources.list().empty());
    tree.answer("class/power_supply/BAT0/capacity", "63");
    while (sources.list().empty())
        std::this_thread::yield();
    EXPECT_EQ(sources.list().front().currentCapacity, 63);
}

/// What the test and the sources, which may outlive it, have in common.
struct Script
{
    test::Gate gate;
    std::atomic<int> begun = 0;
    std::atomic<bool> isEmpty = false;
    std::function<bool(int)> throws = [](int) { return false; }; ///< By number. Set before the first question.
    std::atomic<std::thread::id> asker = {};
};

/// Each list gives its own number as the capacity.
class ScriptedSources : public PowerSources
{
public:
    explicit ScriptedSources(std::shared_ptr<Script> script) : script(std::move(script)) {}

    std::vector<PowerSource> list() override
    {
        script->asker = std::this_thread::get_id();
        const int number = ++script->begun;
        script->gate.pass();
        if (script->throws(number))
            throw std::runtime_error("the battery does not speak");
        if (script->isEmpty)
            return {};
        return {{"AC Power", number}};
    }

private:
    std::shared_ptr<Script> script;
};

class ScriptedPowerSources : public ::testing::Test
{
protected:
    ~ScriptedPowerSources() override { script->gate.open(); }

    [[nodiscard]] std::unique_ptr<BoundedPowerSources> bounded(std::chrono::nanoseconds limit,
                                                               PrepareAskingThread prepareThread = {}) const
    {
        return std::make_unique<BoundedPowerSources>(std::make_shared<ScriptedSources>(script), limit,
                                                     std::move(prepareThread));
    }

    const std::shared_ptr<Script> script = std::make_shared<Script>();
};

/// The one source's capacity; 0 without sources.
std::int64_t capacity(PowerSources &sources)
{
    const auto list = sources.list();
    return list.empty() ? 0 : list.front().currentCapacity.value();
}

TEST_F(ScriptedPowerSources, anExceptionLeavesTheLastAnswer)
{
    script->throws = [](int number) { return number != 2 && number != 5; };
    const auto sources = bounded(never);
    std::vector<std::int64_t> seen;
    for (int i = 0; i < 6; ++i)
        seen.push_back(capacity(*sources));
    EXPECT_THAT(seen, ElementsAre(0, 2, 2, 2, 5, 5));
}

TEST_F(ScriptedPowerSources, noSourcesAreAnAnswer)
{
    script->throws = [](int number) { return number > 2; };
    const auto sources = bounded(never);
    EXPECT_EQ(capacity(*sources), 1);
    script->isEmpty = true;
    EXPECT_EQ(capacity(*sources), 0);
    EXPECT_EQ(capacity(*sources), 0) << "older than the last answer";
}

TEST_F(ScriptedPowerSources, anAnswerThatCameTooLateIsTheLastOne)
{
    script->throws = [](int number) { return number > 1; };
    const auto sources = bounded(soon);
    script->gate.close();
    do
        EXPECT_EQ(capacity(*sources), 0);
    while (script->begun == 0);
    script->gate.open();
    while (capacity(*sources) == 0)
        std::this_thread::yield();
    EXPECT_EQ(capacity(*sources), 1);
}

TEST_F(ScriptedPowerSources, manyThreadsNeverSeeAnAnswerGoAway)
{
    script->throws = [](int number) { return number % 3 == 0; };
    const auto sources = bounded(std::chrono::microseconds(200));
    while (capacity(*sources) == 0)
        std::this_thread::yield();
    std::atomic<int> stepsBack = 0;
    std::vector<std::thread> askers;
    for (int i = 0; i < 8; ++i) {
        askers.emplace_back([&] {
            for (std::int64_t n = 0, latest = 1; n < 200; ++n) {
                const auto now = capacity(*sources);
                stepsBack += now < latest ? 1 : 0;
                latest = now;
            }
        });
    }
    for (auto &asker : askers)
        asker.join();
    EXPECT_EQ(stepsBack, 0);
}

TEST_F(ScriptedPowerSources, theirThreadIsPreparedOnceBeforeTheFirstQuestion)
{
    struct Preparation
    {
        std::atomic<int> times = 0;
        std::atomic<int> questionsBefore = -1;
        std::atomic<std::thread::id> thread = {};
    };
    const auto seen = std::make_shared<Preparation>();
    const auto sources = bounded(never, [seen, script = script] {
        ++seen->times;
        seen->questionsBefore = script->begun.load();
        seen->thread = std::this_thread::get_id();
    });
    EXPECT_EQ(seen->times, 0);
    EXPECT_EQ(capacity(*sources), 1);
    EXPECT_EQ(capacity(*sources), 2);
    EXPECT_EQ(seen->times, 1);
    EXPECT_EQ(seen->questionsBefore, 0);
    EXPECT_EQ(seen->thread.load(), script->asker.load());
    EXPECT_NE(seen->thread.load(), std::this_thread::get_id());
}

} // namespace
} // namespace orvalen
