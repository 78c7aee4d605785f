#include <gtest/gtest.h>

#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "tests/ui/Reading.h"
#include "ui/CenterDashboardView.h"
#include "ui/DashboardHomeTab.h"
#include "ui/DiagnosticsView.h"
#include "ui/LeftSidebarAdView.h"
#include "ui/MultiCloneView.h"
#include "ui/RightSidebarUtilityView.h"
#include "ui/SettingsView.h"
#include "ui/TemperatureReadout.h"
#include "ui/ToolsView.h"
#include "ui/kit/Builders.h"
#include "ui/kit/StretchedPicture.h"

namespace orvalen {
namespace {

using namespace kit;
using test::Dashboard;
using test::networkInterface;

enum Tab
{
    home = 0,
    diagnostics = 1,
    tools = 2,
    settings = 3,
    clone = 4,
};
constexpr Tab allTabs[] = {home, clone, diagnostics, tools, settings};

/// Notes what is painted and moved in a window.
class Work : public QObject
{
public:
    explicit Work(QWidget &window) : window(window) { qApp->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *widget = qobject_cast<QWidget *>(watched);
        if (!widget || widget->window() != &window)
            return false;
        if (event->type() == QEvent::Paint) {
            painted += static_cast<QPaintEvent *>(event)->region().translated(widget->mapTo(&window, QPoint(0, 0)));
            painters.push_back(widget);
        } else if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
            moved.push_back(widget);
        }
        return false;
    }

    /// How often something was done in `part`.
    [[nodiscard]] int paintsIn(const QWidget &part) const { return countIn(painters, part); }
    [[nodiscard]] int movesIn(const QWidget &part) const { return countIn(moved, part); }

    void forget()
    {
        painted = {};
        painters.clear();
        moved.clear();
    }

    QRegion painted; ///< In the window. What lies under a widget that is painted is painted with it, no further.
    std::vector<const QWidget *> painters;
    std::vector<const QWidget *> moved;

private:
    static int countIn(const std::vector<const QWidget *> &widgets, const QWidget &part)
    {
        return static_cast<int>(std::count_if(widgets.begin(), widgets.end(), [&](const QWidget *widget) {
            return widget == &part || part.isAncestorOf(widget);
        }));
    }

    QWidget &window;
};

struct Repaint : ::testing::Test, Dashboard
{
    Repaint()
    {
        machine.interfaces.entries = {{wifi}};
        machine.sensors.set(40.4, 40.1);
        webServer.refreshIPs();
        state.refreshTelemetry();
        show();
    }

    void choose(Tab tab)
    {
        state.selectedTab = tab;
        settle();
    }

    [[nodiscard]] const QWidget &page(Tab tab) const
    {
        const QWidget *found[] = {window.findChild<DashboardHomeTab *>(), window.findChild<DiagnosticsView *>(),
                                  window.findChild<ToolsView *>(), window.findChild<SettingsView *>(),
                                  window.findChild<MultiCloneView *>()};
        return *found[tab];
    }
    [[nodiscard]] QWidget &left() const { return *window.findChild<LeftSidebarAdView *>(); }
    [[nodiscard]] QWidget &right() const { return *window.findChild<RightSidebarUtilityView *>(); }

    [[nodiscard]] QRegion placeOf(const QWidget &widget) const { return test::placeIn(window, widget); }
    template <typename Widget>
    [[nodiscard]] const Widget &the(const QWidget &root) const
    {
        return *root.findChild<Widget *>();
    }

    /// Everything that can change by itself, to what it was not.
    void changeEverything()
    {
        machine.sensors.set(38.2, 37.9);
        machine.power.set(false, 61);
        machine.interfaces.entries = {{wifi, phone}};
        machine.hostName.multicast = "another-name";
        machine.captureAccess.granted = !machine.captureAccess.granted;
        state.refreshTelemetry();
        state.isUserAway = !state.isUserAway;
        state.smartModeEnabled = !state.smartModeEnabled;
        state.targetTemp = state.targetTemp + 0.5;
        state.idleTimeoutMinutes = state.idleTimeoutMinutes + 1;
        state.autoWarmupOnCharger = !state.autoWarmupOnCharger;
        state.soundFeedbackEnabled = !state.soundFeedbackEnabled;
        state.reportStatus = "Saved";
        webServer.refreshIPs();
        webServer.toggleServer();
        state.triggerWarmup();
        engine.reportProgress(38.4, 0.3);
        machine.world.settle();
    }

    template <typename T>
    static void repeat(Published<T> &value)
    {
        value = T(value.value());
    }

    /// The same with what everything is anyway.
    void repeatEverything()
    {
        repeat(state.thermalData);
        repeat(state.isAcConnected);
        repeat(state.batteryPercent);
        repeat(state.userIdleSeconds);
        repeat(state.isUserAway);
        repeat(state.isWarmingUp);
        repeat(state.warmupProgress);
        repeat(state.currentPulseTemp);
        repeat(state.selectedTab);
        repeat(state.reportStatus);
        repeat(state.smartModeEnabled);
        repeat(state.targetTemp);
        repeat(state.idleTimeoutMinutes);
        repeat(state.autoWarmupOnCharger);
        repeat(state.soundFeedbackEnabled);
        repeat(webServer.isRunning);
        repeat(webServer.primaryURL);
        repeat(webServer.bonjourURL);
        repeat(webServer.usbIP);
        repeat(webServer.usbBridge);
        repeat(webServer.qrCodeImage);
        repeat(webServer.serverPort);
        repeat(webServer.hasScreenRecordingPermission);
        repeat(usbManager.connectedDevices);
        repeat(caffeine.isActive);
        machine.world.settle();
    }

    const NetworkInterface wifi = networkInterface("en0", "192.168.1.20");
    const NetworkInterface phone = networkInterface("en5", "172.20.10.2");
};

TEST_F(Repaint, aHiddenTabIsNeitherPaintedNorLaidOut)
{
    for (const auto tab : allTabs)
        choose(tab);
    for (const auto shown : allTabs) {
        choose(shown);
        Work work(window);
        changeEverything();
        settle();
        EXPECT_FALSE(work.painters.empty());
        for (const auto tab : allTabs) {
            if (tab == shown)
                continue;
            EXPECT_EQ(work.paintsIn(page(tab)), 0) << tab << " behind " << shown;
            EXPECT_EQ(work.movesIn(page(tab)), 0) << tab << " behind " << shown;
        }
        engine.complete(40.0);
        settle();
    }
}

TEST_F(Repaint, aHiddenTabTakesTheWindowsSizeWhenItIsShown)
{
    choose(settings);
    choose(clone);
    Work work(window);
    for (const int width : {815, 1200, 1600}) {
        window.resize(width, 700);
        settle();
    }
    EXPECT_EQ(work.movesIn(page(settings)), 0);
    EXPECT_EQ(work.paintsIn(page(settings)), 0);
    choose(settings);
    EXPECT_EQ(page(settings).width(), page(clone).width());
    EXPECT_EQ(page(settings).width(), 1600 - LeftSidebarAdView::columnWidth - RightSidebarUtilityView::columnWidth);
}

TEST_F(Repaint, aTabNobodyHasLookedAtIsNotThere)
{
    EXPECT_TRUE(window.findChild<DashboardHomeTab *>());
    EXPECT_FALSE(window.findChild<SettingsView *>());
    EXPECT_FALSE(window.findChild<MultiCloneView *>());
    EXPECT_FALSE(window.findChild<DiagnosticsView *>());
    EXPECT_FALSE(window.findChild<ToolsView *>());
}

TEST_F(Repaint, aValueThatStaysAsItIsPaintsNothingInAnyTab)
{
    changeEverything();
    for (const auto tab : allTabs) {
        choose(tab);
        Work work(window);
        repeatEverything();
        settle();
        EXPECT_TRUE(work.painters.empty()) << tab << ": " << work.painters.front()->metaObject()->className();
        EXPECT_TRUE(work.moved.empty()) << tab;
    }
}

TEST_F(Repaint, timeAndQuestionsThatBringNothingNewPaintNothing)
{
    webServer.isRunning = true;
    for (const auto tab : {home, clone}) {
        choose(tab);
        state.refreshTelemetry();
        const double soc = state.thermalData.value().socTemp;
        settle();
        Work work(window);
        machine.world.advance(std::chrono::seconds(30));
        webServer.refreshIPs();
        settle();
        setBridge(40.44, soc); // reads the same
        settle();
        EXPECT_TRUE(work.painters.empty()) << tab;
        setBridge(40.5, soc);
        webServer.serverPort = webServer.serverPort + 1;
        webServer.refreshIPs();
        settle();
        EXPECT_FALSE(work.painters.empty()) << tab;
    }
}

TEST_F(Repaint, aReadingPaintsTheNumbersThatShowIt)
{
    setBridge(40.4, 46.0);
    settle();
    Work work(window);
    setBridge(40.5, 46.0);
    settle();
    const auto &number = the<TemperatureReadout>(window);
    const auto *metric = find("40.5°C");
    ASSERT_TRUE(metric);
    const auto *tile = findIn<TextLabel>(window, "40.5°C");
    ASSERT_TRUE(tile);
    EXPECT_EQ(work.painted, placeOf(number) + placeOf(*tile));
}

TEST_F(Repaint, progressPaintsTheButtonAndTheNumber)
{
    state.triggerWarmup();
    engine.reportProgress(37.0, 0.10);
    settle();
    Work work(window);
    engine.reportProgress(37.5, 0.25);
    settle();
    EXPECT_EQ(work.painted, placeOf(the<TemperatureReadout>(window)) + placeOf(the<CallToAction>(page(home))));
    EXPECT_EQ(work.paintsIn(left()) + work.paintsIn(right()), 0);
    EXPECT_TRUE(work.moved.empty());
}

TEST_F(Repaint, aStepOfASliderPaintsItAndItsValue)
{
    setBridge(50.0); // warm enough for every target, so that nothing else changes
    choose(settings);
    const auto *slider = find<Slider>("Target Bridge Temperature");
    const auto *value = findIn<TextLabel>(window, "40.0 °C");
    ASSERT_TRUE(slider && value);
    Work work(window);
    state.targetTemp = 40.5;
    settle();
    ASSERT_EQ(value->text(), "40.5 °C");
    EXPECT_EQ(work.painted, placeOf(*slider) + placeOf(*value));
}

TEST_F(Repaint, aSwitchPaintsItselfAlone)
{
    choose(settings);
    const auto *toggle = find<Toggle>("Audio Chimes & Sound Feedback");
    ASSERT_TRUE(toggle);
    Work work(window);
    state.soundFeedbackEnabled = false;
    settle();
    EXPECT_EQ(work.painted, placeOf(*toggle));
}

TEST_F(Repaint, theStreamLeavesTheLeftColumnAlone)
{
    for (const auto tab : {home, clone}) {
        choose(tab);
        Work work(window);
        webServer.toggleServer();
        settle();
        EXPECT_GT(work.paintsIn(right()), 0);
        EXPECT_EQ(work.paintsIn(left()), 0);
        EXPECT_EQ(work.paintsIn(page(home)), 0);
    }
}

TEST_F(Repaint, aClosedOrMinimizedWindowPaintsNothing)
{
    window.close();
    settle();
    Work work(window);
    changeEverything();
    settle();
    EXPECT_TRUE(work.painters.empty());
    window.show();
    settle();
    EXPECT_FALSE(work.painters.empty());

    window.showMinimized();
    settle();
    work.forget();
    engine.reportProgress(39.0, 0.5);
    webServer.toggleServer();
    settle();
    EXPECT_TRUE(work.painters.empty());
}

// From the small picture or stroke by stroke: nobody can tell.
TEST(StretchedPictureOfAFrame, looksAsItIsPainted)
{
    const StretchedPicture frame{
        .key = "frame of a test",
        .corner = 12,
        .paint =
            [](QPainter &painter, const QRect &place) {
                painter.setPen(Qt::darkBlue);
                painter.setBrush(QColor(200, 100, 0, 60));
                painter.drawRoundedRect(QRectF(place).adjusted(1.5, 1.5, -1.5, -1.5), 9, 9);
            },
    };
    const QRect place(7, 5, 90, 61);
    const auto drawn = [&](double scale, bool stretched) {
        QImage image(QSize(110, 80) * scale, QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        if (stretched)
            frame.draw(painter, place);
        else
            frame.paint(painter, place);
        painter.fillRect(place.adjusted(12, 12, -12, -12), Qt::gray);
        return image;
    };
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        const auto stretched = drawn(scale, true);
        const auto painted = drawn(scale, false);
        int different = 0;
        for (int y = 0; y < painted.height(); ++y) {
            for (int x = 0; x < painted.width(); ++x) {
                const auto a = stretched.pixel(x, y);
                const auto b = painted.pixel(x, y);
                different += std::abs(qRed(a) - qRed(b)) > 2 || std::abs(qGreen(a) - qGreen(b)) > 2 ||
                             std::abs(qBlue(a) - qBlue(b)) > 2;
            }
        }
        EXPECT_EQ(different, 0) << "at scale " << scale;
    }
    EXPECT_NE(drawn(1.0, true).pixel(50, 6), QColor(Qt::white).rgb()); // something is drawn at all
}

// What is half transparent must not be laid over itself.
TEST(RoundedRectangle, isOfOneColourAtEveryOpacity)
{
    for (const double scale : {1.0, 1.5, 2.0}) {
        QImage image(QSize(100, 60) * scale, QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(0.45);
        paintRounded(painter, {0, 0, 100, 60}, 8, Qt::black);
        const auto at = [&](double x, double y) { return qRed(image.pixel(QPointF(x * scale, y * scale).toPoint())); };
        EXPECT_NEAR(at(50, 30), 140, 2) << scale;
        EXPECT_NEAR(at(50, 4), at(50, 30), 1) << scale;
        EXPECT_NEAR(at(4, 30), at(50, 30), 1) << scale;
        EXPECT_NEAR(at(5, 5), at(50, 30), 1) << scale;
        EXPECT_GT(at(0, 0), 200) << scale;
    }
}

} // namespace
} // namespace orvalen
