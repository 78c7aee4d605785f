#include "platform/posix/HotKeysFirstAvailable.h"

#include <gmock/gmock.h>

#include "tests/support/SystemFakes.h"

namespace orvalen {
namespace {

using test::Diary;
using test::FakeHotKeys;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct HotKeyWays : ::testing::Test
{
    FakeHotKeys &add(Diary &diary, bool hasService)
    {
        auto way = std::make_unique<FakeHotKeys>(diary);
        auto &reference = *way;
        reference.hasService = hasService;
        ways.push_back(std::move(way));
        return reference;
    }

    static constexpr HotKey key{13, HotKey::commandKey, {7, 1}};
    Diary first, second, third;
    std::vector<std::unique_ptr<HotKeys>> ways;
};

TEST_F(HotKeyWays, theFirstThatTakesTheHandlerGetsTheKeys)
{
    add(first, false);
    auto &chosen = add(second, true);
    add(third, true);
    HotKeysFirstAvailable keys(std::move(ways));
    std::vector<HotKeyId> presses;
    const auto handler = keys.installHandler([&](const std::optional<HotKeyId> &pressed) {
        presses.push_back(pressed.value());
        return true;
    });
    EXPECT_TRUE(handler);
    EXPECT_TRUE(keys.registerHotKey(key));
    EXPECT_TRUE(chosen.press(key.identifier));
    EXPECT_THAT(presses, ElementsAre(key.identifier));
    EXPECT_THAT(first.take(), ElementsAre("install handler"));
    EXPECT_THAT(second.take(), ElementsAre("install handler", "register 13", "unregister 13"));
    EXPECT_THAT(third.take(), IsEmpty());
}

TEST_F(HotKeyWays, aKeyThatOneRefusesIsNotAskedForElsewhere)
{
    add(first, true).taken = {13};
    add(second, true);
    HotKeysFirstAvailable keys(std::move(ways));
    const auto handler = keys.installHandler([](const auto &) { return true; });
    EXPECT_FALSE(keys.registerHotKey(key));
    EXPECT_THAT(second.take(), IsEmpty());
}

TEST_F(HotKeyWays, whereNoneCanThereAreNoKeys)
{
    const auto ignore = [](const auto &) { return true; };
    HotKeysFirstAvailable none({});
    EXPECT_FALSE(none.installHandler(ignore));
    EXPECT_FALSE(none.registerHotKey(key));

    add(first, false);
    HotKeysFirstAvailable keys(std::move(ways));
    EXPECT_FALSE(keys.registerHotKey(key)) << "without a handler";
    EXPECT_FALSE(keys.installHandler(ignore));
    EXPECT_FALSE(keys.registerHotKey(key));
    EXPECT_THAT(first.take(), ElementsAre("install handler"));
}

} // namespace
} // namespace orvalen
