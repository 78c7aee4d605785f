#include "platform/macos/StatusBarAppKit.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>

#include "platform/macos/AutoreleasePool.h"
#include "tests/platform/macos/fakes/AppKit.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/ObjectiveC.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Between two events of the main loop nothing is left in its pool.
class StatusBarAppKitTest : public ::testing::Test
{
protected:
    StatusBarAppKitTest()
    {
        fake::openMenuBar({.symbols = {"shield.lefthalf.filled", "flame.fill"}});
        static_cast<void>(fake::takeCalls());
    }

    ~StatusBarAppKitTest() override
    {
        nextEvent();
        item.reset();
        pool.reset();
        fake::closeMenuBar();
        EXPECT_EQ(fake::livingObjects(), 0) << "forgotten";
    }

    void nextEvent()
    {
        pool.reset();
        pool.emplace();
    }

    void makeItem()
    {
        item = bar.statusItemWithLength(StatusBar::variableLength);
        nextEvent();
    }

    StatusItemButton &makeButton()
    {
        makeItem();
        static_cast<void>(fake::takeCalls());
        return *item->button();
    }

    std::optional<AutoreleasePool> pool{std::in_place};
    StatusBarAppKit bar;
    std::unique_ptr<StatusItem> item;
};

TEST_F(StatusBarAppKitTest, anItemStaysInTheBarUntilItIsDestroyed)
{
    makeItem();
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("statusItemWithLength -1.0", "setTarget", "setAction statusItemClicked:"));
    EXPECT_TRUE(item->button());
    EXPECT_EQ(fake::livingObjects(), 4) << "the bar, the item, its button and the target";
    item.reset();
    nextEvent();
    EXPECT_THAT(fake::takeCalls(), ElementsAre("setTarget nil", "removeStatusItem"));
    EXPECT_EQ(fake::livingObjects(), 1);
}

TEST_F(StatusBarAppKitTest, theLengthIsTheOneAskedFor)
{
    item = bar.statusItemWithLength(24.5);
    EXPECT_EQ(fake::takeCalls().at(0), "statusItemWithLength 24.5");
}

TEST_F(StatusBarAppKitTest, anItemWithoutAButtonIsStillAnItem)
{
    fake::openMenuBar({.itemsHaveButtons = false});
    makeItem();
    EXPECT_THAT(fake::takeCalls(), ElementsAre("statusItemWithLength -1.0"));
    EXPECT_FALSE(item->button());
    item.reset();
    EXPECT_THAT(fake::takeCalls(), ElementsAre("removeStatusItem"));
}

TEST_F(StatusBarAppKitTest, imagesFollowTheMenuBarsShade)
{
    auto &button = makeButton();
    button.setImage("shield.lefthalf.filled", "Orvalen");
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("imageWithSystemSymbolName shield.lefthalf.filled accessibilityDescription Orvalen",
                            "setTemplate 1 of shield.lefthalf.filled", "setImage shield.lefthalf.filled"));
}

TEST_F(StatusBarAppKitTest, aSymbolThatTheSystemDoesNotKnowLeavesTheTitleAlone)
{
    auto &button = makeButton();
    button.setImage("shield.lefthalf.filled", "Orvalen");
    button.setTitle(" 39°");
    static_cast<void>(fake::takeCalls());
    button.setImage("no.such.symbol", "Orvalen");
    EXPECT_THAT(
        fake::takeCalls(),
        ElementsAre("imageWithSystemSymbolName no.such.symbol accessibilityDescription Orvalen", "setImage nil"));
    button.setImage("flame.fill", "Orvalen");
    EXPECT_EQ(fake::takeCalls().back(), "setImage flame.fill");
}

TEST_F(StatusBarAppKitTest, theImageStandsLeftOfTheTitle)
{
    makeButton().setImagePosition(StatusItemButton::ImagePosition::left);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("setImagePosition 2"));
}

TEST_F(StatusBarAppKitTest, titlesAreShownToTheCharacter)
{
    auto &button = makeButton();
    button.setTitle(" 39°");
    button.setTitle("");
    EXPECT_THAT(fake::takeCalls(), ElementsAre("setTitle  39°", "setTitle "));
}

TEST_F(StatusBarAppKitTest, anEmptyTitleCountsAsATitle)
{
    makeButton().setTitle("");
    EXPECT_THAT(fake::takeCalls(), ElementsAre("setTitle "));
}

TEST_F(StatusBarAppKitTest, whatIsShownAlreadyIsNotSetAgain)
{
    auto &button = makeButton();
    const auto setAll = [&] {
        button.setImage("flame.fill", "Orvalen");
        button.setImagePosition(StatusItemButton::ImagePosition::left);
        button.setTitle(" 40°");
        nextEvent();
    };
    setAll();
    const int living = fake::livingObjects();
    static_cast<void>(fake::takeCalls());
    setAll();
    EXPECT_THAT(fake::takeCalls(), IsEmpty());
    EXPECT_EQ(fake::livingObjects(), living);
    button.setImage("flame.fill", "Heating");
    EXPECT_EQ(fake::takeCalls().size(), 3U) << "another description is another image";
}

TEST_F(StatusBarAppKitTest, imagesAndTitlesThatAreReplacedAreLetGo)
{
    auto &button = makeButton();
    for (const auto *const title : {" 38°", " 39°"}) {
        button.setTitle(title);
        button.setImage("flame.fill", "Orvalen");
        button.setImage("shield.lefthalf.filled", "Orvalen");
        nextEvent();
        EXPECT_EQ(fake::livingObjects(), 7) << "bar, item, button, target; title, image and the image's name";
    }
}

TEST_F(StatusBarAppKitTest, eachClickCallsTheAction)
{
    int clicks = 0;
    makeButton().setAction([&] { ++clicks; });
    nextEvent();
    fake::clickStatusItem();
    fake::clickStatusItem();
    EXPECT_EQ(clicks, 2);
    EXPECT_THAT(fake::takeCalls(), IsEmpty());
}

TEST_F(StatusBarAppKitTest, aClickWithoutAnActionDoesNothing)
{
    int clicks = 0;
    auto &button = makeButton();
    fake::clickStatusItem();
    button.setAction([&] { ++clicks; });
    button.setAction({});
    fake::clickStatusItem();
    EXPECT_EQ(clicks, 0);
}

TEST_F(StatusBarAppKitTest, theNewActionReplacesTheOldOneWhichIsForgotten)
{
    const auto kept = std::make_shared<int>(0);
    int clicks = 0;
    auto &button = makeButton();
    button.setAction([kept] { ++*kept; });
    button.setAction([&] { ++clicks; });
    EXPECT_EQ(kept.use_count(), 1);
    fake::clickStatusItem();
    EXPECT_EQ(*kept, 0);
    EXPECT_EQ(clicks, 1);
}

TEST_F(StatusBarAppKitTest, anActionMayReplaceItself)
{
    auto &button = makeButton();
    const auto kept = std::make_shared<int>(0);
    int others = 0;
    button.setAction([&, kept] {
        button.setAction([&] { ++others; });
        EXPECT_EQ(kept.use_count(), 2) << "what runs is still whole";
        ++*kept;
    });
    fake::clickStatusItem();
    EXPECT_EQ(*kept, 1);
    EXPECT_EQ(kept.use_count(), 1);
    fake::clickStatusItem();
    EXPECT_EQ(others, 1);
}

TEST_F(StatusBarAppKitTest, anActionMayDestroyTheItem)
{
    const auto kept = std::make_shared<int>(0);
    makeButton().setAction([this, kept] {
        item.reset();
        nextEvent();
        EXPECT_EQ(kept.use_count(), 2) << "what runs is still whole";
        ++*kept;
    });
    nextEvent();
    fake::clickStatusItem();
    EXPECT_EQ(*kept, 1);
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_EQ(fake::livingObjects(), 1) << "the bar";
    fake::clickStatusItem();
    EXPECT_EQ(*kept, 1) << "nothing is there to be clicked";
}

TEST_F(StatusBarAppKitTest, theActionGoesWithTheItem)
{
    const auto kept = std::make_shared<int>(0);
    makeButton().setAction([kept] {});
    item.reset();
    EXPECT_EQ(kept.use_count(), 1);
}

} // namespace
} // namespace orvalen
