#include "core/AppDelegate.h"

#include <gmock/gmock.h>

#include <locale>
#include <memory>
#include <optional>
#include <string>

#include "streaming/OfflineBridgeManager.h"
#include "system/HotKeyManager.h"
#include "tests/support/ApplicationFakes.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/SystemFakes.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr auto shield = "shield.lefthalf.filled";
constexpr auto flame = "flame.fill";

class DiaryHotKeyManager : public HotKeyManager
{
public:
    DiaryHotKeyManager(const Services &services, test::Diary &diary) : HotKeyManager(services), diary(diary) {}
    void setupGlobalHotKey() override { diary.note("hot keys"); }

private:
    test::Diary &diary;
};

class RecordingState : public AppState
{
public:
    using AppState::AppState;
    void triggerWarmup(std::optional<double> target, bool silent) override
    {
        requests.emplace_back(target, silent);
        AppState::triggerWarmup(target, silent);
    }
    std::vector<std::pair<std::optional<double>, bool>> requests;
};

class RecordingServer : public WebScreenServer
{
public:
    using WebScreenServer::WebScreenServer;
    void triggerBlindCast() override { ++casts; }
    int casts = 0;
};

/// A machine whose bridge is at 38.6 °C, its user at work.
class AppDelegateTest : public ::testing::Test
{
protected:
    AppDelegateTest() : delegate(std::make_unique<AppDelegate>(services())) { machine.diary.take(); }

    AppDelegate::Services services() { return {application, keys, bar, state, server, machine.world}; }

    void launch()
    {
        delegate->applicationDidFinishLaunching();
        machine.world.settle();
        machine.diary.take();
    }

    void setBridge(double celsius) { state.thermalData = SystemThermalData(celsius, 0, 0, 0, 0, 0); }

    test::FakeMachine machine;
    test::FakeThermalEngine engine{machine};
    OfflineBridgeManager bridges{machine.interfaces};
    test::FakeHotKeys hotKeys{machine.diary};
    RecordingState state{(machine.sensors.set(38.6), machine.stateServices(engine))};
    RecordingServer server{machine.streamServices(bridges)};
    DiaryHotKeyManager keys{{hotKeys, machine.world, state, server, machine.console}, machine.diary};
    test::FakeApplication application{machine.diary};
    test::FakeStatusBar bar{machine.diary};
    std::unique_ptr<AppDelegate> delegate;
};

TEST_F(AppDelegateTest, doesNothingBeforeTheProgramHasStarted)
{
    machine.world.settle();
    EXPECT_THAT(machine.diary.take(), IsEmpty());
    EXPECT_EQ(bar.items, 0);
    EXPECT_EQ(state.thermalData.subscriberCount(), 0U);
    EXPECT_EQ(state.isWarmingUp.subscriberCount(), 0U);
}

TEST_F(AppDelegateTest, startsInThisOrder)
{
    delegate->applicationDidFinishLaunching();
    EXPECT_THAT(machine.diary.take(), ElementsAre("activation policy 0", "activate, ignoring others", "hot keys",
                                                  "item of length -1", "image shield.lefthalf.filled that says Orvalen",
                                                  "image position 2", "title \" 39°\"", "action"));
    EXPECT_EQ(state.thermalData.subscriberCount(), 1U);
    EXPECT_EQ(state.isWarmingUp.subscriberCount(), 1U);
}

TEST_F(AppDelegateTest, startsNothingElse)
{
    launch();
    EXPECT_THAT(state.requests, IsEmpty());
    EXPECT_EQ(server.casts, 0);
    EXPECT_FALSE(server.isRunning);
    EXPECT_THAT(machine.processes.launched, IsEmpty());
}

TEST_F(AppDelegateTest, replacesThePlaceholderAtTheNextTurnOfTheMainQueue)
{
    setBridge(31.2);
    delegate->applicationDidFinishLaunching();
    EXPECT_EQ(bar.title, " 39°");
    machine.diary.take();

    machine.world.settle();
    EXPECT_THAT(machine.diary.take(), ElementsAre("title \" 31°\"", "image shield.lefthalf.filled that says Orvalen"));
    EXPECT_EQ(machine.world.now(), 0ns);
}

TEST_F(AppDelegateTest, startsWithTheFlameWhereAWarmUpIsUnderWayAlready)
{
    state.triggerWarmup(std::nullopt, true);
    launch();
    EXPECT_EQ(bar.image, flame);
}

struct AppDelegateTitle : AppDelegateTest, ::testing::WithParamInterface<std::pair<double, const char *>>
{
};

TEST_P(AppDelegateTitle, isTheTemperatureInWholeDegrees)
{
    launch();
    setBridge(GetParam().first);
    machine.world.settle();
    EXPECT_EQ(bar.title, GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(, AppDelegateTitle,
                         ::testing::Values(std::pair(38.6, " 39°"), std::pair(38.4, " 38°"), std::pair(0.0, " 0°"),
                                           std::pair(9.96, " 10°"), std::pair(104.2, " 104°"), std::pair(38.5, " 38°"),
                                           std::pair(39.5, " 40°"))); // ties to even

TEST_F(AppDelegateTest, showsTheEmptyRecordAsZero)
{
    launch();
    state.thermalData = SystemThermalData{};
    machine.world.settle();
    EXPECT_EQ(bar.title, " 0°");
}

TEST_F(AppDelegateTest, writesTheSameDigitsInEveryLocale)
{
    struct Grouped : std::numpunct<char>
    {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\1"; }
    };
    const auto before = std::locale::global(std::locale(std::locale::classic(), new Grouped));
    launch();
    std::locale::global(before);
    EXPECT_EQ(bar.title, " 39°");
}

TEST_F(AppDelegateTest, showsTheTemperatureOfEachTick)
{
    state.smartModeEnabled = false; // no warm-up in between
    launch();
    machine.sensors.set(36.2);
    machine.world.advance(2999ms);
    EXPECT_THAT(machine.diary.take(), IsEmpty());
    machine.world.advance(1ms);
    EXPECT_THAT(machine.diary.take(), ElementsAre("title \" 36°\""));
}

TEST_F(AppDelegateTest, deliversAfterTheTaskThatMadeTheChange)
{
    launch();
    setBridge(30.0);
    state.isWarmingUp = true;
    EXPECT_THAT(machine.diary.take(), IsEmpty());
    machine.world.settle();
    EXPECT_THAT(machine.diary.take(), ElementsAre("title \" 30°\"", "image flame.fill that says Orvalen"));
}

TEST_F(AppDelegateTest, showsTheFlameInTheTickInWhichTheWarmUpBegins)
{
    machine.power.set(true, 100);
    launch();
    machine.sensors.set(20.0);
    machine.world.advance(3s); // and not a nanosecond more
    ASSERT_TRUE(state.isWarmingUp);
    EXPECT_EQ(bar.image, flame);
    EXPECT_EQ(machine.world.now(), 3s);
}

TEST_F(AppDelegateTest, showsTheFlameForAsLongAsAWarmUpRunsWhetherItIsSilentOrNot)
{
    launch();
    for (const bool silent : {false, true}) {
        state.triggerWarmup(std::nullopt, silent);
        machine.world.settle();
        EXPECT_EQ(bar.image, flame);
        engine.reportProgress(39.0, 0.5);
        machine.world.settle();
        EXPECT_EQ(bar.image, flame);
        engine.complete(40.0);
        machine.world.settle();
        EXPECT_EQ(bar.image, shield);
    }
}

TEST_F(AppDelegateTest, showsEveryChangeInTheOrderInWhichItCame)
{
    launch();
    state.isWarmingUp = true;
    state.isWarmingUp = false;
    state.isWarmingUp = true;
    machine.world.settle();
    EXPECT_THAT(machine.diary.take(),
                ElementsAre("image flame.fill that says Orvalen", "image shield.lefthalf.filled that says Orvalen",
                            "image flame.fill that says Orvalen"));
}

TEST_F(AppDelegateTest, followsWithoutAButtonAndDoesNothing)
{
    bar.hasButton = false;
    delegate->applicationDidFinishLaunching();
    machine.world.settle();
    EXPECT_THAT(machine.diary.take(),
                ElementsAre("activation policy 0", "activate, ignoring others", "hot keys", "item of length -1"));
    EXPECT_EQ(state.thermalData.subscriberCount(), 1U);
    EXPECT_EQ(state.isWarmingUp.subscriberCount(), 1U);
    setBridge(20.0);
    state.isWarmingUp = true;
    machine.world.settle();
    EXPECT_THAT(machine.diary.take(), IsEmpty());
}

TEST_F(AppDelegateTest, asksForTheButtonAtEachDelivery)
{
    bar.hasButton = false;
    launch();
    bar.hasButton = true;
    state.isWarmingUp = true;
    machine.world.settle();
    EXPECT_EQ(bar.image, flame);
}

TEST_F(AppDelegateTest, bringsEveryWindowThatCanHaveTheKeyboardToTheFrontInTheDesktopsOrder)
{
    application.open = {{"main"}, {"tooltip", false}, {"laptop"}};
    launch();
    bar.click();
    EXPECT_THAT(machine.diary.take(), ElementsAre("activate, ignoring others", "front main", "front laptop"));
}

TEST_F(AppDelegateTest, onlyActivatesWhereTheWindowIsClosed)
{
    launch();
    bar.click();
    EXPECT_THAT(machine.diary.take(), ElementsAre("activate, ignoring others"));
}

TEST_F(AppDelegateTest, takesItsItemAndItsSubscriptionsWithIt)
{
    launch();
    EXPECT_EQ(bar.items, 1);
    delegate.reset();
    EXPECT_EQ(bar.items, 0);
    EXPECT_EQ(state.thermalData.subscriberCount(), 0U);
    EXPECT_EQ(state.isWarmingUp.subscriberCount(), 0U);
}

TEST_F(AppDelegateTest, isNotMissedByWhatWasOnItsWay)
{
    launch();
    setBridge(20.0);
    state.isWarmingUp = true;
    delegate.reset();
    machine.world.settle();
    bar.click();
    EXPECT_THAT(machine.diary.take(), IsEmpty());
}

TEST_F(AppDelegateTest, warmsUpForTheDesktop)
{
    delegate->performAction("warm-up");
    EXPECT_THAT(state.requests, ElementsAre(Pair(std::nullopt, false)));
    EXPECT_EQ(server.casts, 0);
}

TEST_F(AppDelegateTest, castsBlindlyForTheDesktop)
{
    delegate->performAction("blind-cast");
    EXPECT_EQ(server.casts, 1);
    EXPECT_THAT(state.requests, IsEmpty());
}

TEST_F(AppDelegateTest, doesNothingThatItDoesNotKnow)
{
    for (const auto *name : {"", "warm", "warm-up ", "Warm-Up", "blind-cast2"})
        delegate->performAction(name);
    EXPECT_EQ(server.casts, 0);
    EXPECT_THAT(state.requests, IsEmpty());
}

} // namespace
} // namespace orvalen
