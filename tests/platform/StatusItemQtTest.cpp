#include "platform/qt/StatusItemQt.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>
#include <QSystemTrayIcon>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/ColorScheme.h"
#include "platform/qt/StatusBarQt.h"
#include "platform/qt/TrayHost.h"

namespace orvalen {
namespace {

constexpr auto shield = "shield.lefthalf.filled";
constexpr auto flame = "flame.fill";

struct FakeTrayHost : TrayHost
{
    explicit FakeTrayHost(std::vector<std::function<void()>> &waiting) : waiting(waiting) {}
    void whenPresent(std::function<void()> then) override { waiting.push_back(std::move(then)); }
    std::vector<std::function<void()>> &waiting;
};

struct FakeColorScheme : ColorScheme
{
    std::vector<Receive> followers;
    void follow(Receive receive) override { followers.push_back(std::move(receive)); }
    void prefer(unsigned preference)
    {
        for (const auto &receive : followers)
            receive(preference);
    }
};

/// A light desktop, and an item that shows the shield and 39 degrees.
class StatusItemQtTest : public ::testing::Test
{
protected:
    StatusItemQtTest()
    {
        QApplication::setPalette(QPalette(Qt::lightGray, Qt::white));
        item->button()->setImage(shield, "Orvalen");
        item->button()->setTitle(" 39°");
    }

    void trayComes()
    {
        for (const auto &then : std::exchange(waiting, {}))
            then();
    }

    const QSystemTrayIcon *icon() const { return static_cast<const StatusItemQt &>(*item).trayIcon(); }

    bool shows(const StatusLook &look) const
    {
        return icon()->icon().pixmap(22).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied) ==
               paintStatusIcon(look, 22);
    }

    void click(QSystemTrayIcon::ActivationReason reason) const
    {
        Q_EMIT const_cast<QSystemTrayIcon *>(icon())->activated(reason);
    }

    std::vector<std::function<void()>> waiting;
    FakeColorScheme scheme;
    StatusBarQt bar{std::make_unique<FakeTrayHost>(waiting), scheme};
    std::unique_ptr<StatusItem> item = bar.statusItemWithLength(StatusBar::variableLength);
};

TEST_F(StatusItemQtTest, doesNotTouchTheTrayBeforeThereIsOne)
{
    EXPECT_EQ(icon(), nullptr);
    scheme.prefer(1);
    item->button()->setTitle(" 40°");
    item->button()->setImagePosition(StatusItemButton::ImagePosition::left);
    EXPECT_EQ(icon(), nullptr);
}

TEST_F(StatusItemQtTest, showsWhatItWasGivenLastWhenATrayComes)
{
    item->button()->setTitle(" 31°");
    trayComes();
    ASSERT_NE(icon(), nullptr);
    EXPECT_TRUE(icon()->isVisible());
    EXPECT_EQ(icon()->toolTip(), "Orvalen 31°");
    EXPECT_TRUE(shows({shield, "31", false}));
}

TEST_F(StatusItemQtTest, followsTitleAndImage)
{
    trayComes();
    item->button()->setTitle(" 104°");
    EXPECT_EQ(icon()->toolTip(), "Orvalen 104°");
    EXPECT_TRUE(shows({shield, "104", false}));
    item->button()->setImage(flame, "Orvalen");
    EXPECT_TRUE(shows({flame, "104", false}));
    item->button()->setTitle(" -5°");
    EXPECT_TRUE(shows({flame, "-5", false}));
    item->button()->setTitle("");
    EXPECT_EQ(icon()->toolTip(), "Orvalen");
    EXPECT_TRUE(shows({flame, "", false}));
}

TEST_F(StatusItemQtTest, isPaintedAnewOnlyWhenSomethingElseIsToBeSeen)
{
    trayComes();
    auto last = icon()->icon().cacheKey();
    int painted = 0;
    const auto count = [&] {
        painted += std::exchange(last, icon()->icon().cacheKey()) != icon()->icon().cacheKey();
        return painted;
    };
    for (int tick = 0; tick < 1000; ++tick) {
        item->button()->setTitle(" 39°");
        item->button()->setImage(shield, "Orvalen");
        scheme.prefer(2);
        QApplication::setPalette(tick % 2 ? QPalette(Qt::white) : QPalette(Qt::lightGray));
        QApplication::processEvents();
        ASSERT_EQ(count(), 0);
    }
    item->button()->setTitle(" 40°");
    EXPECT_EQ(count(), 1);
    item->button()->setImage(flame, "Orvalen");
    EXPECT_EQ(count(), 2);
    scheme.prefer(1);
    EXPECT_EQ(count(), 3);
}

TEST_F(StatusItemQtTest, isWhiteOnADesktopThatIsPreferredDarkAndNearBlackOnALightOne)
{
    trayComes();
    scheme.prefer(1);
    EXPECT_TRUE(shows({shield, "39", true}));
    scheme.prefer(2);
    EXPECT_TRUE(shows({shield, "39", false}));
}

TEST_F(StatusItemQtTest, goesByTheSystemsPaletteWhereNothingIsPreferred)
{
    trayComes();
    EXPECT_TRUE(shows({shield, "39", false}));
    QApplication::setPalette(QPalette(Qt::darkGray, Qt::black));
    QApplication::processEvents();
    EXPECT_TRUE(shows({shield, "39", true}));
    scheme.prefer(2);
    EXPECT_TRUE(shows({shield, "39", false}));
    scheme.prefer(0);
    EXPECT_TRUE(shows({shield, "39", true}));
}

TEST_F(StatusItemQtTest, actsOnEachPlainClickAndOnNothingElse)
{
    int clicks = 0;
    item->button()->setAction([&] { ++clicks; });
    trayComes();
    click(QSystemTrayIcon::Trigger);
    EXPECT_EQ(clicks, 1);
    click(QSystemTrayIcon::DoubleClick); // the second of two quick ones
    EXPECT_EQ(clicks, 2);
    for (const auto other : {QSystemTrayIcon::Context, QSystemTrayIcon::MiddleClick})
        click(other);
    EXPECT_EQ(clicks, 2);
}

TEST_F(StatusItemQtTest, survivesAClickWithoutAnAction)
{
    trayComes();
    click(QSystemTrayIcon::Trigger);
}

TEST_F(StatusItemQtTest, isNotMissedByATrayThatComesTooLate)
{
    item.reset();
    trayComes();
    scheme.prefer(1);
    QApplication::setPalette(QPalette(Qt::darkGray, Qt::black));
    QApplication::processEvents();
}

} // namespace
} // namespace orvalen
