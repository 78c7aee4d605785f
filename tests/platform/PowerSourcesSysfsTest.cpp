#include "platform/linux/PowerSourcesSysfs.h"

#include <gmock/gmock.h>

#include "tests/platform/SysfsLaptops.h"
#include "tests/support/SysfsTree.h"

namespace orvalen {
namespace {

using test::SysfsTree;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

auto source(const char *state, std::optional<std::int64_t> capacity)
{
    return AllOf(Field(&PowerSource::state, state), Field(&PowerSource::currentCapacity, capacity));
}

std::vector<PowerSource> sourcesOf(const char *description)
{
    const SysfsTree tree(description);
    return PowerSourcesSysfs(tree.root()).list();
}

TEST(PowerSourcesSysfs, anAppleSiliconLaptopOnTheCharger)
{
    EXPECT_THAT(sourcesOf(test::appleSiliconLaptop), ElementsAre(source("AC Power", 78)));
}

TEST(PowerSourcesSysfs, anIntelLaptopOnItsBattery)
{
    EXPECT_THAT(sourcesOf(test::intelLaptop), ElementsAre(source("Battery Power", 64)));
}

TEST(PowerSourcesSysfs, twoBatteriesAndAUsbChargerAndAMouse)
{
    EXPECT_THAT(sourcesOf(test::amdLaptop), ElementsAre(source("AC Power", 91), source("AC Power", 40)));
}

TEST(PowerSourcesSysfs, aDeskWithoutBatteryHasNoSources)
{
    EXPECT_THAT(sourcesOf("[class/power_supply/AC]\ntype = Mains\nonline = 1"), IsEmpty());
    EXPECT_THAT(sourcesOf(test::emptyMachine), IsEmpty());
    EXPECT_THAT(sourcesOf(""), IsEmpty());
}

TEST(PowerSourcesSysfs, anyAdapterOnlineIsEnough)
{
    EXPECT_THAT(sourcesOf(R"(
        [class/power_supply/AC]
        type = Mains
        online = 0
        [class/power_supply/BAT0]
        type = Battery
        capacity = 50
        [class/power_supply/ucsi1]
        type = USB
        online = 0
        [class/power_supply/ucsi2]
        type = USB
        online = 1
    )"),
                ElementsAre(source("AC Power", 50)));
}

TEST(PowerSourcesSysfs, aBatterysOwnOnlineIsNoAdapter)
{
    EXPECT_THAT(sourcesOf("[class/power_supply/BAT0]\ntype = Battery\nonline = 1\ncapacity = 50"),
                ElementsAre(source("Battery Power", 50)));
    EXPECT_THAT(sourcesOf("[class/power_supply/BAT0]\ntype = Battery\ncapacity = 50\n"
                          "[class/power_supply/pad]\ntype = Wireless\nonline = 1"),
                ElementsAre(source("Battery Power", 50)));
}

TEST(PowerSourcesSysfs, anAdapterWithoutAnAnswerIsNotPluggedIn)
{
    for (const auto *online : {"", "online =", "online = yes", "online/", "online -> /proc/self/mem"}) {
        EXPECT_THAT(sourcesOf(("[class/power_supply/AC]\ntype = Mains\n" + std::string(online) +
                               "\n[class/power_supply/BAT0]\ntype = Battery\ncapacity = 50")
                                  .c_str()),
                    ElementsAre(source("Battery Power", 50)))
            << online;
    }
}

TEST(PowerSourcesSysfs, batteriesComeInTheOrderOfTheirNames)
{
    EXPECT_THAT(sourcesOf(R"(
        [class/power_supply/BAT10]
        type = Battery
        capacity = 10
        [class/power_supply/BAT2]
        type = Battery
        capacity = 2
        [class/power_supply/BAT1]
        type = Battery
        capacity = 1
    )"),
                ElementsAre(source("Battery Power", 1), source("Battery Power", 2), source("Battery Power", 10)));
}

TEST(PowerSourcesSysfs, onlyTheMachinesOwnBatteriesCount)
{
    EXPECT_THAT(sourcesOf(R"(
        [class/power_supply/a]
        type = Battery
        scope = Device
        capacity = 1
        [class/power_supply/b]
        type = Battery
        scope = Unknown
        capacity = 2
        [class/power_supply/c]
        type = Battery
        scope = System
        capacity = 3
        [class/power_supply/d]
        type = UPS
        capacity = 4
        [class/power_supply/e]
        capacity = 5
    )"),
                ElementsAre(source("Battery Power", 3)));
}

TEST(PowerSourcesSysfs, aBatteryMayKeepItsLevelToItself)
{
    for (const auto *capacity : {"", "capacity =", "capacity = full", "capacity = 99999999999999999999", "capacity/"}) {
        EXPECT_THAT(sourcesOf(("[class/power_supply/BAT0]\ntype = Battery\n" + std::string(capacity)).c_str()),
                    ElementsAre(source("Battery Power", std::nullopt)))
            << capacity;
    }
}

TEST(PowerSourcesSysfs, everyListIsFresh)
{
    SysfsTree tree(test::intelLaptop);
    PowerSourcesSysfs power(tree.root());
    ASSERT_THAT(power.list(), ElementsAre(source("Battery Power", 64)));
    tree.write("class/power_supply/AC/online", "1");
    tree.write("class/power_supply/BAT0/capacity", "65");
    EXPECT_THAT(power.list(), ElementsAre(source("AC Power", 65)));
    tree.remove("class/power_supply/BAT0");
    EXPECT_THAT(power.list(), IsEmpty());
}

} // namespace
} // namespace orvalen
