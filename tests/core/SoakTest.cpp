#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <random>
#include <vector>

#include "core/AppState.h"
#include "core/ThermalEngine.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/LiveAllocations.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using Random = std::mt19937;
using test::liveAllocations;

double uniform(Random &random, double low, double high)
{
    return std::uniform_real_distribution<double>(low, high)(random);
}

/// A laptop in a flat: the bridge leans towards the room and is pushed up by heaters; nights are cold; its owner works,
/// leaves, comes back and moves the charger about.
class Life
{
public:
    Life(test::FakeMachine &machine, Random &random) : machine(machine), random(random)
    {
        live();
        scheduleNextDeed();
    }

    std::function<bool()> isHeating;

private:
    // Every second of virtual time.
    void live()
    {
        machine.world.at(machine.world.now() + 1s, [this] { live(); });
        const double hours = std::chrono::duration<double, std::ratio<3600>>(machine.world.now()).count();
        const double room = 16.0 + 6.0 * std::sin(hours / 24.0 * 6.283);
        bridge += (room + 12.0 - bridge) / 900.0;
        if (isHeating && isHeating())
            bridge += (90.0 - bridge) / 160.0; // heaters alone never get it beyond 90 °C
        battery = std::clamp(battery + (charger ? 0.01 : -0.004), 1.0, 100.0);
        if (present && uniform(random, 0.0, 1.0) < 0.05)
            lastInput = machine.world.now();

        if (sensorsWork)
            machine.sensors.set(bridge, bridge + 1.5);
        else
            machine.sensors.readings = std::nullopt;
        machine.power.set(charger, static_cast<int>(battery));
        machine.idle.idle = machine.world.now() - lastInput;
    }

    void scheduleNextDeed()
    {
        const auto pause = std::chrono::seconds(static_cast<int>(uniform(random, 20.0, 7200.0)));
        machine.world.at(machine.world.now() + pause, [this] {
            switch (std::uniform_int_distribution<int>(0, 5)(random)) {
            case 0:
            case 1:
                present = !present;
                break;
            case 2:
            case 3:
                charger = !charger;
                break;
            case 4:
                bridge = std::max(bridge - uniform(random, 0.0, 25.0), 1.0); // carried through the cold
                break;
            default:
                sensorsWork = uniform(random, 0.0, 1.0) > 0.1;
            }
            scheduleNextDeed();
        });
    }

    test::FakeMachine &machine;
    Random &random;
    double bridge = 30.0;
    double battery = 80.0;
    bool charger = true;
    bool present = true;
    bool sensorsWork = true;
    std::chrono::nanoseconds lastInput{0};
};

/// Counts pulses that run at the same time.
class WatchedEngine : public ThermalEngine
{
public:
    using ThermalEngine::ThermalEngine;

    void executeControlledPulse(double target, ProgressCallback progress, CompletionCallback completion) override
    {
        ++pulses;
        mostAtOnce = std::max(mostAtOnce, ++running);
        ThermalEngine::executeControlledPulse(target, std::move(progress),
                                              [this, completion = std::move(completion)](double finalTemp) {
                                                  --running;
                                                  completion(finalTemp);
                                              });
    }

    long pulses = 0;
    int running = 0;
    int mostAtOnce = 0;
};

struct Request
{
    double target;
    bool silent;
    friend bool operator==(const Request &, const Request &) = default;
};

/// The state under test; before and after every tick it lets a second opinion speak.
class WatchedState : public AppState
{
public:
    using AppState::AppState;

    std::function<void()> beforeTick;
    std::function<void(const std::vector<Request> &)> afterTick;

    void triggerWarmup(std::optional<double> target, bool silent) override
    {
        if (inTick)
            requests.push_back({target.value_or(targetTemp), silent});
        AppState::triggerWarmup(target, silent);
    }

protected:
    void evaluateLifecycle() override
    {
        requests.clear();
        inTick = true;
        beforeTick();
        AppState::evaluateLifecycle();
        inTick = false;
        afterTick(requests);
    }

private:
    bool inTick = false;
    std::vector<Request> requests;
};

/// The decision table, row by row, on what a tick finds.
class Table
{
public:
    bool away = false;

    std::vector<Request> expected(const test::FakeMachine &machine, const AppState &state, bool wasAc, bool wasWarming)
    {
        const double bridge = machine.sensors.readings ? machine.sensors.readings->front().celsius : 0.0;
        const bool ac = machine.power.sources.front().state == "AC Power";
        const bool low = !ac && *machine.power.sources.front().currentCapacity < 15;
        const double idle = machine.idle.idle->count();
        const double target = state.targetTemp;

        std::vector<Request> requests;
        if (!wasAc && ac && bridge < 36.5 && state.autoWarmupOnCharger) {
            requests.push_back({target, false});
            wasWarming = true;
        }
        if (!state.smartModeEnabled || wasWarming)
            return requests;

        const bool wasAway = away;
        away = idle >= state.idleTimeoutMinutes * 60.0;
        if (away) {
            if (bridge < 38.0 && !low)
                requests.push_back({target > 39.5 ? target : 39.5, true});
        } else if (wasAway) {
            if (bridge < 39.5)
                requests.push_back({target, false});
        } else if (bridge < (target - 1.5 > 38.5 ? target - 1.5 : 38.5) && !low) {
            requests.push_back({target, true});
        }
        return requests;
    }
};

TEST(Soak, thirtyDaysFollowTheDecisionTableAndLeaveNothingBehind)
{
    Random random(7);
    test::FakeMachine machine;
    machine.power.set(true, 80);
    machine.sensors.set(30.0, 31.5);
    WatchedEngine engine(machine.engineMachine());
    WatchedState state(machine.stateServices(engine));
    Life life(machine, random);
    life.isHeating = [&] { return state.isWarmingUp.value(); };

    Table table;
    std::vector<Request> expected;
    long ticks = 0;
    long audible = 0;
    long mismatches = 0;
    std::vector<Subscription> views;
    long heard = 0;
    state.beforeTick = [&] { expected = table.expected(machine, state, state.isAcConnected, state.isWarmingUp); };
    state.afterTick = [&](const std::vector<Request> &requests) {
        ++ticks;
        audible += std::any_of(requests.begin(), requests.end(), [](const auto &request) { return !request.silent; });
        mismatches += requests != expected || state.isUserAway != table.away;
    };

    constexpr int days = ORVALEN_SOAK_DAYS;
    std::optional<long> allocationsAfterFirstDay;
    std::size_t eventsAfterFirstDay = 0;
    for (int day = 1; day <= days; ++day) {
        machine.world.advance(24h);
        machine.world.settle();
        machine.world.heaters = {};
        machine.sounds.played = {};
        machine.notifications.posted = {};
        machine.settings.writes = {};
        // Views come and go.
        views.push_back(state.observe([&] { ++heard; }));
        views.push_back(state.thermalData.subscribe([&](const auto &) { ++heard; }));
        if (views.size() > 2)
            views.erase(views.begin(), views.begin() + 2);
        // The owner plays with the settings; what is written must not pile up either.
        state.targetTemp = 38.0 + std::uniform_int_distribution<int>(0, 12)(random) * 0.5;
        state.idleTimeoutMinutes = 1.0 + std::uniform_int_distribution<int>(0, 9)(random);
        state.smartModeEnabled = uniform(random, 0.0, 1.0) > 0.15;
        machine.settings.writes = {};
        if (!allocationsAfterFirstDay) {
            allocationsAfterFirstDay = liveAllocations();
            eventsAfterFirstDay = machine.world.pendingEvents();
        }
    }

    EXPECT_EQ(mismatches, 0);
    EXPECT_EQ(engine.mostAtOnce, 1);
    EXPECT_GE(ticks, days * 86'400L / 3 - 1);
    EXPECT_GT(engine.pulses, days * 10L) << "a soak in which nothing happens proves nothing";
    EXPECT_GT(audible, days) << "returns and plug-ins must occur";
    EXPECT_EQ(state.observerCount(), 1u);
    EXPECT_EQ(state.thermalData.subscriberCount(), 1u);
    EXPECT_GT(heard, ticks);
    // A pulse may be under way at either count, with its dead-man; a leak of one object a tick would be 28 800 a day.
    EXPECT_LE(machine.world.pendingEvents(), eventsAfterFirstDay + 4);
    EXPECT_LE(liveAllocations(), *allocationsAfterFirstDay + 64) << "the heap grew over the days";
    RecordProperty("pulses", static_cast<int>(engine.pulses));
}

} // namespace
} // namespace orvalen
