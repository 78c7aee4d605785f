#include <gmock/gmock.h>

#include <QScrollBar>
#include <QWheelEvent>

#include "tests/ui/Dashboard.h"
#include "tests/ui/Fit.h"
#include "tests/ui/Situations.h"
#include "ui/CenterDashboardView.h"
#include "ui/LeftSidebarAdView.h"
#include "ui/RightSidebarUtilityView.h"
#include "ui/kit/Builders.h"
#include "ui/kit/ScrollArea.h"
#include "ui/kit/TabButton.h"

namespace orvalen {
namespace {

using test::Dashboard;
using test::misfits;
using test::situationsOf;
using ::testing::IsEmpty;

constexpr QSize allSizes[] = {{815, 560}, {815, 840}, {1000, 560}, {1000, 840}, {1600, 560}, {1600, 840}};

/// While it lives, the application's font is one of that size.
class SystemFont
{
public:
    explicit SystemFont(int pixels, const QString &family = {})
    {
        auto font = before;
        if (!family.isEmpty())
            font.setFamily(family);
        font.setPixelSize(pixels);
        QApplication::setFont(font);
    }
    ~SystemFont() { QApplication::setFont(before); }
    SystemFont(const SystemFont &) = delete;
    SystemFont &operator=(const SystemFont &) = delete;

private:
    QFont before = QApplication::font();
};

struct EveryTab : ::testing::TestWithParam<int>
{
    /// At every size, in both directions.
    static void expectFit(Dashboard &dashboard, const char *situation)
    {
        dashboard.window.setUpdatesEnabled(false); // it is the places that count
        for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
            dashboard.window.setLayoutDirection(direction);
            for (const auto size : allSizes) {
                dashboard.window.resize(size);
                dashboard.settle();
                EXPECT_THAT(misfits(dashboard.window), IsEmpty())
                    << situation << (direction == Qt::RightToLeft ? ", from right to left" : "");
            }
        }
    }
};

/// The tab in the smallest window, with all that it may have to show.
struct SmallWindow : Dashboard
{
    explicit SmallWindow(int tab)
    {
        state.selectedTab = tab;
        window.resize(815, 560);
        show();
        for (const auto &[name, arrange] : situationsOf(tab))
            arrange(*this);
    }
};

INSTANTIATE_TEST_SUITE_P(Layout, EveryTab, ::testing::ValuesIn(test::allTabs),
                         [](const auto &tab) { return "tab" + std::to_string(tab.param); });

TEST_P(EveryTab, fitsAtEverySizeWithEveryFontInBothDirections)
{
    for (const auto *family : {"", "Inter"}) {
        for (const int pixels : {13, 15, 20}) {
            SCOPED_TRACE(std::string(family) + ' ' + std::to_string(pixels) + " px");
            const SystemFont font(pixels, family);
            Dashboard dashboard;
            dashboard.state.selectedTab = GetParam();
            dashboard.show();
            for (const auto &[name, arrange] : situationsOf(GetParam())) {
                arrange(dashboard);
                expectFit(dashboard, name);
            }
        }
    }
}

TEST_P(EveryTab, fitsWhenTheSystemsFontGrowsWhileItIsShown)
{
    const SystemFont usual(13);
    SmallWindow dashboard(GetParam());
    for (const int pixels : {20, 13, 15}) {
        const SystemFont font(pixels);
        dashboard.settle();
        EXPECT_THAT(misfits(dashboard.window), IsEmpty()) << pixels;
    }
}

TEST_P(EveryTab, leavesTheColumnsAsWideAsTheyAre)
{
    const SystemFont font(20);
    Dashboard dashboard;
    dashboard.state.selectedTab = GetParam();
    dashboard.show();
    for (const auto &[name, arrange] : situationsOf(GetParam())) {
        arrange(dashboard);
        for (const auto size : allSizes) {
            dashboard.window.resize(size);
            dashboard.settle();
            EXPECT_EQ(dashboard.window.size(), size) << name; // nothing in it wants more
            EXPECT_EQ(dashboard.window.findChild<LeftSidebarAdView *>()->width(), 175) << name;
            EXPECT_EQ(dashboard.window.findChild<RightSidebarUtilityView *>()->width(), 220) << name;
            EXPECT_EQ(dashboard.window.findChild<CenterDashboardView *>()->width(), size.width() - 175 - 220) << name;
        }
    }
}

TEST_P(EveryTab, scrollsToEverythingWhereTheWindowIsLow)
{
    const SystemFont font(15);
    SmallWindow dashboard(GetParam());
    dashboard.settle();
    for (auto *area : dashboard.window.findChildren<kit::ScrollArea *>()) {
        if (!area->isVisible())
            continue;
        for (auto *widget : area->widget()->findChildren<QWidget *>()) {
            if (!widget->isVisible() || widget->height() > area->height())
                continue;
            area->ensureWidgetVisible(widget, 0, 0);
            EXPECT_EQ(widget->visibleRegion().boundingRect(), widget->rect()) << widget->metaObject()->className();
        }
    }
}

struct Layout : ::testing::Test, Dashboard
{
    Layout() { show(); }

    void resizeTo(int width, int height)
    {
        window.resize(width, height);
        settle();
    }
};

TEST_F(Layout, theWheelMovesASideColumnThatIsTooHigh)
{
    for (const auto &[name, arrange] : situationsOf(4))
        arrange(*this);
    machine.interfaces.entries = {{test::networkInterface("en5", "172.20.10.2")}};
    webServer.refreshIPs();
    const SystemFont font(20);
    resizeTo(815, 560);
    for (const QWidget *column : std::initializer_list<const QWidget *>{
             window.findChild<LeftSidebarAdView *>(), window.findChild<RightSidebarUtilityView *>()}) {
        auto *area = column->findChild<kit::ScrollArea *>();
        auto *lastLink = column->findChildren<kit::LinkLabel *>().back();
        EXPECT_GT(area->widget()->height(), column->height());
        EXPECT_TRUE(area->findChild<QScrollBar *>(QString(), Qt::FindDirectChildrenOnly)->isVisible());
        EXPECT_TRUE(lastLink->visibleRegion().isEmpty());
        const QPointF point(column->width() / 2.0, 100);
        for (int notch = 0; notch < 20; ++notch) {
            QWheelEvent wheel(point, area->viewport()->mapToGlobal(point), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(area->viewport(), &wheel);
        }
        EXPECT_EQ(lastLink->visibleRegion().boundingRect(), lastLink->rect());
    }
}

TEST_F(Layout, sideColumnsThatFitDoNotScroll)
{
    resizeTo(1000, 840);
    for (const auto *area : window.findChildren<kit::ScrollArea *>()) {
        if (area->isVisible()) {
            EXPECT_EQ(area->verticalScrollBar()->maximum(), 0);
        }
    }
}

TEST_F(Layout, tabsStandSymbolAboveTitleWhereTheCentreIsNarrow)
{
    const SystemFont font(13, "Inter");
    const auto allStacked = [&](bool stacked) {
        for (const auto *tab : window.findChildren<kit::TabButton *>()) {
            EXPECT_EQ(tab->form() == kit::TabButton::Form::beside, !stacked) << tab->label().toStdString();
            EXPECT_EQ(tab->height(), stacked ? 50 : 28) << tab->label().toStdString();
        }
    };
    for (const int centre : {420, 579, 580, 1200}) {
        SCOPED_TRACE(centre);
        resizeTo(175 + centre + 220, 680);
        allStacked(centre < 580);
    }
}

TEST_F(Layout, theLongestAddressLosesItsMiddle)
{
    state.selectedTab = 4;
    for (const auto &[name, arrange] : situationsOf(4))
        arrange(*this);
    resizeTo(815, 840);
    int shortened = 0;
    for (const auto *address : window.findChildren<kit::AddressLabel *>()) {
        if (!address->isVisible() || address->shown() == address->text())
            continue;
        ++shortened;
        EXPECT_TRUE(address->shown().startsWith("http://an")) << address->shown().toStdString();
        EXPECT_TRUE(address->shown().endsWith(":8999")) << address->shown().toStdString();
        EXPECT_EQ(address->toolTip(), address->text());
    }
    EXPECT_GE(shortened, 3);
    resizeTo(1600, 840);
    EXPECT_EQ(findIn<kit::AddressLabel>(window, "Universal Bonjour (mDNS):")->shown(),
              QString::fromStdString(webServer.bonjourURL));
}

} // namespace
} // namespace orvalen
