#include "streaming/screencapture/Pixels.h"

#include <gtest/gtest.h>

namespace orvalen {
namespace {

constexpr auto least = ByteOrder::leastSignificantFirst;
constexpr auto most = ByteOrder::mostSignificantFirst;

TEST(Pixels, coloursLieWhereMasksAndByteOrderSay)
{
    EXPECT_EQ(pixelLayout({32, least, 0xff0000, 0xff00, 0xff}), (PixelLayout{2, 1, 0}));
    EXPECT_EQ(pixelLayout({32, least, 0xff, 0xff00, 0xff0000}), (PixelLayout{0, 1, 2}));
    EXPECT_EQ(pixelLayout({32, most, 0xff0000, 0xff00, 0xff}), (PixelLayout{1, 2, 3}));
    EXPECT_EQ(pixelLayout({32, most, 0xff, 0xff00, 0xff0000}), (PixelLayout{3, 2, 1}));
    EXPECT_EQ(pixelLayout({32, most, 0xff000000, 0xff0000, 0xff00}), (PixelLayout{0, 1, 2}));
}

TEST(Pixels, othersAreNotUnderstood)
{
    EXPECT_EQ(pixelLayout({16, least, 0xf800, 0x7e0, 0x1f}), std::nullopt);        // 65536 colours
    EXPECT_EQ(pixelLayout({8, least, 0, 0, 0}), std::nullopt);                     // a palette
    EXPECT_EQ(pixelLayout({32, least, 0, 0, 0}), std::nullopt);                    // colours that are not fixed
    EXPECT_EQ(pixelLayout({32, least, 0x3ff00000, 0xffc00, 0x3ff}), std::nullopt); // ten bits each
    EXPECT_EQ(pixelLayout({24, least, 0xff0000, 0xff00, 0xff}), std::nullopt);     // three bytes
    EXPECT_EQ(pixelLayout({32, least, 0xff00, 0xff0000, 0xff}), std::nullopt);     // green beside both
    EXPECT_EQ(pixelLayout({32, least, 0xff00, 0xff00, 0xff00}), std::nullopt);     // one for all
    EXPECT_EQ(pixelLayout({32, least, 0xff00000, 0xff000, 0xff0}), std::nullopt);  // across bytes
}

} // namespace
} // namespace orvalen
