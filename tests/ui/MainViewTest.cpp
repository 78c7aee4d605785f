#include "ui/MainView.h"

#include <gtest/gtest.h>

#include <QPalette>
#include <QTest>
#include <QTimer>

#include <algorithm>

#include "tests/support/ColorSchemeFake.h"
#include "tests/ui/Dashboard.h"
#include "ui/CenterDashboardView.h"
#include "ui/LeftSidebarAdView.h"
#include "ui/RightSidebarUtilityView.h"
#include "ui/kit/Builders.h"
#include "ui/kit/Theme.h"

namespace orvalen {
namespace {

using test::ChosenScheme;
using test::Dashboard;

struct Window : ::testing::Test, Dashboard
{
    Window() { show(); }

    QWidget &left() const { return *window.findChild<LeftSidebarAdView *>(); }
    QWidget &centre() const { return *window.findChild<CenterDashboardView *>(); }
    QWidget &right() const { return *window.findChild<RightSidebarUtilityView *>(); }
};

TEST_F(Window, isNamedAfterTheProgramAndOpensAtItsUsualSize)
{
    EXPECT_EQ(window.windowTitle(), "Orvalen");
    EXPECT_EQ(window.size(), QSize(1000, 680));
}

TEST_F(Window, onlyTheCentreColumnTakesRoom)
{
    for (const int width : {780, 815, 1000, 1600}) {
        window.resize(width, 600);
        settle();
        const int actual = std::max(width, 815);
        EXPECT_EQ(window.width(), actual);
        EXPECT_EQ(left().geometry(), QRect(0, 0, 175, 600));
        EXPECT_EQ(centre().geometry(), QRect(175, 0, actual - 175 - 220, 600));
        EXPECT_EQ(right().geometry(), QRect(actual - 220, 0, 220, 600));
    }
}

TEST_F(Window, isNeverSmallerThanItsColumns)
{
    window.resize(100, 100);
    settle();
    EXPECT_EQ(window.size(), QSize(815, 560));
    EXPECT_EQ(centre().width(), 420);
}

TEST_F(Window, changingTheTabLeavesTheSidebarsAlone)
{
    struct SidebarPaints : QObject
    {
        bool eventFilter(QObject *, QEvent *event) override
        {
            count += event->type() == QEvent::Paint;
            return false;
        }
        int count = 0;
    } paints;
    left().installEventFilter(&paints);
    right().installEventFilter(&paints);
    state.selectedTab = 3;
    settle();
    EXPECT_EQ(paints.count, 0);
}

TEST_F(Window, closingItClosesItAndNothingElse)
{
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.isVisible());
    machine.sensors.set(41.5);
    machine.world.advance(std::chrono::seconds(3));
    EXPECT_EQ(state.thermalData.value().bridgeTemp, 41.5);
    window.show();
    settle();
    EXPECT_TRUE(find("41.5°C"));
}

TEST_F(Window, controlQQuits)
{
    QTimer::singleShot(0, &window, [this] { QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier); });
    QTimer::singleShot(20'000, &window, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

/// Counts what is painted in the whole program.
struct PaintCounter : QObject
{
    PaintCounter() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
    int count = 0;
};

struct Themes : Window
{
    Themes() { window.followColorScheme(scheme); }
    ~Themes() override { QApplication::setPalette(QPalette()); }

    QColor drawnAt(QWidget &column, QPoint point)
    {
        settle();
        return column.grab().toImage().pixelColor(point);
    }
    void expectDark(bool dark)
    {
        const auto color = [dark](const kit::Shade &shade) {
            return QColor::fromRgba(dark ? shade.dark : shade.light);
        };
        EXPECT_EQ(kit::isDark(window.palette()), dark);
        EXPECT_EQ(drawnAt(centre(), {2, 2}), color(kit::neutral::window));
        EXPECT_EQ(drawnAt(left(), {2, 2}), color(kit::neutral::panel));
        EXPECT_EQ(drawnAt(right(), {100, 2}), color(kit::neutral::panel));
        const auto line = kit::over(kit::neutral::columnEdge.in(window), color(kit::neutral::panel));
        EXPECT_NEAR(drawnAt(left(), {174, 2}).red(), line.red(), 1);
        EXPECT_NE(drawnAt(left(), {174, 2}), color(kit::neutral::panel));
        EXPECT_EQ(drawnAt(right(), {0, 2}), drawnAt(left(), {174, 2}));
    }

    ChosenScheme scheme;
};

TEST_F(Themes, theDesktopsWordCountsAtRunTime)
{
    scheme.receive(2);
    expectDark(false);
    PaintCounter paints;
    scheme.receive(1);
    expectDark(true);
    EXPECT_GT(paints.count, 0);
    scheme.receive(2);
    expectDark(false);
}

TEST_F(Themes, withoutAPreferenceThePaletteDecides)
{
    scheme.receive(0);
    QApplication::setPalette(QPalette(Qt::black));
    settle();
    expectDark(true);
    QApplication::setPalette(QPalette(Qt::white));
    settle();
    expectDark(false);
    QApplication::setPalette(QPalette(Qt::black));
    scheme.receive(2);
    expectDark(false);
    scheme.receive(7);
    expectDark(true);
}

TEST_F(Themes, anEqualPreferenceRepaintsNothing)
{
    scheme.receive(1);
    settle();
    PaintCounter paints;
    scheme.receive(1);
    settle();
    EXPECT_EQ(paints.count, 0);
}

TEST(ThemeLifetime, theDesktopMaySpeakAfterTheWindowIsGone)
{
    ChosenScheme scheme;
    {
        Dashboard dashboard;
        dashboard.window.followColorScheme(scheme);
    }
    ASSERT_TRUE(scheme.receive);
    scheme.receive(1);
    const QPalette untouched;
    EXPECT_EQ(QApplication::palette(), untouched);
}

} // namespace
} // namespace orvalen
