#include "streaming/QRCodeHelper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>

namespace orvalen {
namespace {

/// What a reader that knows nothing of us sees in the picture.
std::string readBack(const QRCodeImage &image)
{
    const auto file = std::filesystem::path(testing::TempDir()) / ("qr" + std::to_string(getpid()) + ".pgm");
    std::ofstream(file, std::ios::binary) << "P5\n"
                                          << image.side << " " << image.side << "\n255\n"
                                          << std::string(image.pixels.begin(), image.pixels.end());
    const auto command = "zbarimg --nodbus --quiet --raw --oneshot -Sbinary '" + file.string() + "'";
    const std::unique_ptr<FILE, int (*)(FILE *)> reader(popen(command.c_str(), "r"), pclose);
    std::string text;
    for (int byte = 0; reader && (byte = std::fgetc(reader.get())) != EOF;)
        text += static_cast<char>(byte);
    std::filesystem::remove(file);
    return text;
}

bool isReaderInstalled()
{
    return std::system("command -v zbarimg >/dev/null") == 0;
}

/// A module of the code itself, counted from its upper left corner.
bool isBlack(const QRCodeImage &image, int column, int row)
{
    return image.pixels[static_cast<std::size_t>(((row + 4) * 7 + 3) * image.side + (column + 4) * 7 + 3)] == 0;
}

int modules(const QRCodeImage &image)
{
    return image.side / 7 - 8;
}

TEST(QRCodeHelper, aReaderReadsTheSameTextBack)
{
    if (!isReaderInstalled())
        GTEST_SKIP() << "install zbar-tools";
    for (const std::string text : {"http://192.168.1.20:8999", "http://macbook-air.local:9000", "a", "0123456789",
                                   "HTTP://192.168.1.20:8999", "http://büro.local:8088", "日本語 🛡️"}) {
        const auto image = QRCodeHelper::generateQRCode(text);
        ASSERT_TRUE(image) << text;
        EXPECT_EQ(readBack(*image), text);
    }
}

TEST(QRCodeHelper, eachModuleIsSevenPixelsWideAndFourOfThemAreWhiteAround)
{
    const auto image = QRCodeHelper::generateQRCode("http://192.168.1.20:8999");
    ASSERT_TRUE(image);
    EXPECT_EQ(image->side, (25 + 8) * 7);
    ASSERT_EQ(image->pixels.size(), static_cast<std::size_t>(image->side * image->side));
    EXPECT_TRUE(std::all_of(image->pixels.begin(), image->pixels.end(), [](auto p) { return p == 0 || p == 255; }));

    const auto pixel = [&](int x, int y) { return image->pixels[static_cast<std::size_t>(y * image->side + x)]; };
    for (int y = 0; y < image->side; ++y) {
        for (int x = 0; x < image->side; ++x) {
            const bool isMargin = std::min(x, y) < 28 || std::max(x, y) >= image->side - 28;
            ASSERT_TRUE(!isMargin || pixel(x, y) == 255) << x << ", " << y;
            ASSERT_EQ(pixel(x, y), pixel(x / 7 * 7, y / 7 * 7)) << x << ", " << y;
        }
    }
    EXPECT_EQ(pixel(28, 28), 0) << "the corner of the upper left eye";
}

TEST(QRCodeHelper, isShownInTheSameSizeHoweverManyModules)
{
    const auto shortText = QRCodeHelper::generateQRCode("a");
    const auto longText = QRCodeHelper::generateQRCode(std::string(200, 'a'));
    ASSERT_TRUE(shortText && longText);
    EXPECT_LT(shortText->side, longText->side);
    EXPECT_EQ(QRCodeImage::displaySize, 140);
}

TEST(QRCodeHelper, theCorrectionLevelIsMEvenWhereAHigherOneWouldFit)
{
    for (const std::string text : {"a", "http://192.168.1.20:8999", "http://a-rather-long-name.local:8999"}) {
        const auto image = QRCodeHelper::generateQRCode(text);
        ASSERT_TRUE(image);
        // The two bits of the level, left in row 8, under the standard's mask: L black black, M black white, Q white
        // black, H white white.
        EXPECT_TRUE(isBlack(*image, 0, 8) && !isBlack(*image, 1, 8)) << text;
    }
}

TEST(QRCodeHelper, theTextsBytesAreEncodedAsTheyAre)
{
    // A code for digits alone would be smaller than one for as many bytes; these fill the same code.
    const auto digits = QRCodeHelper::generateQRCode(std::string(26, '1'));
    const auto letters = QRCodeHelper::generateQRCode(std::string(26, 'x'));
    ASSERT_TRUE(digits && letters);
    EXPECT_EQ(modules(*digits), modules(*letters));
}

TEST(QRCodeHelper, aZeroByteIsAByteLikeAnyOther)
{
    const auto withZero = QRCodeHelper::generateQRCode(std::string("http://a\0b", 10));
    const auto without = QRCodeHelper::generateQRCode("http://a");
    ASSERT_TRUE(withZero && without);
    EXPECT_NE(*withZero, *without);
}

TEST(QRCodeHelper, theSameTextGivesTheSameImage)
{
    EXPECT_EQ(QRCodeHelper::generateQRCode("http://a:1"), QRCodeHelper::generateQRCode("http://a:1"));
    EXPECT_NE(QRCodeHelper::generateQRCode("http://a:1"), QRCodeHelper::generateQRCode("http://a:2"));
}

TEST(QRCodeHelper, thereIsNoCodeForNothing)
{
    EXPECT_EQ(QRCodeHelper::generateQRCode(""), std::nullopt);
}

TEST(QRCodeHelper, thereIsNoCodeForWhatIsNoText)
{
    EXPECT_EQ(QRCodeHelper::generateQRCode("http://\xFF"), std::nullopt);
    EXPECT_EQ(QRCodeHelper::generateQRCode("\xC3"), std::nullopt);
}

TEST(QRCodeHelper, thereIsNoCodeForMoreThanTheLargestOneHolds)
{
    const auto largest = QRCodeHelper::generateQRCode(std::string(2331, 'x'));
    ASSERT_TRUE(largest);
    EXPECT_EQ(modules(*largest), 177);
    EXPECT_EQ(QRCodeHelper::generateQRCode(std::string(2332, 'x')), std::nullopt);
    EXPECT_EQ(QRCodeHelper::generateQRCode(std::string(10'000'000, 'x')), std::nullopt);
}

} // namespace
} // namespace orvalen
