#include "app/SimulatedHistory.h"

#include <gmock/gmock.h>

#include <cmath>

namespace orvalen {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using Moment = SimulatedHistory::Moment;

Moment at(seconds time, double bridge = 30.0, bool isWarmingUp = false)
{
    return {.time = time, .bridge = bridge, .soc = 30.0, .pmu = 30.0, .room = 20.0, .isWarmingUp = isWarmingUp};
}

TEST(SimulatedHistory, keepsFiveMinutesAndOneMomentBeyond)
{
    SimulatedHistory history;
    for (int second = 0; second <= 1000; ++second)
        history.add(at(seconds(second)));
    EXPECT_EQ(history.moments().back().time, seconds(1000));
    EXPECT_EQ(history.moments().front().time, seconds(700));
}

TEST(SimulatedHistory, afterALongPauseTheCurveStillReachesTheEdge)
{
    SimulatedHistory history;
    history.add(at(seconds(0)));
    history.add(at(seconds(1)));
    history.add(at(minutes(60)));
    ASSERT_EQ(history.moments().size(), 2u);
    EXPECT_EQ(history.moments().front().time, seconds(1));
}

TEST(SimulatedHistory, aWarmupLastsUntilTheFirstMomentWithoutIt)
{
    SimulatedHistory history;
    history.add(at(seconds(0)));
    history.add(at(seconds(1), 30, true));
    history.add(at(seconds(2), 31, true));
    history.add(at(seconds(3), 32));
    history.add(at(seconds(4), 32));
    history.add(at(seconds(5), 32, true));
    EXPECT_THAT(history.warmups(), ElementsAre(Pair(seconds(1), seconds(3)), Pair(seconds(5), seconds(5))));
}

TEST(SimulatedHistory, withoutMomentsThereAreNoWarmups)
{
    EXPECT_THAT(SimulatedHistory().warmups(), IsEmpty());
}

TEST(TemperatureScale, holdsEveryCurveAndTheTargetWithRoomAround)
{
    SimulatedHistory history;
    history.add(at(seconds(0), 22.0));
    history.add(at(seconds(1), 47.0));
    const auto scale = scaleFor(history, 41.5);
    EXPECT_EQ(scale, (TemperatureScale{.from = 15.0, .to = 50.0, .step = 5.0}));
    EXPECT_EQ(scale.lines(), 8);
}

TEST(TemperatureScale, aloneTheTargetHasAScaleToo)
{
    const auto scale = scaleFor(SimulatedHistory(), 40.0);
    EXPECT_EQ(scale, (TemperatureScale{.from = 35.0, .to = 45.0, .step = 5.0}));
}

TEST(TemperatureScale, neverHasMoreThanEightLines)
{
    for (const double top : {30.0, 55.0, 80.0, 105.0, 130.0}) {
        SimulatedHistory history;
        history.add(at(seconds(0), top));
        const auto scale = scaleFor(history, 40.0);
        EXPECT_LE(scale.lines(), 8);
        EXPECT_GT(scale.to, top);
        EXPECT_LT(scale.from, 20.0);
        EXPECT_EQ(std::fmod(scale.from, scale.step), 0.0);
    }
}

} // namespace
} // namespace orvalen
