#include "platform/macos/ScreenCaptureAccessQuartz.h"

#include "tests/platform/macos/CallsTest.h"
#include "tests/platform/macos/fakes/CoreGraphics.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

class ScreenCaptureAccessQuartzTest : public test::CallsTest
{
protected:
    ScreenCaptureAccessQuartz access;
};

TEST_F(ScreenCaptureAccessQuartzTest, isFoundOutWithoutAskingTheUser)
{
    for (const bool isGranted : {false, true, false}) {
        fake::coreGraphics() = {.isCaptureGranted = isGranted};
        EXPECT_EQ(access.isGranted(), isGranted);
        EXPECT_THAT(fake::takeCalls(), ElementsAre("CGPreflightScreenCaptureAccess"));
    }
}

TEST_F(ScreenCaptureAccessQuartzTest, aRequestLetsTheSystemAskWhetherItIsGrantedOrNot)
{
    for (const bool isGranted : {false, true}) {
        fake::coreGraphics() = {.isCaptureGranted = isGranted};
        access.request();
        EXPECT_THAT(fake::takeCalls(), ElementsAre("CGRequestScreenCaptureAccess"));
    }
}

} // namespace
} // namespace orvalen
