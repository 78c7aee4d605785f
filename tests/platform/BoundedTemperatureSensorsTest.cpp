#include "platform/posix/BoundedTemperatureSensors.h"

#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <thread>

#include "platform/linux/TemperatureSensorsSysfs.h"
#include "tests/support/Gate.h"
#include "tests/support/SysfsTree.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::Optional;

constexpr auto never = 10min;
constexpr auto soon = 20ms;

/// What the test and the sensors, which may outlive it, have in common.
struct Script
{
    test::Gate gate;
    std::atomic<bool> throws = false;
    std::atomic<bool> isUnavailable = false;
    std::atomic<int> begun = 0;
    std::atomic<int> inside = 0;
    std::atomic<int> mostInside = 0;
    std::atomic<bool> isDestroyed = false;
    std::atomic<std::thread::id> asker = {};
};

/// Each read gives its own number as the temperature.
class ScriptedSensors : public TemperatureSensors
{
public:
    explicit ScriptedSensors(std::shared_ptr<Script> script) : script(std::move(script)) {}
    ~ScriptedSensors() override { script->isDestroyed = true; }

    std::optional<std::vector<TemperatureReading>> read() override
    {
        script->asker = std::this_thread::get_id();
        const int number = ++script->begun;
        script->mostInside = std::max<int>(script->mostInside, ++script->inside);
        script->gate.pass();
        --script->inside;
        if (script->throws)
            throw std::runtime_error("the sensor hub is on fire");
        if (script->isUnavailable)
            return std::nullopt;
        return {{{"PMU tdie1", static_cast<double>(number)}}};
    }

private:
    std::shared_ptr<Script> script;
};

class BoundedSensors : public ::testing::Test
{
protected:
    ~BoundedSensors() override { script->gate.open(); }

    [[nodiscard]] std::unique_ptr<BoundedTemperatureSensors> bounded(std::chrono::nanoseconds limit) const
    {
        return std::make_unique<BoundedTemperatureSensors>(std::make_unique<ScriptedSensors>(script), limit);
    }

    template <typename Condition>
    static void waitUntil(Condition condition)
    {
        while (!condition())
            std::this_thread::yield();
    }

    static auto threads() { return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}); }

    const std::shared_ptr<Script> script = std::make_shared<Script>();
};

auto number(int n)
{
    return Optional(ElementsAre(Field(&TemperatureReading::celsius, n)));
}

TEST_F(BoundedSensors, passOnWhatIsAnswered)
{
    const auto sensors = bounded(never);
    EXPECT_THAT(sensors->read(), number(1));
    EXPECT_THAT(sensors->read(), number(2));
    script->isUnavailable = true;
    EXPECT_EQ(sensors->read(), std::nullopt);
}

TEST_F(BoundedSensors, anExceptionIsNoAnswer)
{
    const auto sensors = bounded(never);
    script->throws = true;
    EXPECT_EQ(sensors->read(), std::nullopt);
    EXPECT_EQ(sensors->read(), std::nullopt);
    script->throws = false;
    EXPECT_THAT(sensors->read(), number(3));
}

TEST_F(BoundedSensors, aHangingReadIsNoAnswerAndNothingNewIsAsked)
{
    const auto sensors = bounded(soon);
    script->gate.close();
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(sensors->read(), std::nullopt);
    EXPECT_LE(script->begun, 1);
}

TEST_F(BoundedSensors, whileAReadIsLateNobodyWaits)
{
    // A thousand reads that each waited for the limit would outlast any test run.
    const auto sensors = bounded(300ms);
    script->gate.close();
    waitUntil([&] { return !sensors->read().has_value() && script->inside == 1; });
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(sensors->read(), std::nullopt);
}

TEST_F(BoundedSensors, recoverWhenTheLateReadReturns)
{
    const auto sensors = bounded(soon);
    script->gate.close();
    do
        EXPECT_EQ(sensors->read(), std::nullopt);
    while (script->begun == 0);
    script->gate.open();
    waitUntil([&] { return sensors->read().has_value(); });
    EXPECT_GE(script->begun, 2) << "the late answer itself is too old to be given";
}

TEST_F(BoundedSensors, canHangAgainAfterRecovering)
{
    const auto sensors = bounded(soon);
    for (int round = 0; round < 5; ++round) {
        waitUntil([&] { return sensors->read().has_value(); });
        script->gate.close();
        waitUntil([&] { return !sensors->read().has_value() && script->inside == 1; });
        script->gate.open();
    }
    waitUntil([&] { return sensors->read().has_value(); });
    EXPECT_EQ(script->mostInside, 1);
}

TEST_F(BoundedSensors, goWithoutWaitingForALateReadWhoseSensorsStay)
{
    auto sensors = bounded(soon);
    script->gate.close();
    waitUntil([&] { return !sensors->read().has_value() && script->inside == 1; });
    sensors.reset();
    EXPECT_FALSE(script->isDestroyed);
    script->gate.open();
    waitUntil([&] { return script->isDestroyed.load(); });
}

TEST_F(BoundedSensors, prepareTheirThreadOnceBeforeTheFirstRead)
{
    struct Preparation
    {
        std::atomic<int> times = 0;
        std::atomic<int> readsBefore = -1;
        std::atomic<std::thread::id> thread = {};
    };
    const auto seen = std::make_shared<Preparation>();
    BoundedTemperatureSensors sensors(std::make_shared<ScriptedSensors>(script), never, [seen, script = script] {
        ++seen->times;
        seen->readsBefore = script->begun.load();
        seen->thread = std::this_thread::get_id();
    });
    EXPECT_EQ(seen->times, 0);
    EXPECT_THAT(sensors.read(), number(1));
    EXPECT_THAT(sensors.read(), number(2));
    EXPECT_EQ(seen->times, 1);
    EXPECT_EQ(seen->readsBefore, 0);
    EXPECT_EQ(seen->thread.load(), script->asker.load());
    EXPECT_NE(seen->thread.load(), std::this_thread::get_id());
}

TEST_F(BoundedSensors, takeTheirSensorsWithThem)
{
    auto unasked = bounded(never);
    unasked.reset();
    EXPECT_TRUE(script->isDestroyed);

    script->isDestroyed = false;
    auto asked = bounded(never);
    ASSERT_THAT(asked->read(), number(1));
    asked.reset();
    EXPECT_TRUE(script->isDestroyed);
}

TEST_F(BoundedSensors, manyThreadsGetAnswersNoOlderThanTheirQuestions)
{
    const auto sensors = bounded(never);
    std::atomic<int> stale = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 8; ++i) {
        readers.emplace_back([&] {
            for (int n = 0; n < 200; ++n) {
                const int before = script->begun;
                const auto readings = sensors->read();
                if (!readings || readings->at(0).celsius <= before)
                    ++stale;
            }
        });
    }
    for (auto &reader : readers)
        reader.join();
    EXPECT_EQ(stale, 0);
    EXPECT_EQ(script->mostInside, 1);
}

TEST_F(BoundedSensors, manyThreadsAtAHangingReadPileNothingUp)
{
    const auto sensors = bounded(soon);
    script->gate.close();
    waitUntil([&] { return !sensors->read().has_value() && script->inside == 1; });
    const auto threadsBefore = threads();
    std::atomic<int> answers = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 8; ++i) {
        readers.emplace_back([&] {
            for (int n = 0; n < 100; ++n)
                answers += sensors->read().has_value() ? 1 : 0;
        });
    }
    for (auto &reader : readers)
        reader.join();
    EXPECT_EQ(answers, 0);
    EXPECT_EQ(script->begun, 1);
    waitUntil([&] { return threads() <= threadsBefore; }); // the system takes its time to forget those that have ended
}

TEST(BoundedTemperatureSensors, outliveAFileThatHangsForReal)
{
    test::SysfsTree tree(R"(
        [class/hwmon/hwmon0]
        name = thinkpad
        temp1_input = 41000
        temp2_input = 42000
    )");
    BoundedTemperatureSensors sensors(std::make_unique<TemperatureSensorsSysfs>(tree.root()), soon);
    const auto isWhole = [&] {
        const auto readings = sensors.read();
        return readings && readings->size() == 2;
    };
    while (!isWhole())
        std::this_thread::yield();

    tree.makeHang("class/hwmon/hwmon0/temp2_input");
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(sensors.read(), std::nullopt);
    // The worker may be on its way into the pipe only now; whoever opens it later finds the file that takes its place.
    tree.answer("class/hwmon/hwmon0/temp2_input", "43000");
    while (!isWhole())
        std::this_thread::yield();
    EXPECT_THAT(sensors.read()->at(1).celsius, 43.0);
}

TEST(BoundedTemperatureSensors, goWhileAFileHangsForReal)
{
    test::SysfsTree tree("[class/thermal/thermal_zone0]\ntype = TSKN\n");
    tree.makeHang("class/thermal/thermal_zone0/temp");
    auto sensors =
        std::make_unique<BoundedTemperatureSensors>(std::make_unique<TemperatureSensorsSysfs>(tree.root()), soon);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(sensors->read(), std::nullopt);
    sensors.reset();
    tree.answer("class/thermal/thermal_zone0/temp", "30000");
}

} // namespace
} // namespace orvalen
