#include "system/HotKeyManager.h"

#include <gmock/gmock.h>

#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "streaming/OfflineBridgeManager.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/SystemFakes.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The shield is U+1F6E1, followed by U+FE0F: to be drawn in colour.
constexpr const char *line = "\xF0\x9F\x9B\xA1\xEF\xB8\x8F Orvalen: Blind Hotkeys registered "
                             "(Cmd+Option+W = Warmup, Cmd+Option+M = Blind Cast)\n";

constexpr std::uint32_t fourCharacters(std::string_view text)
{
    std::uint32_t code = 0;
    for (const char c : text)
        code = code << 8U | static_cast<unsigned char>(c);
    return code;
}

/// Notes what was written whenever it is flushed, for only then can anybody read it.
class DiaryConsole : public std::streambuf
{
public:
    explicit DiaryConsole(test::Diary &diary) : diary(diary) {}

protected:
    int_type overflow(int_type c) override
    {
        text += traits_type::to_char_type(c);
        return c;
    }
    int sync() override
    {
        diary.note("print " + std::exchange(text, {}));
        return 0;
    }

private:
    test::Diary &diary;
    std::string text;
};

struct SpyState : AppState
{
    SpyState(const Services &services, test::Diary &diary) : AppState(services), diary(diary) {}
    void triggerWarmup(std::optional<double> target, bool silent) override
    {
        diary.note(std::string("warm up ") + (target ? "to a target" : "as configured") + (silent ? ", silently" : ""));
    }
    test::Diary &diary;
};

struct SpyServer : WebScreenServer
{
    SpyServer(const Services &services, test::Diary &diary) : WebScreenServer(services), diary(diary) {}
    void triggerBlindCast() override { diary.note("blind cast"); }
    test::Diary &diary;
};

class HotKeyManagerTest : public ::testing::Test
{
protected:
    static constexpr HotKeyId warmup{fourCharacters("OVR1"), 1};
    static constexpr HotKeyId cast{fourCharacters("OVR2"), 2};

    HotKeyManagerTest() { diary.take(); }

    void setUp()
    {
        manager->setupGlobalHotKey();
        diary.take();
    }

    /// What a press has done by the time the handler returns, and what it has done in the end.
    std::pair<std::vector<std::string>, std::vector<std::string>> press(const std::optional<HotKeyId> &pressed)
    {
        EXPECT_TRUE(keys.press(pressed)) << "not handled";
        auto atOnce = diary.take();
        machine.world.settle();
        return {std::move(atOnce), diary.take()};
    }

    test::FakeMachine machine;
    test::Diary &diary = machine.diary;
    test::FakeHotKeys keys{diary};
    test::FakeThermalEngine engine{machine};
    OfflineBridgeManager bridges{machine.interfaces};
    SpyState state{machine.stateServices(engine), diary};
    SpyServer server{machine.streamServices(bridges), diary};
    DiaryConsole consoleBuffer{diary};
    std::ostream console{&consoleBuffer};
    std::unique_ptr<HotKeyManager> manager =
        std::make_unique<HotKeyManager>(HotKeyManager::Services{keys, machine.world, state, server, console});
};

TEST_F(HotKeyManagerTest, asksForNothingBeforeItIsSetUp)
{
    machine.world.settle();
    EXPECT_THAT(diary.take(), IsEmpty());
}

TEST_F(HotKeyManagerTest, installsItsHandlerThenRegistersBothKeysThenSaysSo)
{
    manager->setupGlobalHotKey();
    EXPECT_THAT(diary.take(),
                ElementsAre("install handler", "register 13", "register 46", std::string("print ") + line));
}

TEST_F(HotKeyManagerTest, theKeysAreCommandOptionWAndM)
{
    manager->setupGlobalHotKey();
    ASSERT_EQ(keys.registered.size(), 2U);
    for (const auto &key : keys.registered)
        EXPECT_EQ(key.modifiers, 0x900U);
    EXPECT_EQ(keys.registered[0].keyCode, 13U);
    EXPECT_EQ(keys.registered[0].identifier, warmup);
    EXPECT_EQ(keys.registered[1].keyCode, 46U);
    EXPECT_EQ(keys.registered[1].identifier, cast);
}

TEST_F(HotKeyManagerTest, saysSoWhateverTheSystemAnswers)
{
    keys.taken = {13, 46};
    manager->setupGlobalHotKey();
    EXPECT_THAT(diary.take(),
                ElementsAre("install handler", "register 13", "register 46", std::string("print ") + line));

    keys.hasService = false;
    HotKeyManager({keys, machine.world, state, server, console}).setupGlobalHotKey();
    EXPECT_THAT(diary.take(),
                ElementsAre("install handler", "register 13", "register 46", std::string("print ") + line));
}

TEST_F(HotKeyManagerTest, aKeyThatSomebodyElseHasDoesNotHinderTheOther)
{
    keys.taken = {13};
    setUp();
    EXPECT_THAT(press(cast).second, ElementsAre("blind cast"));
}

TEST_F(HotKeyManagerTest, theFirstKeyWarmsUpAsConfiguredAndAudibly)
{
    setUp();
    EXPECT_THAT(press(warmup).second, ElementsAre("warm up as configured"));
}

TEST_F(HotKeyManagerTest, theSecondKeyCastsBlindly)
{
    setUp();
    EXPECT_THAT(press(cast).second, ElementsAre("blind cast"));
}

TEST_F(HotKeyManagerTest, actsAfterTheHandlerHasReturned)
{
    setUp();
    for (const auto &id : {warmup, cast})
        EXPECT_THAT(press(id).first, IsEmpty());
}

TEST_F(HotKeyManagerTest, goesByTheIdWhateverTheSignature)
{
    setUp();
    for (const auto signature : {0U, cast.signature, fourCharacters("abcd"), 0xffffffffU})
        EXPECT_THAT(press(HotKeyId{signature, 1}).second, ElementsAre("warm up as configured")) << signature;
    for (const auto signature : {0U, warmup.signature, fourCharacters("abcd"), 0xffffffffU})
        EXPECT_THAT(press(HotKeyId{signature, 2}).second, ElementsAre("blind cast")) << signature;
}

TEST_F(HotKeyManagerTest, swallowsKeysItDoesNotKnow)
{
    setUp();
    for (const auto id : {0U, 3U, 0x100U, 0xffffffffU})
        EXPECT_THAT(press(HotKeyId{warmup.signature, id}).second, IsEmpty()) << id;
}

TEST_F(HotKeyManagerTest, swallowsAPressOfWhichTheKeyCannotBeLearned)
{
    setUp();
    EXPECT_THAT(press(std::nullopt).second, IsEmpty());
}

TEST_F(HotKeyManagerTest, twoPressesAreTwoCalls)
{
    setUp();
    EXPECT_TRUE(keys.press(warmup));
    EXPECT_TRUE(keys.press(warmup));
    EXPECT_THAT(diary.take(), IsEmpty());
    machine.world.settle();
    EXPECT_THAT(diary.take(), ElementsAre("warm up as configured", "warm up as configured"));
}

TEST_F(HotKeyManagerTest, pressesAreActedOnInTheirOrder)
{
    setUp();
    for (const auto &id : {cast, warmup, cast})
        keys.press(id);
    machine.world.settle();
    EXPECT_THAT(diary.take(), ElementsAre("blind cast", "warm up as configured", "blind cast"));
}

TEST_F(HotKeyManagerTest, givesBackWhatItHoldsWhenItGoes)
{
    setUp();
    manager.reset();
    EXPECT_THAT(diary.take(), ::testing::UnorderedElementsAre("remove handler", "unregister 13", "unregister 46"));
}

/// With the state that decides: only one of two warm-ups is carried out.
TEST_F(HotKeyManagerTest, theSecondOfTwoQuickPressesIsRefusedByTheState)
{
    AppState real(machine.stateServices(engine));
    HotKeyManager keyManager({keys, machine.world, real, server, console});
    keyManager.setupGlobalHotKey();
    keys.press(warmup);
    keys.press(warmup);
    machine.world.settle();
    EXPECT_TRUE(real.isWarmingUp);
    EXPECT_THAT(engine.targets, ElementsAre(40.0));
    EXPECT_THAT(machine.sounds.played, ElementsAre("Blow"));
}

} // namespace
} // namespace orvalen
