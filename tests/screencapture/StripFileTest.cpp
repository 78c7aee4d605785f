#include "streaming/screencapture/StripFile.h"

#include <gtest/gtest.h>

#include <numeric>

#include "streaming/screencapture/CaptureError.h"
#include "streaming/screencapture/ContentHash.h"
#include "streaming/screencapture/Strips.h"
#include "tests/screencapture/Jpeg.h"

namespace orvalen {
namespace {

using test::decoded;
using test::drawnPixels;
using test::encodedAtOnce;

/// A picture's file, made strip by strip as the program does it.
struct Written
{
    explicit Written(const PictureFormat &format, unsigned seed = 1)
        : pixels(drawnPixels(format.width, format.height, seed)), encoder(format), file(format)
    {
        const Rectangle whole{0, 0, format.width, format.height};
        for (unsigned i = 0; i < strips::count(format.height); ++i) {
            const auto area = strips::area(whole, i);
            const PixelRows rows{pixels.data() + static_cast<std::size_t>(area.y * format.width) * PixelLayout::bytes,
                                 area};
            encoded.push_back({contentHash(rows.data, rows.bytes()), encoder.encode(rows)});
        }
        const auto pieces = file.pieces(encoded);
        bytes = std::accumulate(pieces.begin(), pieces.end(), std::string(),
                                [](std::string all, std::string_view piece) { return all.append(piece); });
    }

    std::vector<std::uint8_t> pixels;
    StripEncoder encoder;
    StripFile file;
    std::vector<EncodedStrip> encoded;
    std::string bytes;
};

constexpr std::array sizes{std::pair{1, 1},     std::pair{16, 16},   std::pair{17, 63},
                           std::pair{64, 64},   std::pair{65, 65},   std::pair{100, 127},
                           std::pair{128, 128}, std::pair{333, 700}, std::pair{1440, 900}};

TEST(StripFile, isWhatTheLibraryMakesOfTheWholePicture)
{
    for (const auto &[width, height] : sizes) {
        const PictureFormat format{width, height, {}};
        const Written written(format);
        EXPECT_EQ(test::withoutComments(written.bytes), encodedAtOnce(format, written.pixels, strips::rows / 16))
            << width << 'x' << height;
    }
}

TEST(StripFile, looksLikeAPictureWithoutStrips)
{
    for (const auto &[width, height] : sizes) {
        const PictureFormat format{width, height, {}};
        const Written written(format);
        EXPECT_EQ(decoded(written.bytes), decoded(encodedAtOnce(format, written.pixels, 0))) << width << 'x' << height;
    }
}

TEST(StripFile, coloursComeOutRightInEveryLayout)
{
    for (const auto &layout :
         {PixelLayout{2, 1, 0}, PixelLayout{0, 1, 2}, PixelLayout{1, 2, 3}, PixelLayout{3, 2, 1}}) {
        const PictureFormat format{40, 70, layout};
        std::vector<std::uint8_t> pixels(40 * 70 * 4, 0);
        for (std::size_t i = 0; i < pixels.size(); i += 4) {
            pixels[i + layout.red] = 200;
            pixels[i + layout.green] = 100;
            pixels[i + layout.blue] = 20;
        }
        StripEncoder encoder(format);
        const auto upper = encoder.encode({pixels.data(), {0, 0, 40, 64}});
        const auto lower = encoder.encode({pixels.data(), {0, 64, 40, 6}});
        StripFile file(format);
        std::string bytes;
        for (const auto piece : file.pieces(std::vector<EncodedStrip>{{1, upper}, {2, lower}}))
            bytes += piece;
        const auto picture = decoded(bytes);
        for (const int y : {0, 63, 64, 69}) {
            EXPECT_NEAR(picture.at(20, y).red, 200, 3);
            EXPECT_NEAR(picture.at(20, y).green, 100, 3);
            EXPECT_NEAR(picture.at(20, y).blue, 20, 3);
        }
    }
}

TEST(StripFile, givesItsStripsBack)
{
    for (const auto &[width, height] : sizes) {
        const Written written({width, height, {}});
        const auto found = written.file.strips(written.bytes);
        ASSERT_TRUE(found);
        ASSERT_EQ(found->size(), written.encoded.size());
        for (std::size_t i = 0; i < found->size(); ++i) {
            EXPECT_EQ((*found)[i].pixels, written.encoded[i].pixels);
            EXPECT_EQ((*found)[i].bytes, written.encoded[i].bytes);
        }
    }
}

TEST(StripFile, aCommentHoldsTheStripsOfTheHighestPicture)
{
    const PictureFormat format{1, StripEncoder::greatestSide, {}};
    const Written written(format);
    EXPECT_TRUE(written.file.strips(written.bytes));
    EXPECT_EQ(decoded(written.bytes).height, StripEncoder::greatestSide);
}

TEST(StripFile, noPictureIsLargerThanDecodersCount)
{
    EXPECT_THROW(StripFile({StripEncoder::greatestSide + 1, 1, {}}), CaptureError);
    EXPECT_THROW(StripEncoder({1, StripEncoder::greatestSide + 1, {}}), CaptureError);
}

TEST(StripFile, anythingButAWholeFileGivesNothingBack)
{
    const Written written({40, 200, {}});
    for (std::size_t size = 0; size < written.bytes.size(); ++size)
        ASSERT_FALSE(written.file.strips(std::string_view(written.bytes).substr(0, size))) << size;
    EXPECT_FALSE(written.file.strips(written.bytes + '\0'));
    EXPECT_FALSE(written.file.strips(std::string(written.bytes.size(), '\0')));
}

TEST(StripFile, noChangedByteIsTakenOver)
{
    const Written written({40, 200, {}});
    std::size_t believed = 0;
    for (std::size_t i = 0; i < written.bytes.size(); ++i) {
        auto changed = written.bytes;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        const auto found = written.file.strips(changed);
        if (!found)
            continue;
        ++believed;
        for (std::size_t k = 0; k < found->size(); ++k)
            EXPECT_EQ((*found)[k].bytes, written.encoded[k].bytes);
    }
    // What a strip shows is believed: with a bit changed it shows nothing that a screen will ever show.
    EXPECT_EQ(believed, written.encoded.size() * sizeof(std::uint64_t));
}

TEST(StripFile, aPictureOfAnotherFormatGivesNothingBack)
{
    const Written written({40, 200, {}});
    EXPECT_FALSE(StripFile({41, 200, {}}).strips(written.bytes));
    EXPECT_FALSE(StripFile({40, 201, {}}).strips(written.bytes));
    EXPECT_FALSE(StripFile({40, 264, {}}).strips(written.bytes));
    EXPECT_FALSE(StripFile({40, 200, {0, 1, 2}}).strips(written.bytes));
    EXPECT_TRUE(StripFile({40, 200, {}}).strips(written.bytes));
}

TEST(StripFile, aPictureOfAnotherProgramGivesNothingBack)
{
    const PictureFormat format{40, 200, {}};
    EXPECT_FALSE(StripFile(format).strips(encodedAtOnce(format, drawnPixels(40, 200), 4)));
}

TEST(StripFile, stripsOfTwoPicturesMakeAThird)
{
    const PictureFormat format{100, 200, {}};
    const Written one(format, 1);
    const Written other(format, 2);
    const auto old = one.file.strips(one.bytes);
    ASSERT_TRUE(old);
    StripFile file(format);
    std::string bytes;
    for (const auto piece : file.pieces(std::vector<EncodedStrip>{(*old)[0], other.encoded[1], (*old)[2], (*old)[3]}))
        bytes += piece;
    auto pixels = one.pixels;
    std::copy_n(other.pixels.begin() + 100 * 64 * 4, 100 * 64 * 4, pixels.begin() + 100 * 64 * 4);
    EXPECT_EQ(test::withoutComments(bytes), encodedAtOnce(format, pixels, 4));
}

} // namespace
} // namespace orvalen
