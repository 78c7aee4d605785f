#include "streaming/screencapture/PictureEncoder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>

#include "streaming/screencapture/CaptureError.h"
#include "streaming/screencapture/Strips.h"
#include "tests/screencapture/Jpeg.h"

namespace orvalen {
namespace {

/// A picture that lies in memory.
class PictureInMemory : public Picture
{
public:
    explicit PictureInMemory(std::vector<std::uint8_t> pixels, int width, int height)
        : whole{0, 0, width, height}, pixels(std::move(pixels))
    {
    }

    [[nodiscard]] Rectangle area() const override { return whole; }
    [[nodiscard]] PixelLayout layout() const override { return {}; }

    [[nodiscard]] std::optional<Strip> next(unsigned lane) override
    {
        if (lane >= lanes)
            throw CaptureError("There is no such lane.");
        const auto index = taken++;
        if (index == broken)
            throw CaptureError("It has gone.");
        if (index >= strips::count(whole.height))
            return std::nullopt;
        const auto area = strips::area(whole, index);
        return Strip{index, {pixels.data() + static_cast<std::size_t>(area.y * area.width) * PixelLayout::bytes, area}};
    }

    const Rectangle whole;
    std::vector<std::uint8_t> pixels;
    unsigned lanes = 4;
    unsigned broken = 1000000; ///< The index of the strip that cannot be had.
    std::atomic<unsigned> taken = 0;
};

constexpr int width = 200;
constexpr int height = 64 * 11 + 5;
constexpr PictureFormat format{width, height, {}};

std::string fileOf(std::span<const EncodedStrip> strips)
{
    StripFile file(format);
    std::string bytes;
    for (const auto piece : file.pieces(strips))
        bytes += piece;
    return bytes;
}

std::string fileOf(const std::vector<std::uint8_t> &pixels, unsigned threads)
{
    PictureInMemory picture(pixels, width, height);
    PictureEncoder encoder(format, {}, threads);
    encoder.encode(picture);
    EXPECT_FALSE(encoder.isUnchanged());
    return fileOf(encoder.strips());
}

TEST(PictureEncoder, makesTheSameFileOnAnyNumberOfThreads)
{
    const auto pixels = test::drawnPixels(width, height);
    const auto one = fileOf(pixels, 1);
    EXPECT_EQ(test::withoutComments(one), test::encodedAtOnce(format, pixels, 4));
    for (const unsigned threads : {2U, 3U, 4U})
        EXPECT_EQ(fileOf(pixels, threads), one);
}

TEST(PictureEncoder, knowsAnUnchangedPicture)
{
    const auto pixels = test::drawnPixels(width, height);
    const auto file = fileOf(pixels, 1);
    const auto previous = StripFile(format).strips(file);
    ASSERT_TRUE(previous);
    for (const unsigned threads : {1U, 4U}) {
        PictureInMemory picture(pixels, width, height);
        PictureEncoder encoder(format, *previous, threads);
        encoder.encode(picture);
        EXPECT_TRUE(encoder.isUnchanged());
        EXPECT_EQ(fileOf(encoder.strips()), file);
    }
}

TEST(PictureEncoder, encodesTheStripAnewThatHasAChangedPixel)
{
    const auto pixels = test::drawnPixels(width, height);
    const auto file = fileOf(pixels, 1);
    const auto previous = StripFile(format).strips(file);
    ASSERT_TRUE(previous);
    for (unsigned changed = 0; changed < strips::count(height); ++changed) {
        auto others = pixels;
        auto &byte = others[(changed * 64 * width + 7) * 4];
        byte = static_cast<std::uint8_t>(byte ^ 0x80);
        PictureInMemory picture(others, width, height);
        PictureEncoder encoder(format, *previous, 4);
        encoder.encode(picture);
        EXPECT_FALSE(encoder.isUnchanged());
        for (unsigned i = 0; i < strips::count(height); ++i)
            EXPECT_EQ(encoder.strips()[i].bytes.data() == (*previous)[i].bytes.data(), i != changed);
        EXPECT_EQ(test::withoutComments(fileOf(encoder.strips())), test::encodedAtOnce(format, others, 4));
    }
}

TEST(PictureEncoder, aPictureThatBreaksOffIsNone)
{
    const auto pixels = test::drawnPixels(width, height);
    for (const unsigned threads : {1U, 2U, 4U}) {
        for (const unsigned broken : {0U, 1U, 5U, 11U}) {
            PictureInMemory picture(pixels, width, height);
            picture.broken = broken;
            PictureEncoder encoder(format, {}, threads);
            EXPECT_THROW(encoder.encode(picture), CaptureError) << threads << ' ' << broken;
        }
    }
}

TEST(PictureEncoder, callsNobodyForASmallChange)
{
    EXPECT_EQ(helpersFor(1, 20, false, 3), 0U);
    EXPECT_EQ(helpersFor(2, 20, false, 3), 3U);
    EXPECT_EQ(helpersFor(1, 20, true, 3), 3U);
}

TEST(PictureEncoder, callsNoMoreHelpersThanThereIsWorkOrRoomFor)
{
    EXPECT_EQ(helpersFor(1, 20, true, 0), 0U);
    EXPECT_EQ(helpersFor(1, 20, true, 1), 1U);
    EXPECT_EQ(helpersFor(1, 5, true, 3), 2U);
    EXPECT_EQ(helpersFor(1, 1, true, 3), 0U);
    EXPECT_EQ(helpersFor(2, 0, false, 3), 0U);
}

} // namespace
} // namespace orvalen
