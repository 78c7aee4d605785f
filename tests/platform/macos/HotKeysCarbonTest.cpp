#include "platform/macos/HotKeysCarbon.h"

#include <gmock/gmock.h>

#include <tuple>
#include <vector>

#include "system/HotKeyManager.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/Carbon.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto warmup = HotKeyManager::warmupHotKey;
constexpr auto cast = HotKeyManager::castHotKey;
constexpr UInt32 commandOption = cmdKey + optionKey;
constexpr UInt32 shiftKey = 0x200;

constexpr const char *reading = "GetEventParameter ---- hkid null 8 null";

class HotKeysCarbonTest : public ::testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(carbon.outstanding(), 0) << "somebody keeps what he no longer holds"; }

    HotKeys::Handler writeDown(bool isHandled = true)
    {
        return [this, isHandled](const std::optional<HotKeyId> &id) {
            pressed.push_back(id);
            return isHandled;
        };
    }

    fake::Carbon carbon;
    HotKeysCarbon keys;
    std::vector<std::optional<HotKeyId>> pressed;
};

TEST_F(HotKeysCarbonTest, asksForNothingByItself)
{
    EXPECT_THAT(fake::takeCalls(), IsEmpty());
}

TEST_F(HotKeysCarbonTest, installsOneHandlerForPressesAtTheApplication)
{
    const auto handle = keys.installHandler(writeDown());
    EXPECT_TRUE(handle);
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("GetApplicationEventTarget", "InstallEventHandler application 1 keyb 5 null"));
}

TEST_F(HotKeysCarbonTest, registersEachKeyUnderItsOwnSignatureAndNumber)
{
    const auto one = keys.registerHotKey(warmup);
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("GetApplicationEventTarget", "RegisterEventHotKey 13 2304 OVR1 1 application 0"));
    const auto other = keys.registerHotKey(cast);
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("GetApplicationEventTarget", "RegisterEventHotKey 46 2304 OVR2 2 application 0"));
    EXPECT_TRUE(one);
    EXPECT_TRUE(other);
}

TEST_F(HotKeysCarbonTest, aPressTellsItsIdentifierAndCountsAsHandled)
{
    const auto handler = keys.installHandler(writeDown());
    const auto one = keys.registerHotKey(warmup), other = keys.registerHotKey(cast);
    std::ignore = fake::takeCalls();
    EXPECT_EQ(carbon.press(kVK_ANSI_M, commandOption), noErr);
    EXPECT_EQ(carbon.press(kVK_ANSI_W, commandOption), noErr);
    EXPECT_THAT(pressed, ElementsAre(cast.identifier, warmup.identifier));
    EXPECT_THAT(fake::takeCalls(), ElementsAre(reading, reading));
}

TEST_F(HotKeysCarbonTest, twoQuickPressesAreTwo)
{
    const auto handler = keys.installHandler(writeDown());
    const auto key = keys.registerHotKey(warmup);
    EXPECT_EQ(carbon.press(kVK_ANSI_W, commandOption), noErr);
    EXPECT_EQ(carbon.press(kVK_ANSI_W, commandOption), noErr);
    EXPECT_THAT(pressed, ElementsAre(warmup.identifier, warmup.identifier));
}

TEST_F(HotKeysCarbonTest, moreModifiersThanAskedForAreNotThatKey)
{
    const auto handler = keys.installHandler(writeDown());
    const auto key = keys.registerHotKey(warmup);
    EXPECT_EQ(carbon.press(kVK_ANSI_W, commandOption + shiftKey), std::nullopt);
    EXPECT_THAT(pressed, IsEmpty());
}

TEST_F(HotKeysCarbonTest, whatTheHandlerDoesNotHandleIsLeftToOthers)
{
    const auto handler = keys.installHandler(writeDown(false));
    EXPECT_EQ(carbon.deliver(EventHotKeyID{7, 2}), eventNotHandledErr);
    EXPECT_THAT(pressed, ElementsAre(HotKeyId{7, 2}));
}

TEST_F(HotKeysCarbonTest, theNextHandlerTakesThePlaceOfTheOneBefore)
{
    auto first = keys.installHandler([](const std::optional<HotKeyId> &) -> bool {
        ADD_FAILURE() << "asked, though there is a later one";
        return true;
    });
    std::ignore = fake::takeCalls();
    auto second = keys.installHandler(writeDown(false));
    EXPECT_TRUE(second);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("GetApplicationEventTarget"));
    EXPECT_EQ(carbon.deliver(EventHotKeyID{7, 1}), eventNotHandledErr);
    first.reset();
    EXPECT_EQ(carbon.deliver(EventHotKeyID{7, 2}), eventNotHandledErr);
    EXPECT_THAT(pressed, ElementsAre(HotKeyId{7, 1}, HotKeyId{7, 2}));
    std::ignore = fake::takeCalls();
    second.reset();
    EXPECT_THAT(fake::takeCalls(), ElementsAre("RemoveEventHandler"));
}

TEST_F(HotKeysCarbonTest, theHandlerOfBeforeDoesNotComeBack)
{
    auto first = keys.installHandler(writeDown());
    keys.installHandler(writeDown()).reset();
    EXPECT_EQ(carbon.deliver(EventHotKeyID{7, 1}), std::nullopt);
    first.reset();
    EXPECT_THAT(pressed, IsEmpty());
    EXPECT_TRUE(keys.installHandler(writeDown())) << "a new one is installed";
}

TEST_F(HotKeysCarbonTest, anUnknownIdentifierIsTheHandlersToJudge)
{
    const auto handler = keys.installHandler(writeDown());
    EXPECT_EQ(carbon.deliver(EventHotKeyID{0xFFFFFFFF, 99}), noErr);
    EXPECT_THAT(pressed, ElementsAre(HotKeyId{0xFFFFFFFF, 99}));
}

TEST_F(HotKeysCarbonTest, anUnreadablePressIsToldAsThat)
{
    const auto handler = keys.installHandler(writeDown());
    EXPECT_EQ(carbon.deliver(std::nullopt), noErr);
    EXPECT_THAT(pressed, ElementsAre(std::nullopt));
}

TEST_F(HotKeysCarbonTest, aNullEventIsSwallowed)
{
    const auto handler = keys.installHandler(writeDown(false));
    std::ignore = fake::takeCalls();
    EXPECT_EQ(carbon.deliverNull(), noErr);
    EXPECT_THAT(pressed, IsEmpty());
    EXPECT_THAT(fake::takeCalls(), IsEmpty());
}

TEST_F(HotKeysCarbonTest, withoutATargetThereIsNoHandleAndNoFurtherCall)
{
    carbon.hasTarget = false;
    EXPECT_FALSE(keys.installHandler(writeDown()));
    EXPECT_FALSE(keys.registerHotKey(warmup));
    EXPECT_THAT(fake::takeCalls(), ElementsAre("GetApplicationEventTarget", "GetApplicationEventTarget"));
}

TEST_F(HotKeysCarbonTest, aHandlerThatIsRefusedGivesNoHandleAndNothingBack)
{
    carbon.installing = paramErr;
    EXPECT_FALSE(keys.installHandler(writeDown()));
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("GetApplicationEventTarget", "InstallEventHandler application 1 keyb 5 null"));
}

TEST_F(HotKeysCarbonTest, aKeyThatIsSomebodyElsesGivesNoHandleAndNothingBack)
{
    carbon.registering = eventHotKeyExistsErr;
    EXPECT_FALSE(keys.registerHotKey(warmup));
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("GetApplicationEventTarget", "RegisterEventHotKey 13 2304 OVR1 1 application 0"));
}

TEST_F(HotKeysCarbonTest, aKeyIsRegisteredEvenWhereItsHandlerWasRefused)
{
    carbon.installing = paramErr;
    EXPECT_FALSE(keys.installHandler(writeDown()));
    EXPECT_TRUE(keys.registerHotKey(warmup));
}

TEST_F(HotKeysCarbonTest, handlesGiveBackWhatTheyStandFor)
{
    auto handler = keys.installHandler(writeDown());
    auto one = keys.registerHotKey(warmup), other = keys.registerHotKey(cast);
    std::ignore = fake::takeCalls();

    one.reset();
    EXPECT_THAT(fake::takeCalls(), ElementsAre("UnregisterEventHotKey"));
    EXPECT_EQ(carbon.press(kVK_ANSI_W, commandOption), std::nullopt);
    EXPECT_EQ(carbon.press(kVK_ANSI_M, commandOption), noErr);

    std::ignore = fake::takeCalls();
    handler.reset();
    EXPECT_THAT(fake::takeCalls(), ElementsAre("RemoveEventHandler"));
    EXPECT_EQ(carbon.press(kVK_ANSI_M, commandOption), std::nullopt);

    other.reset();
    EXPECT_THAT(pressed, ElementsAre(cast.identifier));
    EXPECT_EQ(carbon.outstanding(), 0);
}

TEST_F(HotKeysCarbonTest, aHandlerMayGiveItselfBackWhileItIsCalled)
{
    std::unique_ptr<HotKeyHandle> handle;
    handle = keys.installHandler([&, canary = std::make_shared<int>(5)](const std::optional<HotKeyId> &) {
        const std::weak_ptr<int> alive = canary;
        handle.reset();
        EXPECT_FALSE(alive.expired()) << "the running handler was freed under its own feet";
        return true;
    });
    EXPECT_EQ(carbon.deliver(EventHotKeyID{1, 1}), noErr);
}

} // namespace
} // namespace orvalen
