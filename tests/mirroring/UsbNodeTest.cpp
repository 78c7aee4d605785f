#include "platform/UsbTree.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "tests/mirroring/SmallStack.h"
#include "tests/support/MirroringFakes.h"

namespace orvalen {
namespace {

TEST(UsbNode, aHundredThousandLevelsAreMovedAndDestroyedOnASmallStack)
{
    bool isThere = false;
    test::onSmallStack([&] {
        auto chain = test::usbChain(100'000, "iPad");
        UsbNode moved = std::move(chain.front());
        isThere = chain.front().items.empty() && moved.items.size() == 1;
        moved = UsbNode("nothing below"); // the chain goes here
        isThere = isThere && moved.items.empty();
    });
    EXPECT_TRUE(isThere);
}

TEST(UsbNode, aBroadTreeOfDeepOnesIsDestroyedToo)
{
    bool isThere = false;
    test::onSmallStack([&] {
        UsbNode root;
        for (int i = 0; i < 10; ++i)
            root.items.emplace_back("Bus", test::usbChain(10'000, "iPad"));
        isThere = root.items.size() == 10;
    });
    EXPECT_TRUE(isThere);
}

TEST(UsbNode, isNeverCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<UsbNode>);
    EXPECT_FALSE(std::is_copy_assignable_v<UsbNode>);
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<UsbNode>); // or a growing list could not move them
}

} // namespace
} // namespace orvalen
