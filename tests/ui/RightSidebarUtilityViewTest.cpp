#include "ui/RightSidebarUtilityView.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "core/MakerSite.h"
#include "tests/ui/StreamWindow.h"
#include "ui/StreamRules.h"

namespace orvalen {
namespace {

using namespace kit;
using namespace test;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

/// The right column of the window.
struct SideColumn : StreamWindow
{
    QWidget &column() const { return sidebar(); }
};

TEST_F(SideColumn, offersTheStreamWhileThereIsNone)
{
    EXPECT_THAT(words(column()),
                ElementsAre("100% OFFLINE MIRROR", "NO INTERNET",
                            "Works completely offline without Wi-Fi, Router or Active Internet.",
                            "BLANK SCREEN HOTKEY:", "⌘ + ⌥ + M", "⚡ Start Offline Stream", "USB CABLE (OFFLINE)",
                            "Plug USB cable & turn on Hotspot/Tethering:", "WI-FI / LOCAL MDNS",
                            "http://192.168.1.20:8999", "Copy", "SYSTEM SETTINGS JUMP", "Displays & Mirroring",
                            "Screen Recording Access", "Servers and engineers, rented",
                            "Quenmark hosts what you build, and helps you build it.", "Talk to us ↗"));
    EXPECT_EQ(call(column()).accent(), accent::green);
    EXPECT_EQ(call(column()).dot(), StreamRules::dotShade(false));
    EXPECT_EQ(call(column()).accessibleDescription(), "The stream is off");
}

TEST_F(SideColumn, standsInTheOrderInWhichItIsRead)
{
    machine.interfaces.entries = {{wifi, phone}};
    webServer.refreshIPs();
    settle();
    int bottom = 0;
    for (const auto *text :
         {"100% OFFLINE MIRROR", "Works completely offline without Wi-Fi, Router or Active Internet.",
          "BLANK SCREEN HOTKEY:", "USB CABLE (OFFLINE)", "USB LINK ACTIVE", "WI-FI / LOCAL MDNS",
          "SYSTEM SETTINGS JUMP", "Servers and engineers, rented"}) {
        const auto &read = label(column(), text);
        const int top = read.mapTo(&column(), QPoint()).y();
        EXPECT_GE(top, bottom) << text;
        bottom = top + read.height();
    }
    const auto below = [&](const QString &upper, const QWidget &lower) {
        return lower.mapTo(&column(), QPoint()).y() > label(column(), upper).mapTo(&column(), QPoint()).y();
    };
    EXPECT_TRUE(below("BLANK SCREEN HOTKEY:", call(column())));
    EXPECT_FALSE(below("USB CABLE (OFFLINE)", call(column())));
}

TEST_F(SideColumn, standsNineApartAndItsButtonTakesTheWholeWidth)
{
    const std::vector<const QWidget *> blocks{&cardAround(column(), "BLANK SCREEN HOTKEY:"), &call(column()),
                                              &cardAround(column(), "USB CABLE (OFFLINE)"),
                                              &cardAround(column(), "WI-FI / LOCAL MDNS")};
    for (std::size_t i = 1; i < blocks.size(); ++i)
        EXPECT_EQ(placeIn(column(), *blocks[i]).top() - placeIn(column(), *blocks[i - 1]).bottom() - 1, 9) << i;
    EXPECT_EQ(placeIn(column(), call(column())).left(), 12);
    EXPECT_EQ(call(column()).width(), 220 - 2 * 12);
}

TEST_F(SideColumn, saysAtOnceThatItNeedsNoNetwork)
{
    const auto &heading = label(column(), "100% OFFLINE MIRROR");
    EXPECT_EQ(heading.type().size, 11);
    EXPECT_EQ(heading.shade(), accent::green.ink);
    EXPECT_EQ(symbol(column(), "wifi.slash").shade(), accent::green.ink);
    const auto *badge = findIn<Badge>(column(), "NO INTERNET");
    ASSERT_TRUE(badge);
    EXPECT_EQ(badge->type().size, 7);
    EXPECT_EQ(badge->accent(), accent::green);
    EXPECT_EQ(badge->tint(), 20);
    EXPECT_EQ(label(column(), "Works completely offline without Wi-Fi, Router or Active Internet.").shade(),
              neutral::secondary);
}

TEST_F(SideColumn, remindsOfTheKeyThatWorksOnABlackScreen)
{
    EXPECT_EQ(symbol(column(), "eye.slash.fill").shade(), accent::orange.ink);
    EXPECT_EQ(label(column(), "BLANK SCREEN HOTKEY:").shade(), accent::orange.ink);
    const auto *keys = findIn<Badge>(column(), "⌘ + ⌥ + M");
    ASSERT_TRUE(keys);
    EXPECT_EQ(keys->accent(), accent::orange);
}

TEST_F(SideColumn, itsButtonStartsTheStreamAndStopsIt)
{
    EXPECT_EQ(call(column()).type().size, 11);
    QTest::mouseClick(&call(column()), Qt::LeftButton);
    EXPECT_TRUE(webServer.isRunning);
    EXPECT_EQ(servers(), 1);
    EXPECT_EQ(call(column()).label(), "Stop Offline Stream");
    EXPECT_EQ(call(column()).accent(), accent::orange);
    EXPECT_EQ(call(column()).dot(), StreamRules::dotShade(true));
    EXPECT_NE(StreamRules::dotShade(true), StreamRules::dotShade(false));
    EXPECT_EQ(call(column()).accessibleDescription(), "The stream is on");

    QTest::mouseClick(&call(column()), Qt::LeftButton);
    EXPECT_FALSE(webServer.isRunning);
    EXPECT_EQ(servers(), 0);
    EXPECT_EQ(call(column()).label(), "⚡ Start Offline Stream");
}

TEST_F(SideColumn, theLightOnTheButtonIsGreenWhileTheStreamIsOnAndElseGrey)
{
    const auto lit = QColor::fromRgb(StreamRules::dotShade(true).light);
    const auto dull = QColor::fromRgb(StreamRules::dotShade(false).light);
    EXPECT_NEAR(lit.hsvHue(), 120, 40);
    EXPECT_GT(lit.hsvSaturation(), 100);
    EXPECT_LT(dull.hsvSaturation(), 20);

    webServer.isRunning = true;
    settle();
    const auto button = call(column()).grab().toImage();
    QRect light; // what is green on the orange button
    for (int y = 0; y < button.height(); ++y) {
        for (int x = 0; x < button.width(); ++x) {
            if (button.pixelColor(x, y).green() > button.pixelColor(x, y).red() + 20)
                light |= QRect(x, y, 1, 1);
        }
    }
    EXPECT_EQ(light.size(), QSize(6, 6));
}

TEST_F(SideColumn, showsAPhoneOnTheCableWhileItIsThere)
{
    machine.interfaces.entries = {{wifi, phone}};
    webServer.refreshIPs();
    const auto shown = words(column());
    const auto heading = std::find(shown.begin(), shown.end(), "USB CABLE (OFFLINE)");
    ASSERT_GE(shown.end() - heading, 8);
    EXPECT_THAT(std::vector(heading, heading + 7),
                ElementsAre("USB CABLE (OFFLINE)", "USB LINK ACTIVE", "http://172.20.10.2:8999", "Copy",
                            "WI-FI / LOCAL MDNS", "http://192.168.1.20:8999", "Copy"));
    EXPECT_EQ(label(column(), "USB LINK ACTIVE").shade(), accent::green.ink);
    const auto *link = findIn<AddressLabel>(column(), "USB CABLE (OFFLINE)");
    ASSERT_TRUE(link);
    EXPECT_EQ(link->shade(), accent::green.ink);
    EXPECT_EQ(qobject_cast<Card *>(link->parentWidget())->tintShade(), accent::green.vivid.at(12));
    press(column(), "Copy", "http://172.20.10.2:8999");
    EXPECT_EQ(machine.pasteboard.text, "http://172.20.10.2:8999");
    webServer.serverPort = 9000;
    EXPECT_THAT(words(column()), Contains("http://172.20.10.2:9000")); // as it would be copied now

    machine.interfaces.entries = {{wifi}}; // unplugged
    webServer.refreshIPs();
    const auto then = words(column());
    EXPECT_THAT(then, Contains("Plug USB cable & turn on Hotspot/Tethering:"));
    EXPECT_THAT(then, Not(Contains("USB LINK ACTIVE")));
    EXPECT_EQ(std::count(then.begin(), then.end(), "Copy"), 1);
    EXPECT_EQ(label(column(), "Plug USB cable & turn on Hotspot/Tethering:").shade(), neutral::secondary);
    EXPECT_TRUE(symbol(column(), "cable.connector").isVisible());
}

TEST_F(SideColumn, itsLinkIsCopied)
{
    const auto &heading = label(column(), "WI-FI / LOCAL MDNS");
    EXPECT_EQ(heading.type().size, 9);
    EXPECT_EQ(heading.shade(), accent::blue.ink);
    EXPECT_TRUE(symbol(column(), "wifi").isVisible());
    const auto *link = findIn<AddressLabel>(column(), "WI-FI / LOCAL MDNS");
    ASSERT_TRUE(link);
    EXPECT_EQ(link->type().size, 8);
    EXPECT_EQ(link->shade(), accent::blue.ink);

    press(column(), "Copy", "http://192.168.1.20:8999");
    EXPECT_EQ(machine.pasteboard.text, "http://192.168.1.20:8999");
    machine.world.settle();
    EXPECT_THAT(machine.sounds.played, ElementsAre("Tink"));
}

TEST_F(SideColumn, leadsToTheSystemsSettings)
{
    EXPECT_EQ(label(column(), "SYSTEM SETTINGS JUMP").shade(), neutral::secondary);
    const auto rows = column().findChildren<RowButton *>();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0]->label(), "Displays & Mirroring");
    EXPECT_EQ(rows[0]->symbols().leading, "display");
    EXPECT_EQ(rows[0]->symbols().trailing, "arrow.up.forward.app");
    EXPECT_EQ(rows[1]->label(), "Screen Recording Access");
    EXPECT_EQ(rows[1]->symbols().leading, "record.circle");
    EXPECT_EQ(rows[1]->symbols().trailing, "arrow.up.forward.app");
    EXPECT_EQ(rows[0]->width(), RightSidebarUtilityView::columnWidth - 2 * 12);
    EXPECT_EQ(rows[1]->width(), rows[0]->width());

    QTest::mouseClick(rows[0], Qt::LeftButton);
    EXPECT_THAT(settingsPages.opened, ElementsAre(settings_urls::displays));
    settingsPages.opened.clear();
    QTest::keyClick(rows[1], Qt::Key_Return);
    EXPECT_THAT(settingsPages.opened, ElementsAre(settings_urls::screenRecording));
}

TEST_F(SideColumn, endsWithACardThatLeadsToTheMakersSite)
{
    const auto &card = cardAround(column(), "Servers and engineers, rented");
    EXPECT_EQ(column().height() - card.mapTo(&column(), QPoint(0, card.height())).y(), 12);
    EXPECT_THAT(machine.urls.opened, IsEmpty());
    press(card, "Talk to us ↗");
    ASSERT_EQ(machine.urls.opened.size(), 1);
    EXPECT_TRUE(machine.urls.opened[0].starts_with(makerSite)) << machine.urls.opened[0];
}

TEST_F(SideColumn, staysWhateverTabIsChosen)
{
    for (const int tag : {0, 1, 2, 3, 4, 99}) {
        state.selectedTab = tag;
        settle();
        EXPECT_TRUE(call(column()).isVisible()) << tag;
    }
}

} // namespace
} // namespace orvalen
