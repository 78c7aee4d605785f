#include "platform/simulated/ThermalModel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvalen {
namespace {

using std::chrono::duration;
using std::chrono::hours;
using std::chrono::seconds;

constexpr double room = 20.0;
constexpr double gibibyte = 1024.0 * 1024.0 * 1024.0;
constexpr ThermalLoad off{.switchedOn = false};
constexpr ThermalLoad lightUse{};
constexpr ThermalLoad allCores{.busyShare = 1.0};
constexpr ThermalLoad everything{.busyShare = 1.0, .copyBytesPerSecond = 4 * gibibyte, .chargingWatts = 20.0};

template <typename Visit>
void forEachBody(Visit visit)
{
    for (std::size_t i = 0; i < bodyCount; ++i)
        visit(static_cast<Body>(i));
}

TEST(ThermalModel, startsAtTheTemperatureOfTheRoom)
{
    const ThermalModel model(room);
    forEachBody([&](Body body) { EXPECT_EQ(model.celsius(body), room); });
}

TEST(ThermalModel, switchedOffInAnEvenRoomNothingChanges)
{
    ThermalModel model(room);
    model.step(hours(5), off, room);
    forEachBody([&](Body body) { EXPECT_NEAR(model.celsius(body), room, 1e-9); });
}

TEST(ThermalModel, switchedOffEverythingEndsAtTheTemperatureOfTheRoom)
{
    ThermalModel model(room);
    model.step(hours(1), everything, room);
    model.step(hours(24), off, room);
    forEachBody([&](Body body) { EXPECT_NEAR(model.celsius(body), room, 1e-6); });
}

TEST(ThermalModel, underASteadyLoadEveryBodyOnlyGetsWarmer)
{
    ThermalModel model(room);
    auto before = model;
    for (int second = 0; second < 1200; ++second, before = model) {
        model.step(seconds(1), allCores, room);
        forEachBody([&](Body body) { EXPECT_GE(model.celsius(body), before.celsius(body) - 1e-9); });
    }
}

TEST(ThermalModel, noBodyEverLeavesTheRangeBetweenRoomAndSteadyState)
{
    ThermalModel steady(room);
    steady.step(hours(48), allCores, room);
    ThermalModel model(room);
    for (int second = 0; second < 3600; ++second) {
        model.step(seconds(1), allCores, room);
        forEachBody([&](Body body) {
            EXPECT_GE(model.celsius(body), room);
            EXPECT_LE(model.celsius(body), steady.celsius(body) + 1e-6);
        });
    }
}

TEST(ThermalModel, evenTheWorstLoadStaysBelowWhatSiliconBears)
{
    ThermalModel model(35.0);
    model.step(hours(48), everything, 35.0);
    forEachBody([&](Body body) { EXPECT_LT(model.celsius(body), 105.0); });
}

TEST(ThermalModel, manyShortStepsEndWhereOneLongOneDoes)
{
    ThermalModel oneStep(room);
    oneStep.step(seconds(60), everything, room);
    for (const double length : {0.001, 0.25, 3.0}) {
        ThermalModel model(room);
        const int count = static_cast<int>(60.0 / length + 0.5);
        for (int i = 0; i < count; ++i)
            model.step(duration<double>(length), everything, room);
        forEachBody([&](Body body) { EXPECT_NEAR(model.celsius(body), oneStep.celsius(body), 1e-6) << length; });
    }
}

TEST(ThermalModel, aMonthInOneStepIsTheSteadyState)
{
    ThermalModel aDay(room);
    ThermalModel aMonth(room);
    aDay.step(hours(24), lightUse, room);
    aMonth.step(hours(24 * 30), lightUse, room);
    forEachBody([&](Body body) { EXPECT_NEAR(aMonth.celsius(body), aDay.celsius(body), 1e-4); });
}

TEST(ThermalModel, noTimeNoChange)
{
    ThermalModel model(room);
    model.step(seconds(0), everything, room);
    model.step(seconds(-5), everything, room);
    forEachBody([&](Body body) { EXPECT_EQ(model.celsius(body), room); });
}

TEST(ThermalModel, everyJouleIsStoredOrLeaks)
{
    ThermalModel model(room);
    const double before = model.storedJoules();
    const duration<double> step(0.01);
    double leaked = 0.0;
    for (int i = 0; i < 30'000; ++i) {
        const double leakBefore = model.leakWatts(room);
        model.step(step, everything, room);
        leaked += (leakBefore + model.leakWatts(room)) / 2.0 * step.count();
    }
    const double made = ThermalModel::inputWatts(everything) * 300.0;
    EXPECT_NEAR(model.storedJoules() - before + leaked, made, made * 1e-5);
}

TEST(ThermalModel, aSteadyLaptopLeaksWhatItsLoadMakes)
{
    ThermalModel model(room);
    model.step(hours(48), lightUse, room);
    EXPECT_NEAR(model.leakWatts(room), ThermalModel::inputWatts(lightUse), 1e-6);
}

TEST(ThermalModel, theDieIsFastAndTheBridgeFollowsThroughTheBoard)
{
    ThermalModel model(room);
    model.step(hours(2), lightUse, room);
    const auto rest = model;
    model.step(seconds(5), allCores, room);
    const auto risen = [&](Body body) { return model.celsius(body) - rest.celsius(body); };
    EXPECT_GT(risen(Body::processor), risen(Body::board));
    EXPECT_GT(risen(Body::board), risen(Body::displayBridge));
    EXPECT_GT(risen(Body::displayBridge), 0.0);
    EXPECT_GT(risen(Body::displayBridge), 10 * risen(Body::battery));
}

TEST(ThermalModel, theLoadOfAShareOfTheCoresIsBounded)
{
    EXPECT_EQ(ThermalModel::inputWatts({.busyShare = 1.7}), ThermalModel::inputWatts({.busyShare = 1.0}));
    EXPECT_EQ(ThermalModel::inputWatts({.busyShare = -0.1}), ThermalModel::inputWatts({.busyShare = 0.0}));
    EXPECT_EQ(ThermalModel::inputWatts({.copyBytesPerSecond = 90 * gibibyte}),
              ThermalModel::inputWatts({.copyBytesPerSecond = 2 * gibibyte}));
}

} // namespace
} // namespace orvalen
