#include "platform/posix/BoundedPowerSources.h"

#include <gtest/gtest.h>

#include "platform/linux/PowerSourcesSysfs.h"
#include "tests/support/SysfsTree.h"

namespace orvalen {
namespace {

const char *const laptop = R"(
[class/power_supply/AC]
type = Mains
online = 1
[class/power_supply/BAT0]
type = Battery
capacity = 64
)";

TEST(BoundedPowerSources, passOnWhatIsInside)
{
    const test::SysfsTree tree(laptop);
    BoundedPowerSources sources(std::make_shared<PowerSourcesSysfs>(tree.root()));
    ASSERT_EQ(sources.list().size(), 1u);
    EXPECT_EQ(sources.list().front().state, "AC Power");
    EXPECT_EQ(sources.list().front().currentCapacity, 64);
}

TEST(BoundedPowerSources, areNoneWhileAFileHangsAndComeBackWithItsAnswer)
{
    test::SysfsTree tree(laptop);
    BoundedPowerSources sources(std::make_shared<PowerSourcesSysfs>(tree.root()), std::chrono::milliseconds(20));
    tree.makeHang("class/power_supply/BAT0/capacity");
    EXPECT_TRUE(sources.list().empty());
    EXPECT_TRUE(sources.list().empty());
    tree.answer("class/power_supply/BAT0/capacity", "63");
    while (sources.list().empty()) // the late answer is on its way
        std::this_thread::yield();
    EXPECT_EQ(sources.list().front().currentCapacity, 63);
}

} // namespace
} // namespace orvalen
