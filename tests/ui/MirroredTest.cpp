#include <gtest/gtest.h>

#include <QImage>

#include <algorithm>
#include <memory>

#include "tests/ui/Dashboard.h"
#include "ui/TemperatureReadout.h"
#include "ui/kit/Builders.h"

namespace orvalen::kit {
namespace {

/// What is written into a widget that is `spare` pixels wider than it likes.
QImage writing(QWidget &widget, Qt::LayoutDirection direction, int spare = 0)
{
    widget.setLayoutDirection(direction);
    widget.resize(widget.sizeHint() + QSize(spare, 0));
    QImage picture(widget.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    widget.render(&picture, {}, {}, QWidget::DrawChildren);
    return picture;
}

/// The leftmost and the rightmost column with anything in it.
std::pair<int, int> inked(const QImage &picture)
{
    int left = picture.width();
    int right = -1;
    for (int x = 0; x < picture.width(); ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            if (picture.pixelColor(x, y) != Qt::white) {
                left = std::min(left, x);
                right = x;
            }
        }
    }
    return {left, right};
}

/// Windows from right to left: what stands in them is in English all the same.
TEST(Mirrored, wordsAndSignsStandInTheOrderOfTheirOwnLanguage)
{
    const auto badge = keyBadge("⌘ + ⌥ + M", accent::orange);
    const auto button = smallButton("Open Settings ↗", [] {});
    const auto call = callToAction("⚡ Start Offline Stream", [] {});
    auto *readout = new TemperatureReadout;
    readout->setCelsius(40.5);
    for (QWidget *widget :
         std::initializer_list<QWidget *>{text("40.0 °C").centred(), text("100% OFFLINE MIRROR").centred(),
                                          note("No more.").centred(), badge, button, call, readout}) {
        const std::unique_ptr<QWidget> owner(widget);
        EXPECT_EQ(writing(*widget, Qt::LeftToRight), writing(*widget, Qt::RightToLeft))
            << widget->metaObject()->className() << ' ' << widget->sizeHint().width();
    }
}

TEST(Mirrored, textBeginsAtTheRight)
{
    const auto row = rowButton({"display", "arrow.up.forward.app"}, "Displays & Mirroring", [] {});
    const auto url = address("http://192.168.1.20:8999", "Wi-Fi");
    for (QWidget *widget : std::initializer_list<QWidget *>{text("Diagnostics"), note("Diagnostics"), url}) {
        const std::unique_ptr<QWidget> owner(widget);
        const auto picture = writing(*widget, Qt::RightToLeft, 100);
        EXPECT_GT(inked(picture).first, 90) << widget->metaObject()->className();
        EXPECT_LT(inked(writing(*widget, Qt::LeftToRight, 100)).second, picture.width() - 90)
            << widget->metaObject()->className();
    }
    // The title of a row lies beside the leading symbol.
    const std::unique_ptr<QWidget> owner(row);
    const auto picture = writing(*row, Qt::RightToLeft, 100);
    const auto middle = picture.copy(30, 4, 80, picture.height() - 8);
    const QColor ground = picture.pixelColor(30, picture.height() / 2);
    for (int x = 0; x < middle.width(); ++x)
        EXPECT_EQ(middle.pixelColor(x, middle.height() / 2), ground) << x;
}

} // namespace
} // namespace orvalen::kit
