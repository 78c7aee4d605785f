#include "platform/macos/ApplicationAppKit.h"

#include <gmock/gmock.h>

#include <optional>
#include <utility>

#include "platform/macos/AutoreleasePool.h"
#include "tests/platform/macos/fakes/AppKit.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/ObjectiveC.h"
#include "tests/platform/macos/fakes/SystemVersion.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ApplicationAppKitTest : public ::testing::Test
{
protected:
    ApplicationAppKitTest()
    {
        fake::startApplication({});
        static_cast<void>(fake::takeCalls());
    }

    ~ApplicationAppKitTest() override
    {
        pool.reset();
        fake::endApplication();
        EXPECT_EQ(fake::livingObjects(), 0) << "forgotten";
    }

    std::optional<AutoreleasePool> pool{std::in_place};
    ApplicationAppKit application;
};

TEST_F(ApplicationAppKitTest, aRegularApplicationIsInTheDock)
{
    application.setActivationPolicy(Application::ActivationPolicy::regular);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("setActivationPolicy 0"));
}

TEST_F(ApplicationAppKitTest, upToMacOS13ItSaysWhetherToIgnoreOtherApplications)
{
    fake::setSystemVersion(13);
    application.activate(true);
    application.activate(false);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("activateIgnoringOtherApps 1", "activateIgnoringOtherApps 0"));
}

TEST_F(ApplicationAppKitTest, fromMacOS14OnItAsksTheSystemToBeActivated)
{
    for (const int version : {14, 15, 26}) {
        fake::setSystemVersion(version);
        application.activate(true);
        EXPECT_THAT(fake::takeCalls(), ElementsAre("activate")) << version;
    }
}

TEST_F(ApplicationAppKitTest, aHiddenApplicationIsUnhiddenBeforeItIsActivated)
{
    for (const auto &[version, activation] :
         {std::pair(13, "activateIgnoringOtherApps 1"), std::pair(14, "activate")}) {
        fake::setSystemVersion(version);
        fake::hideApplication();
        application.activate(true);
        EXPECT_THAT(fake::takeCalls(), ElementsAre("unhide", activation)) << version;
        application.activate(true);
        EXPECT_THAT(fake::takeCalls(), ElementsAre(activation)) << "it is hidden no longer";
    }
}

TEST_F(ApplicationAppKitTest, theWindowsOfAHiddenApplicationAreThereAgainOnceItIsActivated)
{
    fake::startApplication({{.name = "main"},
                            {.name = "closed", .isVisible = false},
                            {.name = "minimised", .isVisible = false, .isMiniaturized = true}});
    fake::hideApplication();
    EXPECT_EQ(application.windows().size(), 1U) << "the minimised one";
    application.activate(true);
    static_cast<void>(fake::takeCalls());
    for (const auto &window : application.windows())
        window->makeKeyAndOrderFront();
    EXPECT_THAT(fake::takeCalls(), ElementsAre("makeKeyAndOrderFront main", "makeKeyAndOrderFront minimised"));
}

TEST_F(ApplicationAppKitTest, withoutWindowsThereAreNone)
{
    EXPECT_THAT(application.windows(), IsEmpty());
}

TEST_F(ApplicationAppKitTest, listsWindowsInTheSystemsOrderWithoutThoseThatWereClosed)
{
    fake::startApplication({{.name = "main"},
                            {.name = "closed", .isVisible = false},
                            {.name = "minimised", .isVisible = false, .isMiniaturized = true},
                            {.name = "status item", .canBecomeKeyWindow = false},
                            {.name = "newest"}});
    const auto windows = application.windows();
    std::vector<bool> canBecomeKey;
    for (const auto &window : windows) {
        canBecomeKey.push_back(window->canBecomeKeyWindow());
        window->makeKeyAndOrderFront();
    }
    EXPECT_THAT(canBecomeKey, ElementsAre(true, true, false, true));
    EXPECT_THAT(fake::takeCalls(), ElementsAre("makeKeyAndOrderFront main", "makeKeyAndOrderFront minimised",
                                               "makeKeyAndOrderFront status item", "makeKeyAndOrderFront newest"));
}

TEST_F(ApplicationAppKitTest, listsManyWindows)
{
    fake::startApplication(std::vector<fake::Window>(40, {.name = "one of many"}));
    EXPECT_EQ(application.windows().size(), 40U);
}

TEST_F(ApplicationAppKitTest, survivesAWindowThatHasGoneSinceItWasListed)
{
    fake::startApplication({{.name = "main"}});
    const auto windows = application.windows();
    fake::startApplication({});
    pool.reset();
    windows.at(0)->makeKeyAndOrderFront();
    EXPECT_THAT(fake::takeCalls(), ElementsAre("makeKeyAndOrderFront main"));
}

TEST_F(ApplicationAppKitTest, windowsAreLetGo)
{
    fake::startApplication({{.name = "main"}});
    static_cast<void>(application.windows());
    pool.reset();
    fake::endApplication();
    EXPECT_EQ(fake::livingObjects(), 0);
}

using ApplicationAppKitDeathTest = ApplicationAppKitTest;

TEST_F(ApplicationAppKitDeathTest, withoutTheApplicationObjectTheProgramEnds)
{
    fake::endApplication();
    EXPECT_DEATH(application.setActivationPolicy(Application::ActivationPolicy::regular), "");
    EXPECT_DEATH(application.activate(true), "");
    EXPECT_DEATH(static_cast<void>(application.windows()), "");
}

} // namespace
} // namespace orvalen
