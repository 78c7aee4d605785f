#include "platform/qt/StatusIcon.h"

#include <gmock/gmock.h>

#include <QColor>
#include <QPainter>
#include <QPixmap>
#include <QRect>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace orvalen {
namespace {

using ::testing::ElementsAre;

const QString shield = "shield.lefthalf.filled";
const QString flame = "flame.fill";
const QString noSymbol;

/// Where the picture is mostly opaque.
QRect ink(const QImage &picture)
{
    QRect box;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (qAlpha(picture.pixel(x, y)) > 128)
                box |= QRect(x, y, 1, 1);
    return box;
}

/// Of how many pixels one can see that they differ.
int differences(const QImage &a, const QImage &b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            count += std::abs(qAlpha(a.pixel(x, y)) - qAlpha(b.pixel(x, y))) > 100;
    return count;
}

QImage on(const QColor &panel, const QImage &icon)
{
    QImage picture(icon.size(), QImage::Format_RGB32);
    picture.fill(panel);
    QPainter(&picture).drawImage(0, 0, icon);
    return picture;
}

/// As the accessibility guidelines of the web compute it.
double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double ratio = (luminance(a) + 0.05) / (luminance(b) + 0.05);
    return std::max(ratio, 1 / ratio);
}

/// The contrast to the panel that as many pixels have at least as two sides of the icon.
double contrastTo(const QColor &panel, const QImage &icon)
{
    std::vector<double> contrasts;
    const auto picture = on(panel, icon);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            contrasts.push_back(contrast(panel, picture.pixelColor(x, y)));
    const auto last = contrasts.begin() + 2 * icon.width();
    std::nth_element(contrasts.begin(), last, contrasts.end(), std::greater<>());
    return *last;
}

class StatusIconOfSize : public ::testing::TestWithParam<int>
{
protected:
    static QImage paint(const QString &symbol, const QString &number, bool onDark = true)
    {
        return paintStatusIcon({symbol, number, onDark}, GetParam());
    }
};

INSTANTIATE_TEST_SUITE_P(, StatusIconOfSize, ::testing::ValuesIn(statusIconSizes),
                         [](const auto &one) { return std::to_string(one.param); });

TEST_P(StatusIconOfSize, isASquareWithRoomForItsEdge)
{
    for (const QString number : {"39", "104", "-5", "8", ""}) {
        const auto icon = paint(shield, number);
        EXPECT_EQ(icon.size(), QSize(GetParam(), GetParam()));
        EXPECT_TRUE(QRect(1, 1, GetParam() - 2, GetParam() - 2).contains(ink(icon))) << number.toStdString();
    }
}

TEST_P(StatusIconOfSize, showsAFlameThatIsNoShield)
{
    const int area = GetParam() * GetParam();
    for (const QString number : {"39", ""})
        EXPECT_GT(differences(paint(shield, number), paint(flame, number)), area / 25) << number.toStdString();
}

TEST_P(StatusIconOfSize, hasANumberThatCanBeRead)
{
    const auto box = ink(paint(noSymbol, "39"));
    EXPECT_GE(box.height(), 0.4 * GetParam());
    EXPECT_GE(box.height(), 7) << "what digits take to be told apart";
    EXPECT_GE(box.width(), 0.6 * GetParam());
}

TEST_P(StatusIconOfSize, fitsThreeCharactersAsWideAsItIs)
{
    for (const QString number : {"104", "-12"}) {
        const auto box = ink(paint(noSymbol, number));
        EXPECT_GE(box.width(), 0.75 * GetParam()) << number.toStdString();
        EXPECT_GE(box.height(), 4) << number.toStdString();
    }
}

TEST_P(StatusIconOfSize, tellsEveryTwoNumbersApart)
{
    std::vector<QImage> pictures;
    for (int number = 10; number < 100; ++number)
        pictures.push_back(paint(shield, QString::number(number)));
    for (std::size_t a = 0; a < pictures.size(); ++a)
        for (std::size_t b = 0; b < a; ++b)
            EXPECT_GE(differences(pictures[a], pictures[b]), 2) << a + 10 << " looks like " << b + 10;
}

TEST_P(StatusIconOfSize, standsOutFromThePanelItIsMeantFor)
{
    for (const auto &symbol : {shield, flame}) {
        EXPECT_GT(contrastTo(Qt::black, paint(symbol, "39", true)), 14);
        EXPECT_GT(contrastTo(Qt::white, paint(symbol, "39", false)), 14);
    }
}

TEST_P(StatusIconOfSize, canBeReadByItsEdgeOnThePanelItIsNotMeantFor)
{
    for (const auto &symbol : {shield, flame}) {
        EXPECT_GT(contrastTo(Qt::white, paint(symbol, "39", true)), 2.4);
        EXPECT_GT(contrastTo(Qt::black, paint(symbol, "39", false)), 3.0);
    }
}

TEST_P(StatusIconOfSize, givesTheSymbolAllTheRoomWhereThereIsNoNumber)
{
    EXPECT_GE(ink(paint(flame, "")).height(), GetParam() - 4);
}

TEST(StatusIcon, offersTheSizesThatTraysAskFor)
{
    std::vector<int> sides;
    for (const auto &size : statusIcon({shield, "39", true}).availableSizes())
        sides.push_back(size.width());
    EXPECT_THAT(sides, ElementsAre(16, 22, 24, 32, 44, 48, 64));
}

TEST(StatusIcon, isPaintedForTheSizeThatIsAskedForNotScaled)
{
    const StatusLook look{flame, "39", false};
    const auto icon = statusIcon(look);
    for (const int size : {16, 20, 22, 26, 64})
        EXPECT_EQ(icon.pixmap(size).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied),
                  paintStatusIcon(look, size))
            << size;
}

TEST(StatusIcon, isPaintedOnceInEachSize)
{
    const auto icon = statusIcon({flame, "39", false});
    EXPECT_EQ(icon.pixmap(22).cacheKey(), icon.pixmap(22).cacheKey());
}

} // namespace
} // namespace orvalen
