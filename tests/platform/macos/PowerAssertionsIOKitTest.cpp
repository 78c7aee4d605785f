#include "platform/macos/PowerAssertionsIOKit.h"

#include <limits>

#include "tests/platform/macos/CallsTest.h"
#include "tests/platform/macos/fakes/PowerManagement.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

class PowerAssertionsIOKitTest : public test::CallsTest
{
protected:
    PowerAssertionsIOKitTest() { fake::powerManagement() = {}; }

    const PowerAssertion awake{"PreventUserIdleSystemSleep", 255, "Orvalen: Prevent System Sleep"};
    PowerAssertionsIOKit assertions;
};

TEST_F(PowerAssertionsIOKitTest, asksForWhatIsWishedAndPassesTheSystemsIdentifierOn)
{
    for (const IOPMAssertionID granted : {1u, 33'029u, std::numeric_limits<IOPMAssertionID>::max()}) {
        fake::powerManagement().granted = granted;
        EXPECT_EQ(assertions.create(awake), granted);
        EXPECT_THAT(fake::takeCalls(),
                    ElementsAre("IOPMAssertionCreateWithName PreventUserIdleSystemSleep 255 \"Orvalen: Prevent System "
                                "Sleep\" from 0"));
    }
}

TEST_F(PowerAssertionsIOKitTest, decidesNothingAboutTypesAndLevels)
{
    EXPECT_EQ(assertions.create({"PreventUserIdleDisplaySleep", 0, "Für die Anzeige 🛡️"}), 1u);
    EXPECT_THAT(
        fake::takeCalls(),
        ElementsAre("IOPMAssertionCreateWithName PreventUserIdleDisplaySleep 0 \"Für die Anzeige 🛡️\" from 0"));
}

TEST_F(PowerAssertionsIOKitTest, aRefusalGivesNoIdentifier)
{
    for (const IOReturn refusal : {IOReturn(0xE00002C2), IOReturn(0xE00002C1), 1, -1}) {
        fake::powerManagement().answer = refusal;
        EXPECT_EQ(assertions.create(awake), std::nullopt);
    }
    EXPECT_EQ(fake::takeCalls().size(), 4u);
}

TEST_F(PowerAssertionsIOKitTest, givesBackByTheIdentifier)
{
    assertions.release(33'029);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("IOPMAssertionRelease 33029"));
}

TEST_F(PowerAssertionsIOKitTest, anUnknownIdentifierIsTheSystemsToRefuse)
{
    fake::powerManagement().answer = IOReturn(0xE00002C2);
    assertions.release(5);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("IOPMAssertionRelease 5"));
}

} // namespace
} // namespace orvalen
