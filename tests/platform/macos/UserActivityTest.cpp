#include "platform/macos/UserActivity.h"

#include <gmock/gmock.h>

#include <optional>

#include "platform/macos/AutoreleasePool.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/ObjectiveC.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

/// The system's own object for this process, which is there for good.
int livingBeforeAnyActivity()
{
    const AutoreleasePool pool;
    const UserActivity first("");
    return fake::livingObjects() - 1;
}

TEST(UserActivityTest, lastsAsLongAsTheObject)
{
    livingBeforeAnyActivity();
    static_cast<void>(fake::takeCalls());
    std::optional<UserActivity> activity(std::in_place, "Keeps the display warm");
    EXPECT_THAT(fake::takeCalls(), ElementsAre("beginActivity 0xefffff Keeps the display warm"));
    activity.reset();
    EXPECT_THAT(fake::takeCalls(), ElementsAre("endActivity Keeps the display warm"));
}

TEST(UserActivityTest, isKeptForItselfAndLeavesNothingAlive)
{
    const int before = livingBeforeAnyActivity();
    {
        const UserActivity activity("A");
        EXPECT_EQ(fake::livingObjects(), before + 1);
    }
    EXPECT_EQ(fake::livingObjects(), before);
    static_cast<void>(fake::takeCalls());
}

} // namespace
} // namespace orvalen
