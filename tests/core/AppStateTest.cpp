#include "core/AppState.h"

#include <gmock/gmock.h>

#include <locale>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "tests/support/FakeMachine.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

/// A state over fakes, with a pulse that the test plays by hand. Warm, on the charger, the user present.
struct AppStateTest : ::testing::Test
{
    test::FakeMachine machine;
    test::FakeThermalEngine engine{machine};
    std::unique_ptr<AppState> state;

    AppStateTest()
    {
        machine.sensors.set(39.5);
        machine.power.set(true, 80);
    }

    AppState &make()
    {
        state = std::make_unique<AppState>(machine.stateServices(engine));
        return *state;
    }

    void tick() { machine.world.advance(3s); }

    /// What has been played so far.
    const std::vector<std::string> &heard()
    {
        machine.world.settle();
        return machine.sounds.played;
    }

    void finishPulse(double finalTemp) { engine.complete(finalTemp); }
};

using Settings = AppStateTest;
using Construction = AppStateTest;
using Monitoring = AppStateTest;
using ChargerRule = AppStateTest;
using SmartMode = AppStateTest;
using Warmup = AppStateTest;

TEST_F(Settings, haveTheirDefaultsInAnEmptyStore)
{
    make();
    EXPECT_TRUE(state->smartModeEnabled);
    EXPECT_EQ(state->targetTemp, 40.0);
    EXPECT_EQ(state->idleTimeoutMinutes, 3.0);
    EXPECT_TRUE(state->autoWarmupOnCharger);
    EXPECT_TRUE(state->soundFeedbackEnabled);
}

TEST_F(Settings, keepAStoredFalse)
{
    machine.settings.values = {
        {"smartModeEnabled", "false"}, {"autoWarmupOnCharger", "false"}, {"soundFeedbackEnabled", "false"}};
    make();
    EXPECT_FALSE(state->smartModeEnabled);
    EXPECT_FALSE(state->autoWarmupOnCharger);
    EXPECT_FALSE(state->soundFeedbackEnabled);
}

TEST_F(Settings, aStoredZeroIsAValueNeverSet)
{
    machine.settings.values = {{"targetTemp", "0"}, {"idleTimeoutMinutes", "0"}};
    make();
    EXPECT_EQ(state->targetTemp, 40.0);
    EXPECT_EQ(state->idleTimeoutMinutes, 3.0);
}

TEST_F(Settings, loadWhatWasStored)
{
    machine.settings.values = {{"targetTemp", "42.5"}, {"idleTimeoutMinutes", "0.5"}};
    make();
    EXPECT_EQ(state->targetTemp, 42.5);
    EXPECT_EQ(state->idleTimeoutMinutes, 0.5);
}

TEST_F(Settings, whatIsNoFiniteNumberWasNeverSet)
{
    for (const char *garbage : {"nan", "inf", "-inf"}) {
        machine.settings.values = {{"targetTemp", garbage}, {"idleTimeoutMinutes", garbage}};
        make();
        EXPECT_EQ(state->targetTemp, 40.0) << garbage;
        EXPECT_EQ(state->idleTimeoutMinutes, 3.0) << garbage;
    }
}

TEST_F(Settings, areWrittenOnEveryAssignmentOfAnEqualValueToo)
{
    make();
    EXPECT_THAT(machine.settings.writes, IsEmpty());
    state->targetTemp = 41.0;
    state->targetTemp = 41.0;
    state->smartModeEnabled = false;
    state->autoWarmupOnCharger = false;
    state->soundFeedbackEnabled = true;
    state->idleTimeoutMinutes.modify([](double &minutes) { minutes += 1.0; });
    EXPECT_THAT(machine.settings.writes,
                ElementsAre("targetTemp=41", "targetTemp=41", "smartModeEnabled=false", "autoWarmupOnCharger=false",
                            "soundFeedbackEnabled=true", "idleTimeoutMinutes=4"));
}

TEST_F(Settings, areOnDiskBeforeAnybodyIsShownThem)
{
    make();
    std::vector<std::size_t> writesWhenShown;
    const auto view =
        state->targetTemp.subscribe([&](double) { writesWhenShown.push_back(machine.settings.writes.size()); });
    state->targetTemp = 41.0;
    EXPECT_THAT(writesWhenShown, ElementsAre(0u, 1u));
}

TEST_F(Settings, surviveARestart)
{
    make().targetTemp = 41.0;
    make();
    EXPECT_EQ(state->targetTemp, 41.0);
}

TEST_F(Settings, nothingElseIsEverWritten)
{
    make();
    tick();
    state->selectedTab = 3;
    state->reportStatus = "done";
    state->triggerWarmup();
    finishPulse(40.0);
    EXPECT_THAT(machine.settings.writes, IsEmpty());
}

TEST_F(Construction, startsFromItsInitialValuesAndOneReading)
{
    machine.sensors.set(36.0);
    machine.power.set(false, 55);
    machine.idle.idle = 7s;
    make();
    EXPECT_EQ(machine.sensors.reads, 1);
    EXPECT_EQ(state->thermalData.value().bridgeTemp, 36.0);
    EXPECT_FALSE(state->isAcConnected);
    EXPECT_EQ(state->batteryPercent, 55);
    EXPECT_EQ(state->userIdleSeconds, 7.0);
    EXPECT_FALSE(state->isUserAway);
    EXPECT_FALSE(state->isWarmingUp);
    EXPECT_EQ(state->warmupProgress, 0.0);
    EXPECT_EQ(state->currentPulseTemp, 0.0);
    EXPECT_EQ(state->selectedTab, 0);
    EXPECT_EQ(state->reportStatus.value(), std::nullopt);
}

TEST_F(Construction, onBatteryIsNoPlugInAndPlaysNothing)
{
    machine.sensors.set(20.0);
    machine.power.set(false, 55);
    make();
    EXPECT_THAT(engine.targets, IsEmpty());
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Construction, onTheChargerIsNoPlugInEither)
{
    machine.sensors.set(20.0);
    make();
    EXPECT_THAT(engine.targets, IsEmpty());
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Monitoring, ticksEveryThreeSecondsAndNotAtOnce)
{
    make();
    machine.world.advance(2999ms);
    EXPECT_EQ(machine.sensors.reads, 1);
    machine.world.advance(1ms);
    EXPECT_EQ(machine.sensors.reads, 2);
    machine.world.advance(30s);
    EXPECT_EQ(machine.sensors.reads, 12);
}

TEST_F(Monitoring, endsWithTheState)
{
    make();
    state.reset();
    machine.world.advance(30s);
    EXPECT_EQ(machine.sensors.reads, 1);
}

TEST_F(Monitoring, startedAgainTicksOnce)
{
    struct RestartedState : AppState
    {
        using AppState::AppState;
        using AppState::startMonitoringLoop;
    } restarted(machine.stateServices(engine));
    restarted.startMonitoringLoop();
    machine.world.advance(3s);
    EXPECT_EQ(machine.sensors.reads, 2) << "one at construction, one tick";
}

TEST_F(Monitoring, publishesWhatItReads)
{
    make();
    machine.sensors.set(39.9);
    machine.power.set(false, 64);
    machine.idle.idle = 12s;
    tick();
    EXPECT_EQ(state->thermalData.value().bridgeTemp, 39.9);
    EXPECT_FALSE(state->isAcConnected);
    EXPECT_EQ(state->batteryPercent, 64);
    EXPECT_EQ(state->userIdleSeconds, 12.0);
}

TEST_F(ChargerRule, aPlugInBelow36AndAHalfChimesTwiceAndHeatsAudibly)
{
    machine.power.set(false, 55);
    machine.settings.values = {{"smartModeEnabled", "false"}, {"targetTemp", "41"}};
    make();
    machine.sensors.set(36.4);
    machine.power.set(true, 55);
    tick();
    EXPECT_THAT(engine.targets, ElementsAre(41.0));
    EXPECT_THAT(heard(), ElementsAre("Blow", "Blow"));
    finishPulse(41.0);
    EXPECT_THAT(machine.notifications.posted, SizeIs(1));
}

TEST_F(ChargerRule, aPlugInAt36AndAHalfDoesNothing)
{
    machine.power.set(false, 55);
    machine.settings.values = {{"smartModeEnabled", "false"}};
    make();
    machine.sensors.set(36.5);
    machine.power.set(true, 55);
    tick();
    EXPECT_THAT(engine.targets, IsEmpty());
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(ChargerRule, isOffWhenTheUserSwitchedItOff)
{
    machine.power.set(false, 55);
    machine.settings.values = {{"smartModeEnabled", "false"}, {"autoWarmupOnCharger", "false"}};
    make();
    machine.sensors.set(20.0);
    machine.power.set(true, 55);
    tick();
    EXPECT_THAT(engine.targets, IsEmpty());
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(ChargerRule, duringAWarmupChimesOnceAndHeatsNoSecondTime)
{
    machine.power.set(false, 55);
    make();
    state->triggerWarmup(std::nullopt, true);
    machine.sensors.set(30.0);
    machine.power.set(true, 55);
    tick();
    EXPECT_THAT(engine.targets, SizeIs(1));
    EXPECT_THAT(heard(), ElementsAre("Blow"));
}

TEST_F(ChargerRule, aPlugInSeenByTheCompletionStartsTheNextWarmupAtOnce)
{
    machine.power.set(false, 55);
    make();
    state->triggerWarmup(std::nullopt, true);
    machine.sensors.set(36.0);
    machine.power.set(true, 55);
    finishPulse(36.0);
    EXPECT_THAT(engine.targets, ElementsAre(40.0, 40.0));
    EXPECT_TRUE(state->isWarmingUp);
    EXPECT_THAT(machine.notifications.posted, IsEmpty());
}

TEST_F(SmartMode, offNeverHeatsAndNeverMarksTheUserAway)
{
    machine.settings.values = {{"smartModeEnabled", "false"}};
    make();
    machine.sensors.set(10.0);
    machine.idle.idle = 1h;
    machine.world.advance(5min);
    EXPECT_THAT(engine.targets, IsEmpty());
    EXPECT_FALSE(state->isUserAway);
}

TEST_F(SmartMode, keepsTheDisplayWarmWhileTheUserIsAway)
{
    make();
    std::vector<bool> seen;
    const auto view = state->isUserAway.subscribe([&](bool away) { seen.push_back(away); });
    machine.idle.idle = 180s;
    machine.sensors.set(38.0);
    tick();
    tick();
    EXPECT_THAT(engine.targets, IsEmpty());
    machine.sensors.set(37.9);
    tick();
    EXPECT_THAT(engine.targets, ElementsAre(40.0));
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(seen, ElementsAre(false, true)) << "one change, however many ticks";
}

TEST_F(SmartMode, greetsTheReturningUserAudibly)
{
    make();
    machine.idle.idle = 180s;
    tick();
    machine.idle.idle = 1s;
    machine.sensors.set(39.4);
    machine.power.set(false, 5);
    tick();
    EXPECT_FALSE(state->isUserAway);
    EXPECT_THAT(engine.targets, ElementsAre(40.0));
    EXPECT_THAT(heard(), ElementsAre("Blow"));
}

TEST_F(SmartMode, seesAReturnDuringAWarmupAtTheFirstTickAfterIt)
{
    make();
    machine.idle.idle = 180s;
    machine.sensors.set(30.0);
    tick();
    EXPECT_TRUE(state->isUserAway);
    machine.idle.idle = 1s;
    tick();
    EXPECT_TRUE(state->isUserAway);
    machine.sensors.set(39.0);
    finishPulse(39.0);
    EXPECT_TRUE(state->isUserAway);
    tick();
    EXPECT_FALSE(state->isUserAway);
    EXPECT_THAT(engine.targets, SizeIs(2));
    EXPECT_THAT(heard(), ElementsAre("Blow"));
}

TEST_F(SmartMode, topsUpSilentlyWhileTheUserWorks)
{
    make();
    machine.sensors.set(38.4);
    tick();
    EXPECT_THAT(engine.targets, ElementsAre(40.0));
    EXPECT_THAT(heard(), IsEmpty());
    finishPulse(40.0);
    EXPECT_THAT(machine.notifications.posted, IsEmpty());
}

TEST_F(SmartMode, blindSensorsAskForHeatAtEveryTickWithoutAWarmup)
{
    make();
    machine.sensors.readings = std::nullopt;
    tick();
    tick();
    EXPECT_THAT(engine.targets, SizeIs(1));
    finishPulse(0.0);
    tick();
    EXPECT_THAT(engine.targets, SizeIs(2));
}

TEST_F(Warmup, withoutATargetGoesToTheUsersTarget)
{
    machine.settings.values = {{"targetTemp", "41.5"}};
    make();
    state->triggerWarmup();
    EXPECT_THAT(engine.targets, ElementsAre(41.5));
}

TEST_F(Warmup, isAnnouncedBeforeThePulseStarts)
{
    make();
    machine.sensors.set(36.0);
    state->refreshTelemetry();
    state->triggerWarmup(44.0);
    EXPECT_TRUE(state->isWarmingUp);
    EXPECT_EQ(state->warmupProgress, 0.0);
    EXPECT_EQ(state->currentPulseTemp, 36.0);
    EXPECT_THAT(engine.targets, ElementsAre(44.0));
    EXPECT_THAT(heard(), ElementsAre("Blow"));
}

TEST_F(Warmup, aSecondRequestIsDropped)
{
    make();
    state->triggerWarmup();
    machine.world.advance(1s);
    engine.reportProgress(37.0, 0.3);
    state->triggerWarmup(44.0);
    EXPECT_THAT(engine.targets, SizeIs(1));
    EXPECT_THAT(heard(), ElementsAre("Blow"));
    EXPECT_EQ(state->warmupProgress, 0.3);
}

TEST_F(Warmup, followsThePulse)
{
    make();
    state->triggerWarmup();
    std::vector<std::string> diary;
    const auto temperature = state->currentPulseTemp.subscribe([&](double) { diary.emplace_back("temperature"); });
    const auto progress = state->warmupProgress.subscribe([&](double) { diary.emplace_back("progress"); });
    diary.clear();
    engine.reportProgress(38.0, 0.5);
    EXPECT_EQ(state->currentPulseTemp, 38.0);
    EXPECT_EQ(state->warmupProgress, 0.5);
    EXPECT_THAT(diary, ElementsAre("temperature", "progress"));
}

TEST_F(Warmup, endsWithChimeNotificationAndAFreshReading)
{
    make();
    state->triggerWarmup();
    engine.reportProgress(39.0, 0.9);
    machine.sensors.set(40.1);
    const int reads = machine.sensors.reads;
    finishPulse(39.96);
    EXPECT_FALSE(state->isWarmingUp);
    EXPECT_EQ(state->warmupProgress, 1.0);
    EXPECT_EQ(state->currentPulseTemp, 39.0) << "left at the last sample";
    EXPECT_EQ(machine.sensors.reads, reads + 1);
    EXPECT_EQ(state->thermalData.value().bridgeTemp, 40.1);
    EXPECT_THAT(heard(), ElementsAre("Blow", "Glass"));
    EXPECT_THAT(machine.notifications.posted, ElementsAre(Pair("Orvalen", "Display Ready! Temperature: 40.0\u00B0C")));
}

TEST_F(Warmup, aTimeOutIsAnEndLikeAnyOther)
{
    make();
    state->triggerWarmup();
    engine.reportProgress(38.2, 0.4);
    finishPulse(38.2);
    EXPECT_EQ(state->warmupProgress, 1.0);
    EXPECT_THAT(machine.notifications.posted, ElementsAre(Pair("Orvalen", "Display Ready! Temperature: 38.2\u00B0C")));
}

TEST_F(Warmup, aSilentOneShowsButDoesNotTell)
{
    make();
    state->triggerWarmup(40.0, true);
    EXPECT_TRUE(state->isWarmingUp);
    engine.reportProgress(38.0, 0.5);
    EXPECT_EQ(state->currentPulseTemp, 38.0);
    finishPulse(40.0);
    EXPECT_EQ(state->warmupProgress, 1.0);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(machine.notifications.posted, IsEmpty());
}

TEST_F(Warmup, withoutSoundsStillNotifies)
{
    machine.settings.values = {{"soundFeedbackEnabled", "false"}};
    make();
    state->triggerWarmup();
    finishPulse(40.0);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(machine.notifications.posted, SizeIs(1));
}

TEST_F(Warmup, chimesAreStartedInTheBackground)
{
    make();
    state->triggerWarmup();
    EXPECT_THAT(machine.sounds.played, IsEmpty());
    EXPECT_THAT(heard(), SizeIs(1));
}

TEST_F(Warmup, withoutAThreadForItsChimeIsSilentAndRuns)
{
    make();
    machine.world.threadsLeft = 0;
    state->triggerWarmup();
    EXPECT_TRUE(state->isWarmingUp);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Warmup, whoeverHearsItAnnouncedCannotStartASecondOne)
{
    make();
    const auto meddler = state->observe([&] {
        if (engine.targets.empty())
            state->triggerWarmup(44.0);
    });
    state->triggerWarmup();
    EXPECT_THAT(engine.targets, ElementsAre(40.0));
}

TEST_F(Warmup, thatCannotEvenStartLeavesTheWayFreeForTheNext)
{
    struct BrokenEngine : test::FakeThermalEngine
    {
        using FakeThermalEngine::FakeThermalEngine;
        bool broken = true;
        void executeControlledPulse(double target, ProgressCallback progress, CompletionCallback completion) override
        {
            if (broken)
                throw std::bad_alloc();
            FakeThermalEngine::executeControlledPulse(target, std::move(progress), std::move(completion));
        }
    } broken(machine);
    AppState own(machine.stateServices(broken));
    own.triggerWarmup();
    EXPECT_FALSE(own.isWarmingUp);
    broken.broken = false;
    own.triggerWarmup();
    EXPECT_TRUE(own.isWarmingUp);
    EXPECT_THAT(broken.targets, SizeIs(1));
}

TEST_F(Warmup, isAnnouncedWithAPointWhateverTheLocale)
{
    struct Comma : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
    };
    const auto before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    make();
    state->triggerWarmup();
    finishPulse(40.0);
    std::locale::global(before);
    EXPECT_EQ(machine.notifications.posted.front().second, "Display Ready! Temperature: 40.0\u00B0C");
}

TEST_F(Warmup, callbacksOfAStateThatIsGoneDoNothing)
{
    make();
    state->triggerWarmup();
    state.reset();
    engine.reportProgress(38.0, 0.5);
    finishPulse(40.0);
    EXPECT_THAT(machine.notifications.posted, IsEmpty());
}

TEST_F(Warmup, startsAgainAfterItsEnd)
{
    make();
    state->triggerWarmup();
    finishPulse(40.0);
    state->triggerWarmup();
    EXPECT_TRUE(state->isWarmingUp);
    EXPECT_EQ(state->warmupProgress, 0.0);
    EXPECT_THAT(engine.targets, SizeIs(2));
}

TEST(WarmupEndToEnd, aColdBridgeIsHeatedByARealPulseAndAnnounced)
{
    test::FakeMachine machine;
    machine.sensors.set(36.0);
    machine.settings.values = {{"smartModeEnabled", "false"}};
    ThermalEngine engine(machine.engineMachine());
    AppState state(machine.stateServices(engine));
    std::vector<double> shown;
    const auto view = state.currentPulseTemp.subscribe([&](double t) { shown.push_back(t); });

    state.triggerWarmup();
    machine.sensors.beforeRead = [&, bridge = 35.0]() mutable { machine.sensors.set(bridge += 1.0); };
    machine.world.runUntilIdle();

    EXPECT_THAT(shown, ElementsAre(0.0, 36.0, 37.0, 38.0, 39.0, 40.0));
    EXPECT_EQ(state.warmupProgress, 1.0);
    EXPECT_THAT(machine.sounds.played, ElementsAre("Blow", "Glass"));
    EXPECT_THAT(machine.notifications.posted, ElementsAre(Pair("Orvalen", "Display Ready! Temperature: 40.0\u00B0C")));
}

} // namespace
} // namespace orvalen
