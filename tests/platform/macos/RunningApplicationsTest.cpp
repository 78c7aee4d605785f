#include "platform/macos/RunningApplications.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "tests/platform/macos/fakes/AppKit.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/ObjectiveC.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

constexpr const char *ours = "org.some.Thing";
const int self = getpid();

class RunningApplicationsTest : public ::testing::Test
{
protected:
    RunningApplicationsTest() { static_cast<void>(fake::takeCalls()); }

    /// No pool but its own: whatever it leaves to one stays alive.
    ~RunningApplicationsTest() override
    {
        EXPECT_EQ(fake::livingObjects(), livingBefore);
        fake::setRunningApplications({});
    }

    static bool isRunningBeside(const std::vector<fake::RunningApplication> &applications)
    {
        fake::setRunningApplications(applications);
        const bool isRunning = isRunningElsewhere(ours);
        EXPECT_THAT(fake::takeCalls(), ElementsAre("runningApplicationsWithBundleIdentifier org.some.Thing"));
        return isRunning;
    }

private:
    const int livingBefore = fake::livingObjects();
};

TEST_F(RunningApplicationsTest, whereNobodyIsListedNobodyElseRuns)
{
    EXPECT_FALSE(isRunningBeside({}));
}

TEST_F(RunningApplicationsTest, weOurselvesAreNobodyElse)
{
    EXPECT_FALSE(isRunningBeside({{ours, self}}));
}

TEST_F(RunningApplicationsTest, anotherProcessOfTheBundleRuns)
{
    EXPECT_TRUE(isRunningBeside({{ours, self + 1}}));
    EXPECT_TRUE(isRunningBeside({{ours, self}, {ours, self + 1}}));
    EXPECT_TRUE(isRunningBeside({{ours, self + 1}, {ours, self}}));
}

TEST_F(RunningApplicationsTest, oneThatHasEndedDoesNot)
{
    EXPECT_FALSE(isRunningBeside({{ours, self + 1, true}, {ours, self}}));
    EXPECT_TRUE(isRunningBeside({{ours, self + 1, true}, {ours, self + 2}}));
}

TEST_F(RunningApplicationsTest, anotherProgramIsNoneOfOurs)
{
    EXPECT_FALSE(isRunningBeside({{"org.some.Thing.Simulated", self + 1}}));
}

} // namespace
} // namespace orvalen
