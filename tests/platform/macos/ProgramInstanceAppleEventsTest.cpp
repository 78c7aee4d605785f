#include "platform/macos/ProgramInstanceAppleEvents.h"

#include <gmock/gmock.h>

#include <tuple>
#include <vector>

#include "tests/platform/macos/CommandsTest.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/Carbon.h"
#include "tests/platform/macos/fakes/RunningApplications.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string bundle = "org.some.Thing";
constexpr const char *installing = "AEInstallEventHandler aevt rapp something 0";
constexpr const char *removing = "AERemoveEventHandler aevt rapp the one there 0";

OSErr toolkitsOwn(const AppleEvent *, AppleEvent *, SRefCon)
{
    return errAEEventNotHandled;
}

class ProgramInstanceAppleEventsTest : public test::CommandsTest
{
protected:
    void TearDown() override
    {
        instance.reset();
        EXPECT_EQ(carbon.outstanding(), 0) << "a handler stays behind whose object is gone";
        EXPECT_THAT(diary.take(), IsEmpty()) << "somebody was started";
        fake::setRunningElsewhere({});
    }

    /// Another process of this bundle runs.
    static void haveOneRunning()
    {
        fake::setRunningElsewhere([](std::string_view identifier) { return identifier == bundle; });
    }

    ProgramInstance::Requests requests()
    {
        return {.activate = [this](const std::string &token) { tokens.push_back(token); },
                .performAction = [](std::string_view name, const std::string &) { ADD_FAILURE() << name; }};
    }

    fake::Carbon carbon;
    std::unique_ptr<ProgramInstanceAppleEvents> instance =
        std::make_unique<ProgramInstanceAppleEvents>(bundle, processes);
    std::vector<std::string> tokens; ///< One for each time that we were asked to show ourselves.
};

TEST_F(ProgramInstanceAppleEventsTest, isTheOnlyOneWhereNoOtherRuns)
{
    EXPECT_THAT(fake::takeCalls(), IsEmpty());
    EXPECT_TRUE(instance->begin());
    EXPECT_THAT(fake::takeCalls(), ElementsAre(installing));
}

TEST_F(ProgramInstanceAppleEventsTest, whereAnotherRunsTheSystemReopensThatAndWeEnd)
{
    haveOneRunning();
    EXPECT_FALSE(instance->begin());
    expectStarted("/usr/bin/open", {"-b", bundle});
    EXPECT_THAT(fake::takeCalls(), IsEmpty());
}

TEST_F(ProgramInstanceAppleEventsTest, whereAnotherRunsWeEndThoughItCannotBeAsked)
{
    haveOneRunning();
    exhaustTheSystem();
    EXPECT_FALSE(instance->begin());
    EXPECT_THAT(diary.take(), ElementsAre("launch /usr/bin/open -b org.some.Thing"));
    EXPECT_THAT(fake::takeCalls(), IsEmpty());
}

TEST_F(ProgramInstanceAppleEventsTest, aProgramOfAnotherNameIsNotAskedFor)
{
    haveOneRunning();
    ProgramInstanceAppleEvents another("org.some.Thing.Simulated", processes);
    EXPECT_TRUE(another.begin());
}

TEST_F(ProgramInstanceAppleEventsTest, showsItselfWithoutATokenEachTimeItIsOpenedAgain)
{
    ASSERT_TRUE(instance->begin());
    instance->serve(requests());
    EXPECT_THAT(tokens, IsEmpty());
    EXPECT_EQ(carbon.reopen(), noErr);
    EXPECT_EQ(carbon.reopen(), noErr);
    EXPECT_THAT(tokens, ElementsAre("", ""));
}

TEST_F(ProgramInstanceAppleEventsTest, answersLaterWhatIsAskedTooEarly)
{
    ASSERT_TRUE(instance->begin());
    EXPECT_EQ(carbon.reopen(), noErr);
    EXPECT_EQ(carbon.reopen(), noErr);
    EXPECT_THAT(tokens, IsEmpty());
    instance->serve(requests());
    EXPECT_THAT(tokens, ElementsAre("", ""));
}

TEST_F(ProgramInstanceAppleEventsTest, takesOverFromTheToolkitThatInstalledItsOwnMeanwhile)
{
    ASSERT_TRUE(instance->begin());
    AEInstallEventHandler(kCoreEventClass, kAEReopenApplication, toolkitsOwn, nullptr, false);
    EXPECT_EQ(carbon.reopen(), errAEEventNotHandled);
    std::ignore = fake::takeCalls();
    instance->serve(requests());
    EXPECT_THAT(fake::takeCalls(), ElementsAre(installing));
    EXPECT_EQ(carbon.reopen(), noErr);
    EXPECT_THAT(tokens, ElementsAre(""));
}

TEST_F(ProgramInstanceAppleEventsTest, removesItsHandlerOnce)
{
    ASSERT_TRUE(instance->begin());
    instance->serve(requests());
    std::ignore = fake::takeCalls();
    instance.reset();
    EXPECT_THAT(fake::takeCalls(), ElementsAre(removing));
    EXPECT_EQ(carbon.reopen(), errAEEventNotHandled);
    EXPECT_THAT(tokens, IsEmpty());
}

TEST_F(ProgramInstanceAppleEventsTest, removesItsHandlerAlsoWhenItNeverServed)
{
    ASSERT_TRUE(instance->begin());
    std::ignore = fake::takeCalls();
    instance.reset();
    EXPECT_THAT(fake::takeCalls(), ElementsAre(removing));
}

TEST_F(ProgramInstanceAppleEventsTest, aRefusedHandlerIsNotRemovedAndEndsNoStart)
{
    carbon.installingAppleEvent = paramErr;
    EXPECT_TRUE(instance->begin());
    instance->serve(requests());
    EXPECT_THAT(fake::takeCalls(), ElementsAre(installing, installing));
    instance.reset();
    EXPECT_THAT(fake::takeCalls(), IsEmpty());
}

} // namespace
} // namespace orvalen
