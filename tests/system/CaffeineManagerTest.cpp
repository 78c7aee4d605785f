#include "system/CaffeineManager.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/PowerFakes.h"

namespace orvalen {
namespace {

using test::FakePowerAssertions;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct CaffeineManagerTest : ::testing::Test
{
    FakePowerAssertions system;
    CaffeineManager manager{system};
};

TEST_F(CaffeineManagerTest, holdsNothingAtFirst)
{
    EXPECT_FALSE(manager.isActive);
    EXPECT_THAT(system.asked, IsEmpty());
}

TEST_F(CaffeineManagerTest, asksThatTheIdleSystemStaysAwakeAndSaysWhoWantsIt)
{
    manager.enable();
    ASSERT_EQ(system.asked.size(), 1u);
    EXPECT_EQ(system.asked[0].type, "PreventUserIdleSystemSleep");
    EXPECT_EQ(system.asked[0].level, 255u);
    EXPECT_EQ(system.asked[0].name, "Orvalen: Prevent System Sleep");
    EXPECT_TRUE(manager.isActive);
}

TEST_F(CaffeineManagerTest, enablingTwiceAsksOnce)
{
    manager.enable();
    manager.enable();
    EXPECT_EQ(system.asked.size(), 1u);
    EXPECT_TRUE(manager.isActive);
    EXPECT_THAT(system.released, IsEmpty());
}

TEST_F(CaffeineManagerTest, disablingTwiceReleasesOnceWhatIsHeld)
{
    system.next = 4711;
    manager.enable();
    manager.disable();
    EXPECT_FALSE(manager.isActive);
    manager.disable();
    EXPECT_THAT(system.released, ElementsAre(4711u));
    EXPECT_FALSE(manager.isActive);
}

TEST_F(CaffeineManagerTest, disablingWhatWasNeverEnabledReleasesNothing)
{
    manager.disable();
    EXPECT_THAT(system.released, IsEmpty());
    EXPECT_FALSE(manager.isActive);
}

TEST_F(CaffeineManagerTest, eachTimeReleasesItsOwn)
{
    system.next = std::numeric_limits<std::uint32_t>::max() - 1; // identifiers are all 32 bits wide
    manager.enable();
    manager.disable();
    manager.enable();
    manager.disable();
    EXPECT_THAT(system.released,
                ElementsAre(std::numeric_limits<std::uint32_t>::max() - 1, std::numeric_limits<std::uint32_t>::max()));
    EXPECT_THAT(system.held, IsEmpty());
}

TEST_F(CaffeineManagerTest, aRefusalIsSilentAndLeavesItInactive)
{
    system.grants = false;
    int announcements = 0;
    const auto observing = manager.observe([&] { ++announcements; });
    std::vector<bool> values;
    const auto following = manager.isActive.subscribe([&](bool active) { values.push_back(active); });
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    manager.enable();
    EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(manager.isActive);
    EXPECT_EQ(announcements, 0);
    EXPECT_THAT(values, ElementsAre(false)); // as it was when the subscription began
    manager.disable();
    EXPECT_THAT(system.released, IsEmpty());
}

TEST_F(CaffeineManagerTest, togglingAfterARefusalAsksAgain)
{
    system.grants = false;
    manager.toggle();
    manager.toggle();
    EXPECT_EQ(system.asked.size(), 2u);
    EXPECT_FALSE(manager.isActive);
    system.grants = true;
    manager.toggle();
    EXPECT_EQ(system.asked.size(), 3u);
    EXPECT_TRUE(manager.isActive);
}

TEST_F(CaffeineManagerTest, togglingGoesBackAndForth)
{
    manager.toggle();
    EXPECT_TRUE(manager.isActive);
    EXPECT_EQ(system.held.size(), 1u);
    manager.toggle();
    EXPECT_FALSE(manager.isActive);
    EXPECT_THAT(system.held, IsEmpty());
    manager.toggle();
    EXPECT_TRUE(manager.isActive);
    EXPECT_EQ(system.asked.size(), 2u);
}

TEST_F(CaffeineManagerTest, announcesBeforeTheChangeAndTellsAfterIt)
{
    std::vector<std::string> diary;
    const auto observing =
        manager.observe([&] { diary.push_back(manager.isActive ? "will change from on" : "will change from off"); });
    const auto following = manager.isActive.subscribe([&](bool active) { diary.push_back(active ? "on" : "off"); });
    manager.enable();
    manager.enable();
    manager.disable();
    manager.disable();
    EXPECT_THAT(diary, ElementsAre("off", "will change from off", "on", "will change from on", "off"));
}

TEST_F(CaffeineManagerTest, whatItSaysIsTrueWhenItSaysSo)
{
    std::vector<std::size_t> heldWhenTold;
    const auto following = manager.isActive.subscribe([&](bool) { heldWhenTold.push_back(system.held.size()); });
    bool wasActiveDuringRelease = false;
    system.beforeRelease = [&] { wasActiveDuringRelease = manager.isActive; };
    manager.enable();
    manager.disable();
    EXPECT_THAT(heldWhenTold, ElementsAre(0u, 1u, 0u));
    EXPECT_TRUE(wasActiveDuringRelease); // first let go, then say so
}

TEST_F(CaffeineManagerTest, whoeverHearsOfItMaySwitchItBack)
{
    bool answer = true;
    const auto following = manager.isActive.subscribe([&](bool active) {
        if (active && std::exchange(answer, false))
            manager.disable();
    });
    manager.enable();
    EXPECT_FALSE(manager.isActive);
    EXPECT_THAT(system.held, IsEmpty());
    manager.enable();
    EXPECT_TRUE(manager.isActive);
}

TEST(CaffeineManager, itsEndReleasesNothing)
{
    FakePowerAssertions system;
    {
        CaffeineManager manager(system);
        manager.enable();
    }
    EXPECT_EQ(system.held.size(), 1u);
    EXPECT_THAT(system.released, IsEmpty());
}

TEST(CaffeineManager, itsOperationsCanBeReplacedAndToggleUsesTheReplacements)
{
    struct Replaced : CaffeineManager
    {
        using CaffeineManager::CaffeineManager;
        std::vector<std::string> calls;
        void enable() override
        {
            calls.emplace_back("enable");
            isActive = true;
        }
        void disable() override
        {
            calls.emplace_back("disable");
            isActive = false;
        }
    };
    FakePowerAssertions system;
    Replaced replaced(system);
    CaffeineManager &manager = replaced;
    manager.toggle();
    manager.toggle();
    EXPECT_THAT(replaced.calls, ElementsAre("enable", "disable"));
    EXPECT_THAT(system.asked, IsEmpty());

    struct Stuck : CaffeineManager
    {
        using CaffeineManager::CaffeineManager;
        void toggle() override {}
    };
    Stuck stuck(system);
    static_cast<CaffeineManager &>(stuck).toggle();
    EXPECT_FALSE(stuck.isActive);
}

} // namespace
} // namespace orvalen
