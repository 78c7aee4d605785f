#include "ui/kit/QRCodeView.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QImage>

#include <string>

#include "tests/ui/CodeReader.h"
#include "tests/ui/Dashboard.h"
#include "ui/kit/Builders.h"
#include "ui/kit/Theme.h"

namespace orvalen::kit {
namespace {

using test::Dashboard;
using test::drawn;
using test::readBack;

const std::string shortAddress = "http://192.168.1.20:8999";
const std::string longAddress =
    "http://an-office-laptop-with-a-rather-long-name-of-its-own-and-then-some-more-at-the-end.local:8999";

struct Code : ::testing::TestWithParam<double>
{
    Code() { view.setCode(QRCodeHelper::generateQRCode(shortAddress)); }

    QRCodeView view{100};
};

INSTANTIATE_TEST_SUITE_P(Scales, Code, ::testing::Values(1.0, 1.25, 1.5, 2.0, 3.0), [](const auto &scale) {
    return "scale" + std::to_string(static_cast<int>(100 * scale.param));
});

TEST_P(Code, isReadBackByAReader)
{
    if (!test::hasCodeReader())
        GTEST_SKIP() << "install zbar-tools";
    for (const bool dark : {false, true}) {
        view.setPalette(themePalette(dark));
        view.resize(view.sizeHint());
        for (const auto &address : {shortAddress, longAddress}) {
            view.setCode(QRCodeHelper::generateQRCode(address));
            EXPECT_EQ(readBack(drawn(view, GetParam())).toStdString(), address) << (dark ? "dark" : "light");
            EXPECT_EQ(readBack(drawn(view, GetParam(), {7, 5})).toStdString(), address) << "between the pixels";
        }
    }
}

TEST_P(Code, isBlackOnWhiteWithoutAnythingBetween)
{
    view.resize(view.sizeHint());
    const auto picture = drawn(view, GetParam(), {7, 5});
    const double edge = 9 * GetParam(); // the square's own edge and corners lie outside
    int black = 0;
    for (int y = static_cast<int>(5 * GetParam() + edge); y < picture.height() - edge; ++y) {
        for (int x = static_cast<int>(7 * GetParam() + edge); x < picture.width() - edge; ++x) {
            const auto color = picture.pixelColor(x, y);
            ASSERT_TRUE(color == Qt::black || color == Qt::white) << x << ',' << y;
            black += color == Qt::black;
        }
    }
    EXPECT_GT(black, 0);
}

TEST_P(Code, isAboutAsWideAsStated)
{
    view.resize(view.sizeHint());
    EXPECT_EQ(view.size(), QSize(116, 116));
    const auto picture = drawn(view, GetParam());
    int left = picture.width();
    int right = 0;
    const int middle = picture.height() / 2;
    for (int y = middle - 40; y < middle + 40; ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y) == Qt::black) {
                left = std::min(left, x);
                right = std::max(right, x + 1);
            }
        }
    }
    constexpr double dark = 25.0 / 33.0; // of the modules of this code; the rest is its margin
    EXPECT_NEAR((right - left) / GetParam(), 100 * dark, 8);
    EXPECT_NEAR((right + left) / 2.0, picture.width() / 2.0, 1.0);
}

TEST(Modules, areFoundWhateverTheirSize)
{
    const auto code = QRCodeHelper::generateQRCode(shortAddress);
    ASSERT_TRUE(code);
    const auto modules = modulesOf(*code);
    EXPECT_EQ(modules.width(), 25 + 8);
    for (const int pixels : {1, 2, 5}) {
        QRCodeImage other{modules.width() * pixels, {}};
        for (int y = 0; y < other.side; ++y) {
            for (int x = 0; x < other.side; ++x)
                other.pixels.push_back(modules.constScanLine(y / pixels)[x / pixels]);
        }
        EXPECT_EQ(modulesOf(other), modules) << pixels;
    }
}

TEST(Modules, ofWhatIsNoPictureThereAreNone)
{
    EXPECT_TRUE(modulesOf({}).isNull());
    EXPECT_TRUE(modulesOf({-1, {}}).isNull());
    EXPECT_TRUE(modulesOf({3, std::vector<std::uint8_t>(8)}).isNull());
    EXPECT_EQ(modulesOf({4, std::vector<std::uint8_t>(16, 255)}).size(), QSize(1, 1)); // all white
}

TEST(QRCodeView, withoutACodeIsAnEmptySquare)
{
    QRCodeView view(100);
    view.resize(view.sizeHint());
    view.setCode(QRCodeHelper::generateQRCode(shortAddress));
    view.setCode(std::nullopt);
    const auto picture = drawn(view, 1.0);
    for (int x = 20; x < 96; ++x)
        EXPECT_EQ(picture.pixelColor(x, x), Qt::white);
}

TEST(QRCodeView, saysWhatItIsAndWhatItSays)
{
    struct : Observable
    {
        Published<std::optional<QRCodeImage>> code{*this, QRCodeHelper::generateQRCode(shortAddress)};
        Published<QString> address{*this, QString::fromStdString(shortAddress)};
    } stream;
    const std::unique_ptr<QRCodeView> view(qrCode(stream.code, 100, stream.address));
    auto *accessible = QAccessible::queryAccessibleInterface(view.get());
    EXPECT_EQ(accessible->role(), QAccessible::Graphic);
    EXPECT_EQ(accessible->text(QAccessible::Name), "QR code");
    EXPECT_EQ(accessible->text(QAccessible::Description).toStdString(), shortAddress);
    stream.address = "http://10.0.0.5:9000";
    EXPECT_EQ(accessible->text(QAccessible::Description), "http://10.0.0.5:9000");
}

TEST(QRCodeView, anEqualCodeRepaintsNothing)
{
    struct Paints : QObject
    {
        bool eventFilter(QObject *, QEvent *event) override
        {
            count += event->type() == QEvent::Paint;
            return false;
        }
        int count = 0;
    } paints;
    QRCodeView view(100);
    view.setCode(QRCodeHelper::generateQRCode(shortAddress));
    view.show();
    Dashboard::settle();
    view.installEventFilter(&paints);
    view.setCode(QRCodeHelper::generateQRCode(shortAddress));
    Dashboard::settle();
    EXPECT_EQ(paints.count, 0);
    view.setCode(QRCodeHelper::generateQRCode(longAddress));
    Dashboard::settle();
    EXPECT_EQ(paints.count, 1);
}

} // namespace
} // namespace orvalen::kit
