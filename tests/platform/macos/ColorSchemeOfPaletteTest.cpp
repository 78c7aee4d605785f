#include "platform/qt/ColorSchemeOfPalette.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>
#include <QWidget>

#include <vector>

#include "ui/kit/Theme.h"

namespace orvalen {
namespace {

struct ColorSchemeOfPaletteTest : ::testing::Test
{
    ~ColorSchemeOfPaletteTest() override { QApplication::setPalette(QPalette()); }

    int argc = 1;
    char name[5] = "test";
    char *argv[2] = {name, nullptr};
    const QApplication application{argc, argv};
    ColorSchemeOfPalette scheme;
};

TEST_F(ColorSchemeOfPaletteTest, tellsNobodyAnything)
{
    std::vector<unsigned> told;
    scheme.follow([&](unsigned preference) { told.push_back(preference); });
    QApplication::setPalette(QPalette(Qt::black));
    QApplication::processEvents();
    QApplication::setPalette(QPalette(Qt::white));
    QApplication::processEvents();
    EXPECT_EQ(told, std::vector<unsigned>());
}

TEST_F(ColorSchemeOfPaletteTest, aWindowThatIsShownFollowsThePalette)
{
    QApplication::setPalette(QPalette(Qt::white));
    QWidget window;
    auto *theme = new kit::Theme(window);
    theme->follow(scheme);
    window.show();
    QApplication::processEvents();
    EXPECT_FALSE(kit::isDark(window.palette()));
    QApplication::setPalette(QPalette(Qt::black));
    QApplication::processEvents();
    EXPECT_TRUE(kit::isDark(window.palette()));
    QApplication::setPalette(QPalette(Qt::white));
    QApplication::processEvents();
    EXPECT_FALSE(kit::isDark(window.palette()));
}

} // namespace
} // namespace orvalen
