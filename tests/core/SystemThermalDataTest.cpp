#include "core/SystemThermalData.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

namespace orvalen {
namespace {

SystemThermalData withBridgeAndSocMax(double bridge, double socMax)
{
    return {bridge, 0.0, 0.0, socMax, 0.0, 0.0};
}

TEST(SystemThermalData, isAllZerosUntilSomethingWasRead)
{
    const SystemThermalData data;
    EXPECT_EQ(data, SystemThermalData(0.0, 0.0, 0.0, 0.0, 0.0, 0.0));
    EXPECT_TRUE(data.isBlankRisk());
    EXPECT_FALSE(data.isReady());
}

TEST(SystemThermalData, takesItsSixValuesInTheOrderOfTheirDeclaration)
{
    const SystemThermalData data(1.0, 2.0, 3.0, 4.0, 5.0, 6.0);
    EXPECT_EQ(data.bridgeTemp, 1.0);
    EXPECT_EQ(data.pmuTemp, 2.0);
    EXPECT_EQ(data.socTemp, 3.0);
    EXPECT_EQ(data.socMax, 4.0);
    EXPECT_EQ(data.batteryTemp, 5.0);
    EXPECT_EQ(data.nandTemp, 6.0);
}

TEST(SystemThermalData, theDisplayMayBlankBelow34)
{
    EXPECT_TRUE(withBridgeAndSocMax(33.99, 0.0).isBlankRisk());
    EXPECT_FALSE(withBridgeAndSocMax(34.0, 0.0).isBlankRisk());
}

TEST(SystemThermalData, isReadyFrom37OnTheBridge)
{
    EXPECT_TRUE(withBridgeAndSocMax(37.0, 0.0).isReady());
    EXPECT_FALSE(withBridgeAndSocMax(36.99, 39.99).isReady());
}

TEST(SystemThermalData, aHotChipAloneIsReadyAndMayStillBeAtRisk)
{
    const auto data = withBridgeAndSocMax(30.0, 40.0);
    EXPECT_TRUE(data.isReady());
    EXPECT_TRUE(data.isBlankRisk());
}

struct NameCase
{
    const char *product;
    bool soc;
    bool pmu;
    bool bridge;
    bool battery;
    bool nand;
};

void PrintTo(const NameCase &name, std::ostream *out)
{
    *out << '"' << name.product << '"';
}

class SensorNames : public ::testing::TestWithParam<NameCase>
{
};

// A marker sensor in each group keeps the means apart from the sensor under test: where 60 °C joins 20 °C, it is 40.
TEST_P(SensorNames, fallIntoTheirGroups)
{
    const auto &expected = GetParam();
    const auto data = summarised({{"SOC", 20.0},
                                  {"PMU", 20.0},
                                  {"PMU tdie", 20.0},
                                  {"battery", 20.0},
                                  {"NAND", 20.0},
                                  {expected.product, 60.0}});
    EXPECT_DOUBLE_EQ(data.socTemp, expected.soc ? 40.0 : 20.0);
    EXPECT_DOUBLE_EQ(data.socMax, expected.soc ? 60.0 : 20.0);
    EXPECT_DOUBLE_EQ(data.pmuTemp, expected.pmu ? 100.0 / 3.0 : 20.0);
    EXPECT_DOUBLE_EQ(data.bridgeTemp, expected.bridge ? 40.0 : 20.0);
    EXPECT_DOUBLE_EQ(data.batteryTemp, expected.battery ? 40.0 : 20.0);
    EXPECT_DOUBLE_EQ(data.nandTemp, expected.nand ? 40.0 : 20.0);
}

INSTANTIATE_TEST_SUITE_P(Table, SensorNames,
                         ::testing::Values( //                soc    pmu    bridge battery nand
                             NameCase{"PMU tcal", /*       */ false, false, false, false, false},
                             NameCase{"PMU tdie3", /*      */ false, true, true, false, false},
                             NameCase{"PMU2 tdie8", /*     */ false, true, true, false, false},
                             NameCase{"PMU tdev1", /*      */ false, true, false, false, false},
                             NameCase{"PMU tdev4", /*      */ false, true, true, false, false},
                             NameCase{"PMU tdev5", /*      */ false, true, true, false, false},
                             NameCase{"PMU tdev8", /*      */ false, true, false, false, false},
                             NameCase{"PMU TP3w", /*       */ false, true, true, false, false},
                             NameCase{"PMU2 TR0Z", /*      */ false, true, false, false, false},
                             NameCase{"pmu tdie1", /*      */ false, false, false, false, false},
                             NameCase{"tdie1", /*          */ false, false, false, false, false},
                             NameCase{"PMU tcal tdie1", /* */ false, false, false, false, false},
                             NameCase{"SOC MTR Temp Sensor0", true, false, false, false, false},
                             NameCase{"pACC MTR Temp Sensor2", true, false, false, false, false},
                             NameCase{"eACC MTR Temp Sensor0", true, false, false, false, false},
                             NameCase{"PMGR SOC Die Temp Sensor0", true, false, false, false, false},
                             NameCase{"SOC tcal", /*       */ false, false, false, false, false},
                             NameCase{"GPU MTR Temp Sensor1", false, false, false, false, false},
                             NameCase{"gas gauge battery", /**/ false, false, false, true, false},
                             NameCase{"Battery", /*        */ false, false, false, false, false},
                             NameCase{"NAND CH0 temp", /*  */ false, false, false, false, true},
                             NameCase{"PMU SOC NAND battery tdie", true, true, true, true, true},
                             NameCase{"battery tcal NAND", false, false, false, true, true},
                             NameCase{"", /*               */ false, false, false, false, false}));

TEST(Summary, isAllZerosWithoutSensors)
{
    EXPECT_EQ(summarised({}), SystemThermalData());
}

TEST(Summary, dropsReadingsOutsideTheBoundsAndNotANumber)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    for (const double dropped : {0.0, -0.1, -21.7, 125.0, 1000.0, nan, infinite, -infinite})
        EXPECT_EQ(summarised({{"PMU tdie1", dropped}, {"SOC", dropped}, {"battery", dropped}, {"NAND", dropped}}),
                  SystemThermalData())
            << dropped;
    for (const double kept : {0.1, 124.9})
        EXPECT_DOUBLE_EQ(summarised({{"PMU tdie1", kept}}).bridgeTemp, kept);
}

TEST(Summary, takesTheHotterOfPmuAndSocWithoutBridgeSensors)
{
    EXPECT_DOUBLE_EQ(summarised({{"PMU tdev1", 35.2}, {"SOC", 41.0}}).bridgeTemp, 41.0);
    EXPECT_DOUBLE_EQ(summarised({{"PMU tdev1", 41.5}, {"SOC", 41.0}}).bridgeTemp, 41.5);
    EXPECT_DOUBLE_EQ(summarised({{"SOC", 41.0}}).bridgeTemp, 41.0);
    EXPECT_DOUBLE_EQ(summarised({{"battery", 30.0}}).bridgeTemp, 0.0);
}

TEST(Summary, prefersBridgeSensorsEvenWhereTheChipIsHotter)
{
    EXPECT_DOUBLE_EQ(summarised({{"PMU tdie1", 30.0}, {"SOC", 90.0}}).bridgeTemp, 30.0);
}

TEST(Summary, countsEverySensorOfTheSameName)
{
    EXPECT_DOUBLE_EQ(summarised({{"gas gauge battery", 30.0}, {"gas gauge battery", 32.0}}).batteryTemp, 31.0);
}

} // namespace
} // namespace orvalen
