#include <gmock/gmock.h>

#include <QAccessible>
#include <QTest>

#include <algorithm>
#include <cmath>

#include "tests/ui/Reading.h"
#include "ui/CenterDashboardView.h"
#include "ui/kit/FocusRing.h"
#include "ui/kit/SymbolToggle.h"
#include "ui/kit/Symbols.h"
#include "ui/kit/Theme.h"

namespace orvalen {
namespace {

using namespace kit;
using test::Dashboard;
using ::testing::IsEmpty;

struct SleepToggle : ::testing::Test, Dashboard
{
    SleepToggle()
    {
        show();
        window.activateWindow();
        settle();
    }

    SymbolToggle &cup() const { return *find<SymbolToggle>("Prevent sleep"); }
    QAccessibleInterface &accessible() const { return *QAccessible::queryAccessibleInterface(&cup()); }
    QRect placeOf(const QWidget &widget) const { return test::placeIn(window, widget); }
};

TEST_F(SleepToggle, touchesNothingBeforeTheFirstPress)
{
    EXPECT_THAT(power.asked, IsEmpty());
    EXPECT_FALSE(cup().isChecked());
    EXPECT_EQ(cup().symbol(), "cup.and.saucer");
}

TEST_F(SleepToggle, aPressKeepsTheMachineAwakeAndTheNextLetsItGo)
{
    QTest::mouseClick(&cup(), Qt::LeftButton);
    EXPECT_TRUE(caffeine.isActive);
    EXPECT_EQ(power.held.size(), 1u);
    EXPECT_TRUE(cup().isChecked());
    EXPECT_EQ(cup().symbol(), "cup.and.saucer.fill");

    QTest::mouseClick(&cup(), Qt::LeftButton);
    EXPECT_FALSE(caffeine.isActive);
    EXPECT_THAT(power.held, IsEmpty());
    EXPECT_FALSE(cup().isChecked());
    EXPECT_EQ(cup().symbol(), "cup.and.saucer");
}

TEST_F(SleepToggle, staysOffWhereTheSystemRefuses)
{
    power.grants = false;
    QTest::mouseClick(&cup(), Qt::LeftButton);
    EXPECT_EQ(power.asked.size(), 1u);
    EXPECT_FALSE(cup().isChecked());
    EXPECT_FALSE(accessible().state().checked);
    QTest::mouseClick(&cup(), Qt::LeftButton);
    EXPECT_EQ(power.asked.size(), 2u); // asks again
    EXPECT_FALSE(cup().isChecked());
}

TEST_F(SleepToggle, showsWhatIsSoWhoeverSwitchedIt)
{
    caffeine.enable();
    EXPECT_TRUE(cup().isChecked());
    caffeine.disable();
    EXPECT_FALSE(cup().isChecked());
    EXPECT_EQ(power.asked.size(), 1u);
}

TEST_F(SleepToggle, hasANameAndIsACheckBoxToReaders)
{
    EXPECT_EQ(cup().toolTip(), "Prevent sleep");
    EXPECT_EQ(accessible().role(), QAccessible::CheckBox);
    EXPECT_TRUE(accessible().state().checkable);
    EXPECT_FALSE(accessible().state().checked);
    accessible().actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(caffeine.isActive);
    EXPECT_TRUE(accessible().state().checked);
}

TEST_F(SleepToggle, isPressedByKeysAndRinged)
{
    find("Quenmark Technologies")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    settle();
    ASSERT_EQ(QApplication::focusWidget(), &cup());
    const auto &ring = *window.findChild<FocusRing *>();
    ASSERT_TRUE(ring.isVisible());
    const QRect face(cup().mapTo(ring.parentWidget(), cup().outline().rect.topLeft()), cup().outline().rect.size());
    EXPECT_EQ(ring.geometry(), face.adjusted(-4, -4, 4, 4));
    EXPECT_TRUE(window.rect().contains(placeOf(ring)));

    for (const auto key : {Qt::Key_Space, Qt::Key_Return}) {
        QTest::keyClick(&cup(), key);
        EXPECT_TRUE(caffeine.isActive);
        QTest::keyClick(&cup(), key);
        EXPECT_FALSE(caffeine.isActive);
    }
}

TEST_F(SleepToggle, standsBesideTheBadgeWhichKeepsItsPlace)
{
    auto &badge = *window.findChild<CenterDashboardView *>()->findChild<Badge *>();
    for (const int width : {815, 1000, 1600}) {
        window.resize(width, 680);
        for (const double celsius : {38.0, 41.0}) { // one word is longer than the other
            setBridge(celsius);
            settle();
            const auto column = placeOf(*window.findChild<CenterDashboardView *>());
            EXPECT_EQ(placeOf(badge).right(), column.right() - 16);
            EXPECT_EQ(placeOf(badge).top(), 14);
            EXPECT_EQ(placeOf(cup()).right() + 1 + 10, placeOf(badge).left());
            EXPECT_EQ(placeOf(cup()).top(), placeOf(badge).top());
            EXPECT_EQ(cup().outline().rect.height(), badge.height()); // one line, whatever can be hit below
        }
    }
}

TEST_F(SleepToggle, bothStatesStandOutInBothThemes)
{
    const auto luminance = [](const QColor &color) {
        const auto part = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
        return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
    };
    const auto contrast = [&](const QColor &a, const QColor &b) {
        const auto [low, high] = std::minmax({luminance(a), luminance(b)});
        return (high + 0.05) / (low + 0.05);
    };
    for (const bool dark : {false, true}) {
        window.setPalette(themePalette(dark));
        std::vector<QImage> drawn;
        for (const bool on : {false, true}) {
            cup().setChecked(on);
            for (const bool down : {false, true}) {
                cup().setDown(down);
                const auto ground = over(cup().ground().in(cup()), neutral::window.in(cup()));
                EXPECT_GE(contrast(cup().shade().in(cup()), ground), 4.5) << dark << on << down;
            }
            cup().setDown(false);
            drawn.push_back(cup().grab().toImage().convertToFormat(QImage::Format_Grayscale8));
        }
        EXPECT_NE(drawn[0], drawn[1]);
    }
}

// In the same grey on the same ground one could still tell the two apart.
TEST(SymbolToggleShapes, differByMoreThanTheirColour)
{
    const auto pixels = [](const char *name) {
        const auto image = symbolIcon(name, Qt::black).pixmap(QSize(16, 16), 1.0).toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y).alpha() > 127;
        }
        return count;
    };
    EXPECT_GE(pixels("cup.and.saucer.fill"), pixels("cup.and.saucer") + 20);
}

} // namespace
} // namespace orvalen
