#include "system/HotKeyManager.h"

#include <gmock/gmock.h>

#include <sstream>

#include "platform/macos/HotKeysCarbon.h"
#include "streaming/OfflineBridgeManager.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/Carbon.h"
#include "tests/support/FakeMachine.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

struct CountingState : AppState
{
    using AppState::AppState;
    void triggerWarmup(std::optional<double> target, bool silent) override
    {
        EXPECT_EQ(target, std::nullopt);
        EXPECT_FALSE(silent);
        ++warmups;
    }
    int warmups = 0;
};

struct CountingServer : WebScreenServer
{
    using WebScreenServer::WebScreenServer;
    void triggerBlindCast() override { ++casts; }
    int casts = 0;
};

/// The rules on top of the adapter: what the event manager hears of a start, and what comes of a press.
class HotKeyManagerCarbonTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        manager.reset();
        EXPECT_EQ(carbon.outstanding(), 0);
    }

    void press(UInt32 keyCode) { EXPECT_EQ(carbon.press(keyCode, cmdKey + optionKey), noErr); }

    fake::Carbon carbon;
    test::FakeMachine machine;
    test::FakeThermalEngine engine{machine};
    OfflineBridgeManager bridges{machine.interfaces};
    CountingState state{machine.stateServices(engine)};
    CountingServer server{machine.streamServices(bridges)};
    HotKeysCarbon keys;
    std::ostringstream console;
    std::unique_ptr<HotKeyManager> manager =
        std::make_unique<HotKeyManager>(HotKeyManager::Services{keys, machine.world, state, server, console});
};

TEST_F(HotKeyManagerCarbonTest, installsItsHandlerThenRegistersBothKeys)
{
    manager->setupGlobalHotKey();
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("GetApplicationEventTarget", "InstallEventHandler application 1 keyb 5 null",
                            "GetApplicationEventTarget", "RegisterEventHotKey 13 2304 OVR1 1 application 0",
                            "GetApplicationEventTarget", "RegisterEventHotKey 46 2304 OVR2 2 application 0"));
    EXPECT_FALSE(console.str().empty());
}

TEST_F(HotKeyManagerCarbonTest, actsOnAPressAfterTheEventHasBeenHandled)
{
    manager->setupGlobalHotKey();
    press(kVK_ANSI_W);
    press(kVK_ANSI_W);
    press(kVK_ANSI_M);
    EXPECT_EQ(state.warmups, 0);
    EXPECT_EQ(server.casts, 0);
    machine.world.settle();
    EXPECT_EQ(state.warmups, 2);
    EXPECT_EQ(server.casts, 1);
}

TEST_F(HotKeyManagerCarbonTest, swallowsWhatItCannotReadOrDoesNotKnow)
{
    manager->setupGlobalHotKey();
    EXPECT_EQ(carbon.deliver(std::nullopt), noErr);
    EXPECT_EQ(carbon.deliver(EventHotKeyID{HotKeyManager::warmupHotKey.identifier.signature, 3}), noErr);
    EXPECT_EQ(carbon.deliverNull(), noErr);
    machine.world.settle();
    EXPECT_EQ(state.warmups + server.casts, 0);
}

TEST_F(HotKeyManagerCarbonTest, saysTheSameWhateverTheEventManagerAnswers)
{
    manager->setupGlobalHotKey();
    const auto said = console.str();
    console.str("");
    manager = std::make_unique<HotKeyManager>(HotKeyManager::Services{keys, machine.world, state, server, console});
    carbon.installing = paramErr;
    carbon.registering = eventHotKeyExistsErr;
    manager->setupGlobalHotKey();
    EXPECT_EQ(console.str(), said);
    EXPECT_EQ(carbon.outstanding(), 0);
}

} // namespace
} // namespace orvalen
