#include "platform/macos/InputIdleTimeQuartz.h"

#include <cmath>
#include <limits>

#include "tests/platform/macos/CallsTest.h"
#include "tests/platform/macos/fakes/CoreGraphics.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

class InputIdleTimeQuartzTest : public test::CallsTest
{
protected:
    /// What the adapter makes of the system's answer.
    double askedWhenSystemSays(double seconds)
    {
        fake::coreGraphics() = {.secondsSinceLastEvent = seconds};
        const auto idle = InputIdleTimeQuartz().sinceLastInput();
        EXPECT_THAT(fake::takeCalls(), ElementsAre("CGEventSourceSecondsSinceLastEventType 0 4294967295"));
        EXPECT_TRUE(idle);
        return idle.value_or(std::chrono::seconds(-1000)).count();
    }
};

TEST_F(InputIdleTimeQuartzTest, isTheTimeSinceAnyInputInTheUsersSession)
{
    EXPECT_EQ(askedWhenSystemSays(179.96875), 179.96875);
    EXPECT_EQ(askedWhenSystemSays(0.0), 0.0);
}

TEST_F(InputIdleTimeQuartzTest, isAskedForAnewEachTime)
{
    EXPECT_EQ(askedWhenSystemSays(300.0), 300.0);
    EXPECT_EQ(askedWhenSystemSays(0.25), 0.25);
}

TEST_F(InputIdleTimeQuartzTest, passesOnWhatMakesNoSense)
{
    EXPECT_EQ(askedWhenSystemSays(-3.5), -3.5);
    EXPECT_EQ(askedWhenSystemSays(1.0e300), 1.0e300);
    EXPECT_EQ(askedWhenSystemSays(std::numeric_limits<double>::infinity()), std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(askedWhenSystemSays(std::numeric_limits<double>::quiet_NaN())));
}

} // namespace
} // namespace orvalen
