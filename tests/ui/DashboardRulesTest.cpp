#include "ui/DashboardRules.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

#include "ui/kit/Formats.h"

namespace orvalen {
namespace {

using Rules = DashboardRules;
namespace accent = kit::accent;

SystemThermalData bridgeAt(double celsius)
{
    SystemThermalData data;
    data.bridgeTemp = celsius;
    return data;
}

TEST(DashboardRules, theBadgeSaysWarmingUpBeforeAnythingElse)
{
    EXPECT_EQ(Rules::statusWord(true, 40.0, bridgeAt(45.0)), "WARMING UP");
    EXPECT_EQ(Rules::statusAccent(true, 40.0, bridgeAt(45.0)), accent::orange);
    EXPECT_EQ(Rules::statusWord(true, 40.0, bridgeAt(20.0)), "WARMING UP");
}

TEST(DashboardRules, aBridgeExactlyAtTheTargetIsProtected)
{
    EXPECT_EQ(Rules::statusWord(false, 40.0, bridgeAt(40.0)), "PROTECTED");
    EXPECT_EQ(Rules::statusAccent(false, 40.0, bridgeAt(40.0)), accent::green);
    EXPECT_EQ(Rules::temperatureShade(false, 40.0, bridgeAt(40.0)), accent::green.vivid);
}

TEST(DashboardRules, aColdBridgeIsYellowInTheBadgeAndBlueInTheNumber)
{
    EXPECT_EQ(Rules::statusWord(false, 40.0, bridgeAt(39.99)), "STANDBY");
    EXPECT_EQ(Rules::statusAccent(false, 40.0, bridgeAt(39.99)), accent::yellow);
    EXPECT_EQ(Rules::temperatureShade(false, 40.0, bridgeAt(39.99)), accent::blue.vivid);
}

TEST(DashboardRules, noReadingIsStandby)
{
    EXPECT_EQ(Rules::statusWord(false, 40.0, {}), "STANDBY");
    EXPECT_EQ(Rules::bridgeValue({}), "0.0°C");
}

TEST(DashboardRules, theNumberIsThePulsesOwnWhileWarming)
{
    EXPECT_EQ(Rules::shownTemperature(true, 37.5, bridgeAt(41.0)), 37.5);
    EXPECT_EQ(Rules::shownTemperature(false, 37.5, bridgeAt(41.0)), 41.0);
    EXPECT_EQ(QColor::fromRgba(Rules::temperatureShade(true, 40.0, bridgeAt(41.0)).light), QColor(0xD97706));
    EXPECT_EQ(Rules::temperatureShade(true, 40.0, bridgeAt(41.0)).dark, accent::orange.vivid.dark);
}

TEST(DashboardRules, thePercentageIsCutOffNotRounded)
{
    EXPECT_EQ(Rules::warmupLabel(true, 0.0), "Optimizing Gate Drivers (0%)...");
    EXPECT_EQ(Rules::warmupLabel(true, 0.009), "Optimizing Gate Drivers (0%)...");
    EXPECT_EQ(Rules::warmupLabel(true, 0.29), "Optimizing Gate Drivers (28%)..."); // 0.29 * 100 < 29
    EXPECT_EQ(Rules::warmupLabel(true, 0.5), "Optimizing Gate Drivers (50%)...");
    EXPECT_EQ(Rules::warmupLabel(true, 0.999), "Optimizing Gate Drivers (99%)...");
    EXPECT_EQ(Rules::warmupLabel(true, 1.0), "Optimizing Gate Drivers (100%)...");
}

TEST(DashboardRules, theButtonAtRestAndAtWork)
{
    EXPECT_EQ(Rules::warmupLabel(false, 0.5), "Trigger Prime Warmup Now");
    EXPECT_EQ(Rules::warmupSymbol(false), "play.fill");
    EXPECT_EQ(Rules::warmupAccent(false), accent::blue);
    EXPECT_EQ(Rules::warmupSymbol(true), "flame.fill");
    EXPECT_EQ(Rules::warmupAccent(true), accent::orange);
    EXPECT_EQ(Rules::runningProgress(false, 1.0), std::nullopt);
    EXPECT_EQ(Rules::runningProgress(true, 0.25), 0.25);
}

TEST(DashboardRules, theTargetLine)
{
    EXPECT_EQ(Rules::targetLine(40.0), "Target Optimal: 40.0°C • Hotkey: ⌘⌥W");
    EXPECT_EQ(Rules::targetLine(41.26), "Target Optimal: 41.3°C • Hotkey: ⌘⌥W");
}

TEST(DashboardRules, powerAndPresence)
{
    EXPECT_EQ(Rules::powerValue(true, 64), "AC Adapter");
    EXPECT_EQ(Rules::powerSymbol(true), "bolt.fill");
    EXPECT_EQ(Rules::powerAccent(true), accent::green);
    for (const int percent : {0, 64, 100}) {
        EXPECT_EQ(Rules::powerValue(false, percent), QString::number(percent) + "% Battery");
        EXPECT_EQ(Rules::powerSymbol(false), "battery.75");
        EXPECT_EQ(Rules::powerAccent(false), accent::orange);
    }
    EXPECT_EQ(Rules::presenceValue(false), "Active Workstation");
    EXPECT_EQ(Rules::presenceSymbol(false), "person.fill.checkmark");
    EXPECT_EQ(Rules::presenceAccent(false), accent::green);
    EXPECT_EQ(Rules::presenceValue(true), "User Away (Idle)");
    EXPECT_EQ(Rules::presenceSymbol(true), "moon.zzz.fill");
    EXPECT_EQ(Rules::presenceAccent(true), accent::gray);
}

TEST(Formats, oneDecimalRoundsAsPrintfDoes)
{
    for (const double value : {0.0, -0.04, 0.05, 0.25, 0.35, 39.95, 39.96, 40.0, 46.25, 99.95, 124.999, -3.15, 1e300}) {
        char expected[400];
        std::snprintf(expected, sizeof expected, "%.1f", value);
        EXPECT_EQ(kit::oneDecimal(value), expected);
    }
}

TEST(Formats, aWholePartIsCutOff)
{
    EXPECT_EQ(kit::wholePart(9.9), "9");
    EXPECT_EQ(kit::wholePart(-0.5), "0");
    EXPECT_EQ(kit::wholePart(std::numeric_limits<double>::quiet_NaN()), "0");
    EXPECT_EQ(kit::wholePart(100.0), "100");
}

} // namespace
} // namespace orvalen
