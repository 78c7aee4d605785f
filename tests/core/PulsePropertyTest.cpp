#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <stdexcept>
#include <vector>

#include "core/ThermalEngine.h"
#include "tests/support/FakeMachine.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

/// What one reading of a random trace does: it takes its time, then gives temperatures or throws.
struct Reading
{
    milliseconds takes{0};
    double bridge = 0.0;
    double pmu = 0.0;
    bool throws = false;
};

using Random = std::mt19937;

double between(Random &random, double low, double high)
{
    return std::uniform_real_distribution<double>(low, high)(random);
}

bool oneIn(Random &random, int n)
{
    return std::uniform_int_distribution<int>(1, n)(random) == 1;
}

/// A trace ends in its last reading, which repeats for ever. About a tenth are wild: slow, hanging, throwing or
/// nonsensical readings.
std::vector<Reading> randomTrace(Random &random)
{
    const bool wild = oneIn(random, 10);
    const double slope = between(random, -0.2, 0.8);
    std::vector<Reading> trace(static_cast<std::size_t>(std::uniform_int_distribution<int>(1, 66)(random)));
    double bridge = between(random, 5.0, 41.0);
    for (auto &reading : trace) {
        reading.bridge = bridge;
        reading.pmu = bridge + between(random, -1.0, 3.0);
        bridge += slope + between(random, -0.3, 0.3);
        if (!wild)
            continue;
        if (oneIn(random, 6))
            reading.takes = milliseconds(std::uniform_int_distribution<int>(0, 900)(random));
        if (oneIn(random, 80))
            reading.takes = milliseconds(std::uniform_int_distribution<int>(1000, 90'000)(random));
        if (oneIn(random, 8))
            reading.bridge = std::numeric_limits<double>::quiet_NaN();
        if (oneIn(random, 8))
            reading.pmu = std::numeric_limits<double>::infinity() * (oneIn(random, 2) ? 1.0 : -1.0);
        reading.throws = oneIn(random, 12);
    }
    return trace;
}

class TraceEngine : public ThermalEngine
{
public:
    TraceEngine(test::FakeMachine &machine, const std::vector<Reading> &trace)
        : ThermalEngine(machine.engineMachine()), machine(machine), trace(trace)
    {
    }

    SystemThermalData readSensors() override
    {
        const auto &reading = trace[std::min(next++, trace.size() - 1)];
        if (reading.takes > 0ms)
            machine.world.sleepFor(reading.takes);
        if (reading.throws)
            throw std::runtime_error("sensor trouble");
        return {reading.bridge, reading.pmu, 0.0, 0.0, 0.0, 0.0};
    }

private:
    test::FakeMachine &machine;
    const std::vector<Reading> &trace;
    std::size_t next = 0;
};

struct Outcome
{
    milliseconds heatersStart{-1}; ///< −1: never
    milliseconds heatersOff{0};
    double finalTemp = 0.0;
};

/// The same pulse, written down once more as plainly as possible: a loop over the trace that only counts time.
Outcome expectedOutcome(const std::vector<Reading> &trace, double target)
{
    std::size_t next = 0;
    milliseconds now{0};
    double current = 0.0;
    const auto read = [&](double &pmu) {
        const auto &reading = trace[std::min(next++, trace.size() - 1)];
        now += reading.takes;
        pmu = reading.throws ? 0.0 : reading.pmu;
        return reading.throws ? 0.0 : reading.bridge;
    };

    double pmu = 0.0;
    const double first = read(pmu);
    if (now >= 20s) // the dead-man, before anything was read
        return {milliseconds(-1), 20s, 0.0};
    current = first;
    if (target <= current)
        return {milliseconds(-1), now, current};
    const auto start = now;
    while (true) {
        now += 250ms;
        if (now >= 20s)
            return {start, 20s, current};
        const double bridge = read(pmu);
        if (now >= 20s)
            return {start, 20s, current};
        current = bridge;
        if (bridge >= target || pmu >= target + 2.0 || now - start > 15s)
            return {start, now, current};
    }
}

bool same(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

/// Why the pulse over this trace was wrong, or nothing.
std::optional<std::string> wrongWith(const std::vector<Reading> &trace, double target)
{
    test::FakeMachine machine;
    TraceEngine engine(machine, trace);
    int completions = 0;
    bool progressOutOfRange = false;
    bool progressAfterCompletion = false;
    std::chrono::nanoseconds off{};
    double finalTemp = 0.0;
    engine.executeControlledPulse(
        target,
        [&](double, double progress) {
            progressOutOfRange |= !(0.0 <= progress && progress <= 1.0);
            progressAfterCompletion |= completions > 0;
        },
        [&](double temperature) {
            ++completions;
            off = machine.world.now();
            finalTemp = temperature;
            for (const auto &heater : machine.world.heaters)
                heater.task(); // returns because the flag has fallen; a heater left on hangs here
        });
    machine.world.runUntilIdle();

    const auto expected = expectedOutcome(trace, target);
    if (completions != 1)
        return "completed " + std::to_string(completions) + " times";
    if (progressOutOfRange)
        return "progress outside 0 to 1";
    if (progressAfterCompletion)
        return "progress after completion";
    if (machine.world.heaters.empty() != (expected.heatersStart < 0ms))
        return "heaters started or not, against expectation";
    if (off != expected.heatersOff)
        return "off at " + std::to_string(off / 1ms) + " ms instead of " + std::to_string(expected.heatersOff / 1ms);
    if (!same(finalTemp, expected.finalTemp))
        return "ended at " + std::to_string(finalTemp) + " instead of " + std::to_string(expected.finalTemp);

    milliseconds longestRead{0};
    for (const auto &reading : trace)
        longestRead = std::max(longestRead, reading.takes);
    if (off > 20s || (expected.heatersStart >= 0ms && off > expected.heatersStart + 15250ms + longestRead))
        return "heated beyond its bound";
    return std::nullopt;
}

TEST(PulseProperty, heatersAreOffInTimeOnEveryRandomTrace)
{
    constexpr int traces = ORVALEN_RANDOM_TRACES;
    Random random(20'260'401);
    int timedOut = 0;
    int cutOff = 0;
    for (int i = 0; i < traces; ++i) {
        const auto trace = randomTrace(random);
        const double target = 38.0 + 0.5 * std::uniform_int_distribution<int>(0, 12)(random);
        if (const auto wrong = wrongWith(trace, target))
            FAIL() << "trace " << i << ", target " << target << ": " << *wrong;
        const auto off = expectedOutcome(trace, target).heatersOff;
        timedOut += off > 15s && off < 20s;
        cutOff += off == 20s;
    }
    // The traces are worth their number only if they reach every way to end.
    EXPECT_GT(timedOut, traces / 100);
    EXPECT_GT(cutOff, traces / 1000);
    RecordProperty("traces", traces);
}

} // namespace
} // namespace orvalen
