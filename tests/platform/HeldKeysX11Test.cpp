#include "platform/linux/HeldKeysX11.h"

#include <gmock/gmock.h>

namespace orvalen {
namespace {

constexpr xcb_keycode_t w = 25, m = 58;

TEST(HeldKeysX11, aRepetitionIsNoPress)
{
    HeldKeysX11 keys(false);
    EXPECT_TRUE(keys.press(w, 1000));
    EXPECT_FALSE(keys.press(w, 1660));
    EXPECT_FALSE(keys.press(w, 1700));
    keys.release(w, 1710);
    EXPECT_TRUE(keys.press(w, 1710)) << "however soon";
}

TEST(HeldKeysX11, aReleaseAtTheTimeOfAPressMayBelongToARepetition)
{
    HeldKeysX11 keys(true);
    EXPECT_TRUE(keys.press(w, 1000));
    for (const xcb_timestamp_t time : {1660U, 1700U, 1740U}) {
        keys.release(w, time);
        EXPECT_FALSE(keys.press(w, time));
        EXPECT_TRUE(keys.isAny());
    }
    keys.release(w, 1780);
    EXPECT_FALSE(keys.press(w, 1781)) << "nearly the same";
    keys.release(w, 1800);
    EXPECT_FALSE(keys.isAny());
    EXPECT_TRUE(keys.press(w, 1850));
}

TEST(HeldKeysX11, aRepetitionLeavesTheOtherKeysHeld)
{
    HeldKeysX11 keys(true);
    EXPECT_TRUE(keys.press(w, 1000));
    EXPECT_TRUE(keys.press(m, 1100));
    keys.release(m, 1700);
    EXPECT_FALSE(keys.press(m, 1700));
    keys.release(w, 1740);
    EXPECT_FALSE(keys.press(w, 1740));
    EXPECT_FALSE(keys.press(m, 1780)) << "still down";
    keys.release(w, 1800);
    EXPECT_TRUE(keys.press(m, 1800)) << "its release went elsewhere";
}

TEST(HeldKeysX11, anotherKeyIsNoRepetition)
{
    HeldKeysX11 keys(true);
    EXPECT_TRUE(keys.press(w, 1000));
    keys.release(w, 1100);
    EXPECT_TRUE(keys.press(m, 1100));
    EXPECT_TRUE(keys.press(w, 1101));
}

TEST(HeldKeysX11, theTimeMayRunOver)
{
    HeldKeysX11 keys(true);
    EXPECT_TRUE(keys.press(w, 0xfffffe00));
    keys.release(w, 0xffffffff);
    EXPECT_FALSE(keys.press(w, 0));
}

TEST(HeldKeysX11, aLostReleaseCanBeMadeUpFor)
{
    HeldKeysX11 keys(false);
    EXPECT_TRUE(keys.press(w, 1000));
    EXPECT_TRUE(keys.press(m, 1100));
    keys.keepOnly([](xcb_keycode_t key) { return key == w; });
    EXPECT_TRUE(keys.isAny());
    EXPECT_FALSE(keys.press(w, 2000));
    EXPECT_TRUE(keys.press(m, 2000));
    keys.keepOnly([](xcb_keycode_t) { return false; });
    EXPECT_FALSE(keys.isAny());
    EXPECT_TRUE(keys.press(w, 3000));
}

} // namespace
} // namespace orvalen
