#include "platform/linux/TemperatureSensorsSysfs.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "core/SystemThermalData.h"
#include "tests/platform/SysfsLaptops.h"
#include "tests/support/SysfsTree.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using test::SysfsTree;
using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Optional;

auto reads(const char *product, double celsius)
{
    return ::testing::AllOf(Field(&TemperatureReading::product, product),
                            Field(&TemperatureReading::celsius, DoubleEq(celsius)));
}

constexpr auto forEver = 24h;

TEST(TemperatureSensorsSysfs, anAppleSiliconLaptop)
{
    const SysfsTree tree(test::appleSiliconLaptop);
    const auto readings = TemperatureSensorsSysfs(tree.root()).read();
    ASSERT_THAT(readings, Optional(ElementsAre(reads("PMU tdev7", 33.9), reads("PMU tdev4", 35.4),
                                               reads("NAND Flash Temperature", 36.5), reads("gas gauge battery", 31.2),
                                               reads("NAND nvme Composite", 34.85))));
    const auto data = summarised(*readings);
    EXPECT_DOUBLE_EQ(data.bridgeTemp, 35.4);
    EXPECT_DOUBLE_EQ(data.pmuTemp, (33.9 + 35.4) / 2);
    EXPECT_DOUBLE_EQ(data.socTemp, 0.0);
    EXPECT_DOUBLE_EQ(data.socMax, 0.0);
    EXPECT_DOUBLE_EQ(data.batteryTemp, 31.2);
    EXPECT_DOUBLE_EQ(data.nandTemp, (36.5 + 34.85) / 2);
}

TEST(TemperatureSensorsSysfs, anIntelLaptop)
{
    const SysfsTree tree(test::intelLaptop);
    const auto readings = TemperatureSensorsSysfs(tree.root()).read();
    ASSERT_THAT(readings,
                Optional(ElementsAre(reads("PMU tdev5 TSKN", 34.05), reads("PMU acpitz", 27.8),
                                     reads("SOC coretemp Package id 0", 47.0), reads("pACC coretemp Core 0", 45.0),
                                     reads("pACC coretemp Core 4", 47.0), reads("pACC coretemp Core 8", 46.0),
                                     reads("PMU tdev5 dell_smm Ambient", 35.0), reads("PMU dell_smm SODIMM", 39.0),
                                     reads("PMU dell_smm Other", 37.0), reads("NAND nvme Composite", 38.85),
                                     reads("PMU pch_cannonlake", 44.0))));
    const auto data = summarised(*readings);
    EXPECT_DOUBLE_EQ(data.bridgeTemp, (34.05 + 35.0) / 2);
    EXPECT_DOUBLE_EQ(data.pmuTemp, (34.05 + 27.8 + 35.0 + 39.0 + 37.0 + 44.0) / 6);
    EXPECT_DOUBLE_EQ(data.socTemp, (47.0 + 45.0 + 47.0 + 46.0) / 4);
    EXPECT_DOUBLE_EQ(data.socMax, 47.0);
    EXPECT_DOUBLE_EQ(data.batteryTemp, 0.0);
    EXPECT_DOUBLE_EQ(data.nandTemp, 38.85);
}

TEST(TemperatureSensorsSysfs, anAmdLaptop)
{
    const SysfsTree tree(test::amdLaptop);
    const auto readings = TemperatureSensorsSysfs(tree.root()).read();
    ASSERT_THAT(readings,
                Optional(ElementsAre(reads("gas gauge battery BAT0", 31.2), reads("gas gauge battery BAT1", 29.8),
                                     reads("PMU acpitz", 51.0), reads("GPU amdgpu edge", 46.0),
                                     reads("SOC k10temp Tdie", 50.5), reads("SOC k10temp Tccd1", 49.75),
                                     reads("NAND nvme Composite", 40.85), reads("NAND nvme Composite", 36.85),
                                     reads("PMU thinkpad", 43.0), reads("PMU thinkpad", -128.0))));
    const auto data = summarised(*readings);
    EXPECT_DOUBLE_EQ(data.bridgeTemp, (50.5 + 49.75) / 2) << "no board sensor: the larger of the two others";
    EXPECT_DOUBLE_EQ(data.pmuTemp, (51.0 + 43.0) / 2);
    EXPECT_DOUBLE_EQ(data.batteryTemp, (31.2 + 29.8) / 2);
}

TEST(TemperatureSensorsSysfs, aMachineWithoutSensorsGivesAnEmptyList)
{
    const SysfsTree tree(test::emptyMachine);
    EXPECT_THAT(TemperatureSensorsSysfs(tree.root()).read(), Optional(IsEmpty()));
}

TEST(TemperatureSensorsSysfs, aMachineWithoutAPlaceForSensorsIsNotAvailable)
{
    const SysfsTree tree("[block]\n");
    EXPECT_EQ(TemperatureSensorsSysfs(tree.root()).read(), std::nullopt);
    EXPECT_EQ(TemperatureSensorsSysfs(tree.root() + "/nowhere").read(), std::nullopt);
}

TEST(TemperatureSensorsSysfs, theClassFoldersMayBeLinks)
{
    const SysfsTree tree(R"(
        [devices/platform/coretemp.0/hwmon/hwmon0]
        name = coretemp
        temp1_input = 43500
        temp1_label = Package id 0
        [devices/virtual/thermal/thermal_zone0]
        type = TSKN
        temp = 31000
        [class]
        hwmon/hwmon0 -> ../../devices/platform/coretemp.0/hwmon/hwmon0
        thermal/thermal_zone0 -> ../../devices/virtual/thermal/thermal_zone0
    )");
    EXPECT_THAT(TemperatureSensorsSysfs(tree.root()).read(),
                Optional(ElementsAre(reads("PMU tdev5 TSKN", 31.0), reads("SOC coretemp Package id 0", 43.5))));
}

TEST(TemperatureSensorsSysfs, onlyADiskThatSaysItDoesNotRotateIsAsked)
{
    SysfsTree tree(R"(
        [class/hwmon/hwmon0]
        name = drivetemp
        temp1_input = 30000
        device/block/sda/queue/rotational = 0
        [class/hwmon/hwmon1]
        name = drivetemp
        temp1_input = 31000
        device/block/sdb/queue/rotational = 1
        [class/hwmon/hwmon2]
        name = drivetemp
        temp1_input = 32000
    )");
    for (const auto *file : {"class/hwmon/hwmon1/temp1_input", "class/hwmon/hwmon2/temp1_input"})
        tree.makeHang(file); // asking would never end
    EXPECT_THAT(TemperatureSensorsSysfs(tree.root()).read(), Optional(ElementsAre(reads("NAND drivetemp", 30.0))));
}

TEST(TemperatureSensorsSysfs, whatGivesNoNumberIsLeftOut)
{
    const SysfsTree tree(R"(
        [class/hwmon/hwmon0]
        name = thinkpad
        temp1_input = words
        temp2_input = 43500 mC
        temp3_input =
        temp4_input = 99999999999999999999
        temp5_input/
        temp6_input -> temp6_input
        temp7_input -> /proc/self/mem
        temp8_input -> nowhere
        temp9_input = 41000
        [class/hwmon/hwmon1]
        name/
        temp1_input = 44000
        [class/hwmon/hwmon2]
        temp1_input = 44000
        [class/hwmon/hwmon3]
        name =
        temp1_input = 44000
        [class/hwmon]
        hwmon4 = a file in the place of a chip
        hwmon5 -> nowhere
        [class/thermal/thermal_zone0]
        temp = 44000
        [class/thermal/thermal_zone1]
        type = TSKN
        [class/thermal/thermal_zone2]
        type/
        temp = 44000
        [class/power_supply/BAT0]
        type = Battery
        temp = warm
    )");
    TemperatureSensorsSysfs sensors(tree.root());
    EXPECT_THAT(sensors.read(), Optional(ElementsAre(reads("PMU thinkpad", 41.0))));
    EXPECT_THAT(sensors.read(), Optional(ElementsAre(reads("PMU thinkpad", 41.0))));
}

TEST(TemperatureSensorsSysfs, numbersComeAsRawAsTheyAre)
{
    const SysfsTree tree(R"(
        [class/hwmon/hwmon0]
        name = thinkpad
        temp1_input = -128000
        temp2_input = 0
        temp3_input = 9223372036854775807
        temp4_input = 1
    )");
    EXPECT_THAT(
        TemperatureSensorsSysfs(tree.root()).read(),
        Optional(ElementsAre(reads("PMU thinkpad", -128.0), reads("PMU thinkpad", 0.0),
                             reads("PMU thinkpad", 9223372036854775807.0 / 1000), reads("PMU thinkpad", 0.001))));
}

TEST(TemperatureSensorsSysfs, aWorldInPlaceOfAFolderIsNoSensor)
{
    const SysfsTree tree("class/hwmon = a file\nclass/thermal -> thermal\n[class/power_supply]\n");
    EXPECT_THAT(TemperatureSensorsSysfs(tree.root()).read(), Optional(IsEmpty()));
}

constexpr auto twoSensors = R"(
    [class/hwmon/hwmon0]
    name = thinkpad
    temp1_input = 41000
    temp2_input = 42000
)";

TEST(TemperatureSensorsSysfs, everyReadIsFresh)
{
    SysfsTree tree(twoSensors);
    TemperatureSensorsSysfs sensors(tree.root(), forEver);
    ASSERT_THAT(sensors.read(), Optional(ElementsAre(reads("PMU thinkpad", 41.0), reads("PMU thinkpad", 42.0))));
    tree.write("class/hwmon/hwmon0/temp2_input", "43000");
    EXPECT_THAT(sensors.read(), Optional(ElementsAre(reads("PMU thinkpad", 41.0), reads("PMU thinkpad", 43.0))));
}

TEST(TemperatureSensorsSysfs, aSensorThatComesIsFoundAtTheNextListing)
{
    SysfsTree tree(twoSensors);
    TemperatureSensorsSysfs remembering(tree.root(), forEver);
    TemperatureSensorsSysfs forgetful(tree.root(), 0s);
    ASSERT_THAT(remembering.read(), Optional(::testing::SizeIs(2)));
    ASSERT_THAT(forgetful.read(), Optional(::testing::SizeIs(2)));
    tree.add("[class/thermal/thermal_zone0]\ntype = TSKN\ntemp = 30000");
    EXPECT_THAT(forgetful.read(), Optional(::testing::SizeIs(3)));
    EXPECT_THAT(remembering.read(), Optional(::testing::SizeIs(2)));
}

TEST(TemperatureSensorsSysfs, aSensorThatVanishesIsSkippedAndMakesTheNextReadLookAround)
{
    SysfsTree tree(twoSensors);
    TemperatureSensorsSysfs sensors(tree.root(), forEver);
    ASSERT_THAT(sensors.read(), Optional(::testing::SizeIs(2)));

    // As after a sleep: a driver gone, another one come.
    tree.remove("class/hwmon/hwmon0/temp1_input");
    tree.add("[class/thermal/thermal_zone0]\ntype = TSKN\ntemp = 30000");
    EXPECT_THAT(sensors.read(), Optional(ElementsAre(reads("PMU thinkpad", 42.0))));
    EXPECT_THAT(sensors.read(), Optional(ElementsAre(reads("PMU tdev5 TSKN", 30.0), reads("PMU thinkpad", 42.0))));
}

TEST(TemperatureSensorsSysfs, aSensorThatFailsForATimeComesBack)
{
    SysfsTree tree(twoSensors);
    TemperatureSensorsSysfs sensors(tree.root(), forEver);
    ASSERT_THAT(sensors.read(), Optional(::testing::SizeIs(2)));
    tree.add("[class/hwmon/hwmon0]\ntemp1_input/");
    EXPECT_THAT(sensors.read(), Optional(ElementsAre(reads("PMU thinkpad", 42.0))));
    tree.remove("class/hwmon/hwmon0/temp1_input");
    tree.write("class/hwmon/hwmon0/temp1_input", "44000");
    EXPECT_THAT(sensors.read(), Optional(ElementsAre(reads("PMU thinkpad", 44.0), reads("PMU thinkpad", 42.0))));
}

TEST(TemperatureSensorsSysfs, whileThereIsNothingEveryReadLooksAround)
{
    SysfsTree tree;
    TemperatureSensorsSysfs sensors(tree.root(), forEver);
    ASSERT_EQ(sensors.read(), std::nullopt);
    tree.add(test::emptyMachine);
    ASSERT_THAT(sensors.read(), Optional(IsEmpty()));
    tree.add(twoSensors);
    EXPECT_THAT(sensors.read(), Optional(::testing::SizeIs(2)));
}

TEST(TemperatureSensorsSysfs, chipsMayChangePlacesUnderManyReaders)
{
    SysfsTree tree(twoSensors);
    TemperatureSensorsSysfs sensors(tree.root(), 0s);
    std::atomic<bool> isOver = false;
    std::atomic<int> strange = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) {
        readers.emplace_back([&] {
            while (!isOver) {
                const auto readings = sensors.read();
                for (const auto &[product, celsius] : readings.value_or(std::vector<TemperatureReading>{}))
                    strange += product == "PMU thinkpad" && (celsius == 41.0 || celsius == 42.0) ? 0 : 1;
            }
        });
    }
    for (int i = 0; i < 50; ++i) {
        tree.remove("class/hwmon/hwmon0");
        tree.add(twoSensors);
    }
    isOver = true;
    for (auto &reader : readers)
        reader.join();
    EXPECT_EQ(strange, 0);
    EXPECT_THAT(sensors.read(), Optional(::testing::SizeIs(2)));
}

} // namespace
} // namespace orvalen
