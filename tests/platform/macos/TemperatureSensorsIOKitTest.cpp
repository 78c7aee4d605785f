#include "platform/macos/TemperatureSensorsIOKit.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "core/SystemThermalData.h"
#include "tests/platform/TemperatureSensorsContract.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/CoreFoundation.h"
#include "tests/platform/macos/fakes/HidEvents.h"

namespace orvalen {
namespace {

using fake::HidSystem;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Optional;

constexpr auto matchingOfClient1 =
    R"(IOHIDEventSystemClientSetMatching client1 {"PrimaryUsagePage": int 65280, "PrimaryUsage": int 5})";
constexpr auto matchingOfClient2 =
    R"(IOHIDEventSystemClientSetMatching client2 {"PrimaryUsagePage": int 65280, "PrimaryUsage": int 5})";

auto reading(const std::string &product, double celsius)
{
    return AllOf(Field(&TemperatureReading::product, product), Field(&TemperatureReading::celsius, celsius));
}

class TemperatureSensorsIOKitTest : public ::testing::Test
{
protected:
    TemperatureSensorsIOKitTest() { (void)fake::takeCalls(); }
    ~TemperatureSensorsIOKitTest() override { EXPECT_EQ(fake::living(), 0); }

    TemperatureSensorsIOKit sensors;
};

TEST_F(TemperatureSensorsIOKitTest, asksEachTemperatureServiceForItsNameAndItsEvent)
{
    fake::setHidSystem({.services = {{"PMU tdie1", 42.9}, {"NAND CH0 temp", 35.0}}});
    EXPECT_THAT(sensors.read(), Optional(ElementsAre(reading("PMU tdie1", 42.9), reading("NAND CH0 temp", 35.0))));
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("IOHIDEventSystemClientCreate default", matchingOfClient1,
                            "IOHIDEventSystemClientCopyServices client1",
                            "IOHIDServiceClientCopyProperty service1 Product",
                            "IOHIDServiceClientCopyEvent service1 15 0 0", "IOHIDEventGetFloatValue event1 983040",
                            "IOHIDServiceClientCopyProperty service2 Product",
                            "IOHIDServiceClientCopyEvent service2 15 0 0", "IOHIDEventGetFloatValue event2 983040"));
}

TEST_F(TemperatureSensorsIOKitTest, readingsAreRaw)
{
    fake::setHidSystem({.services = {{"a", -21.7},
                                     {"b", 0.0},
                                     {"c", 125.0},
                                     {"d", 1e9},
                                     {"e", std::numeric_limits<double>::infinity()},
                                     {"f", std::nan("")}}});
    const auto readings = sensors.read();
    ASSERT_THAT(readings, Optional(ElementsAre(reading("a", -21.7), reading("b", 0.0), reading("c", 125.0),
                                               reading("d", 1e9), reading("e", std::numeric_limits<double>::infinity()),
                                               Field(&TemperatureReading::product, "f"))));
    EXPECT_TRUE(std::isnan(readings->back().celsius));
}

TEST_F(TemperatureSensorsIOKitTest, aServiceWithoutAnEventIsLeftOut)
{
    fake::setHidSystem({.services = {{"PMU tdie1", 42.9}, {"als-temp", std::nullopt}, {"PMU tdie2", 41.5}}});
    EXPECT_THAT(sensors.read(), Optional(ElementsAre(reading("PMU tdie1", 42.9), reading("PMU tdie2", 41.5))));
    EXPECT_THAT(fake::takeCalls(), Not(Contains(HasSubstr("event2"))));
}

TEST_F(TemperatureSensorsIOKitTest, aProductThatIsNoTextIsEmpty)
{
    fake::setHidSystem(
        {.services = {{std::monostate{}, 30.0}, {std::int64_t{7}, 31.0}, {"", 32.0}, {"Wärme 🔥", 33.0}}});
    EXPECT_THAT(sensors.read(), Optional(ElementsAre(reading("", 30.0), reading("", 31.0), reading("", 32.0),
                                                     reading("Wärme 🔥", 33.0))));
}

TEST_F(TemperatureSensorsIOKitTest, everyReadHasAClientOfItsOwn)
{
    fake::setHidSystem({.services = {}});
    EXPECT_TRUE(sensors.read());
    EXPECT_EQ(fake::living(), 0);
    EXPECT_TRUE(sensors.read());
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("IOHIDEventSystemClientCreate default", matchingOfClient1,
                            "IOHIDEventSystemClientCopyServices client1", "IOHIDEventSystemClientCreate default",
                            matchingOfClient2, "IOHIDEventSystemClientCopyServices client2"));
}

TEST_F(TemperatureSensorsIOKitTest, noMatchingServicesAreAnEmptyList)
{
    fake::setHidSystem({.services = {}});
    EXPECT_THAT(sensors.read(), Optional(IsEmpty()));
}

TEST_F(TemperatureSensorsIOKitTest, withoutAClientThereIsNoAnswerAndNothingMoreIsAsked)
{
    fake::setHidSystem({.services = {{"PMU tdie1", 42.9}}, .hasClient = false});
    EXPECT_EQ(sensors.read(), std::nullopt);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("IOHIDEventSystemClientCreate default"));
}

TEST_F(TemperatureSensorsIOKitTest, withoutAListThereIsNoAnswer)
{
    for (const auto list : {HidSystem::List::null, HidSystem::List::noArray}) {
        fake::setHidSystem({.services = {{"PMU tdie1", 42.9}}, .list = list});
        EXPECT_EQ(sensors.read(), std::nullopt);
        EXPECT_EQ(fake::living(), 0);
        EXPECT_THAT(fake::takeCalls(), ElementsAre("IOHIDEventSystemClientCreate default", matchingOfClient1,
                                                   "IOHIDEventSystemClientCopyServices client1"));
    }
}

// A dozen and more of the fifty-seven services of a laptop of 2020.
const std::vector<fake::HidService> laptop{
    {"PMU tdie1", 42.9},
    {"PMU tdie8", 41.0},
    {"PMU TP3w", 42.3},
    {"PMU tcal", 51.9},
    {"PMU tdev1", -21.7},
    {"PMU tdev3", 36.7},
    {"PMU tdev4", 35.5},
    {"PMU tdev8", 36.8},
    {"PMU2 tdie1", 43.6},
    {"PMU2 tcal", 51.9},
    {"PMU2 tdev2", 35.5},
    {"SOC MTR Temp Sensor0", 33.2},
    {"PMGR SOC Die Temp Sensor1", 37.0},
    {"pACC MTR Temp Sensor5", 38.5},
    {"eACC MTR Temp Sensor3", 34.0},
    {"GPU MTR Temp Sensor1", 30.0},
    {"ANE MTR Temp Sensor1", 30.0},
    {"als-temp", std::nullopt},
    {"NAND CH0 temp", 35.0},
    {"gas gauge battery", 32.5},
    {"gas gauge battery", 31.5},
};

TEST_F(TemperatureSensorsIOKitTest, aWholeLaptopGivesTheMeansOfItsGroups)
{
    fake::setHidSystem({.services = laptop});
    const auto readings = sensors.read();
    ASSERT_TRUE(readings);
    EXPECT_EQ(readings->size(), laptop.size() - 1);
    const auto data = summarised(*readings);
    EXPECT_NEAR(data.bridgeTemp, 41.06, 1e-9);
    EXPECT_NEAR(data.pmuTemp, 39.2875, 1e-9);
    EXPECT_NEAR(data.socTemp, 35.675, 1e-9);
    EXPECT_EQ(data.socMax, 38.5);
    EXPECT_NEAR(data.batteryTemp, 32.0, 1e-9);
    EXPECT_EQ(data.nandTemp, 35.0);
}

} // namespace

namespace test {
namespace {

struct Laptop
{
    Laptop() { fake::setHidSystem({.services = laptop}); }
    ~Laptop() { EXPECT_EQ(fake::living(), 0); }
    std::unique_ptr<TemperatureSensors> open() { return std::make_unique<TemperatureSensorsIOKit>(); }
};

INSTANTIATE_TYPED_TEST_SUITE_P(IOKit, TemperatureSensorsContract, Laptop);

} // namespace
} // namespace test
} // namespace orvalen
