#include "ui/CenterDashboardView.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "core/MakerSite.h"
#include "tests/ui/Reading.h"
#include "ui/DashboardHomeTab.h"
#include "ui/QuenmarkLogo.h"
#include "ui/TemperatureReadout.h"
#include "ui/kit/ScrollArea.h"
#include "ui/kit/TabButton.h"

namespace orvalen {
namespace {

using namespace kit;
using test::cardsOf;
using test::Dashboard;
using test::onlyIn;
using test::placeIn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct CenterDashboard : ::testing::Test, Dashboard
{
    CenterDashboard() { show(); }

    CenterDashboardView &column() const { return *window.findChild<CenterDashboardView *>(); }
    CallToAction &button() const { return onlyIn<CallToAction>(column()); }
    Toggle &protection() const { return onlyIn<Toggle>(column()); }
    TemperatureReadout &readout() const { return onlyIn<TemperatureReadout>(column()); }
    Badge &badge() const { return onlyIn<Badge>(column()); }

    QRect placeOf(const QWidget &widget) const { return placeIn(column(), widget); }

    std::vector<std::string> highlighted() const
    {
        std::vector<std::string> titles;
        for (const auto *tab : window.findChildren<TabButton *>()) {
            if (tab->isSelected())
                titles.push_back(tab->label().toStdString());
        }
        return titles;
    }

    // What a metric card of that title holds.
    struct Metric
    {
        std::string value;
        std::string symbol;
        Shade shade;
    };
    Metric metric(const QString &title) const
    {
        auto *card = find<TextLabel>(title)->parentWidget();
        while (!qobject_cast<Card *>(card))
            card = card->parentWidget();
        const auto *symbol = card->findChild<SymbolLabel *>();
        for (const auto *label : card->findChildren<TextLabel *>()) {
            if (label->text() != title)
                return {label->text().toStdString(), symbol->symbol().toStdString(), symbol->shade()};
        }
        return {};
    }
};

TEST_F(CenterDashboard, theBadgeFollowsTheRules)
{
    setBridge(39.0);
    EXPECT_EQ(badge().text(), "STANDBY");
    EXPECT_EQ(badge().accent(), accent::yellow);
    setBridge(40.0);
    EXPECT_EQ(badge().text(), "PROTECTED");
    EXPECT_EQ(badge().accent(), accent::green);
    state.targetTemp = 41.0;
    EXPECT_EQ(badge().text(), "STANDBY");
    setBridge(43.0);
    state.triggerWarmup();
    EXPECT_EQ(badge().text(), "WARMING UP");
    EXPECT_EQ(badge().accent(), accent::orange);
}

TEST_F(CenterDashboard, theNumberIsTheBridgesAtRestAndThePulsesWhileWarming)
{
    machine.sensors.set(41.24);
    state.refreshTelemetry();
    EXPECT_EQ(readout().text(), "41.2");
    EXPECT_EQ(readout().shade(), accent::green.vivid);

    state.triggerWarmup();
    engine.reportProgress(38.66, 0.5);
    EXPECT_EQ(readout().text(), "38.7");
    EXPECT_EQ(readout().shade().dark, accent::orange.vivid.dark);

    engine.complete(39.0);
    EXPECT_EQ(readout().text(), "41.2");
    EXPECT_EQ(readout().shade(), accent::green.vivid);

    setBridge(39.0);
    EXPECT_EQ(readout().shade(), accent::blue.vivid);
}

TEST_F(CenterDashboard, theNumberKeepsItsPlaceWhileItCounts)
{
    setBridge(40.0);
    settle();
    const auto place = readout().geometry();
    for (const double celsius : {38.1, 41.7, 44.4, 9.9, 0.0}) {
        setBridge(celsius);
        settle();
        EXPECT_EQ(readout().geometry(), place) << celsius;
    }
    setBridge(100.4);
    settle();
    EXPECT_GT(readout().width(), place.width());
}

TEST_F(CenterDashboard, theTargetLineFollowsTheTarget)
{
    EXPECT_TRUE(find<TextLabel>("Target Optimal: 40.0°C • Hotkey: ⌘⌥W"));
    state.targetTemp = 42.5;
    EXPECT_TRUE(find<TextLabel>("Target Optimal: 42.5°C • Hotkey: ⌘⌥W"));
    EXPECT_TRUE(find<TextLabel>("DISPLAY BRIDGE TEMPERATURE"));
}

TEST_F(CenterDashboard, theButtonAsksForAWarmupAsTheSettingsHaveIt)
{
    state.targetTemp = 41.5;
    EXPECT_EQ(button().label(), "Trigger Prime Warmup Now");
    EXPECT_EQ(button().symbol(), "play.fill");
    EXPECT_EQ(button().accent(), accent::blue);
    QTest::mouseClick(&button(), Qt::LeftButton);
    machine.world.settle();
    EXPECT_THAT(engine.targets, ElementsAre(41.5));
    EXPECT_THAT(machine.sounds.played, ElementsAre("Blow")); // not a silent one
}

TEST_F(CenterDashboard, theButtonTellsHowFarTheWarmupIs)
{
    QTest::mouseClick(&button(), Qt::LeftButton);
    EXPECT_EQ(button().label(), "Optimizing Gate Drivers (0%)...");
    EXPECT_EQ(button().symbol(), "flame.fill");
    EXPECT_EQ(button().accent(), accent::orange);
    engine.reportProgress(38.0, 0.999);
    EXPECT_EQ(button().label(), "Optimizing Gate Drivers (99%)...");
    engine.reportProgress(40.0, 1.0);
    EXPECT_EQ(button().label(), "Optimizing Gate Drivers (100%)...");
    engine.complete(40.0);
    EXPECT_EQ(button().label(), "Trigger Prime Warmup Now");
}

TEST_F(CenterDashboard, pressingTheButtonWhileWarmingIsDropped)
{
    QTest::mouseClick(&button(), Qt::LeftButton);
    EXPECT_TRUE(button().isEnabled());
    QTest::mouseClick(&button(), Qt::LeftButton);
    EXPECT_EQ(engine.targets.size(), 1u);
}

TEST_F(CenterDashboard, theSwitchIsTheSettingBothWays)
{
    EXPECT_TRUE(protection().isChecked());
    EXPECT_THAT(machine.settings.writes, IsEmpty());
    QTest::mouseClick(&protection(), Qt::LeftButton);
    EXPECT_FALSE(state.smartModeEnabled);
    EXPECT_THAT(machine.settings.writes, ElementsAre("smartModeEnabled=false"));
    state.smartModeEnabled = true; // from elsewhere: the switch follows and writes nothing itself
    EXPECT_TRUE(protection().isChecked());
    EXPECT_THAT(machine.settings.writes, ElementsAre("smartModeEnabled=false", "smartModeEnabled=true"));
    EXPECT_TRUE(find<TextLabel>("Autonomous Thermal Shield"));
    EXPECT_TRUE(find<TextLabel>("Auto-heats on wake, sleeps when away"));
}

bool operator==(const CenterDashboard::Metric &a, const CenterDashboard::Metric &b)
{
    return a.value == b.value && a.symbol == b.symbol && a.shade == b.shade;
}

TEST_F(CenterDashboard, theMetricCards)
{
    setBridge(40.44, 46.25);
    state.isAcConnected = true;
    state.isUserAway = false;
    using Metric = CenterDashboard::Metric;
    EXPECT_TRUE(metric("Gate Driver T-CON") == (Metric{"40.4°C", "display", accent::blue.ink}));
    EXPECT_TRUE(metric("Apple Silicon SoC") == (Metric{"46.2°C", "cpu", accent::purple.ink}));
    EXPECT_TRUE(metric("Power Source") == (Metric{"AC Adapter", "bolt.fill", accent::green.ink}));
    EXPECT_TRUE(metric("Active State") == (Metric{"Active Workstation", "person.fill.checkmark", accent::green.ink}));

    state.isAcConnected = false;
    state.batteryPercent = 100;
    state.isUserAway = true;
    EXPECT_TRUE(metric("Power Source") == (Metric{"100% Battery", "battery.75", accent::orange.ink}));
    EXPECT_TRUE(metric("Active State") == (Metric{"User Away (Idle)", "moon.zzz.fill", accent::gray.ink}));
    state.batteryPercent = 64;
    EXPECT_EQ(metric("Power Source").value, "64% Battery");
}

TEST_F(CenterDashboard, theLogoStandsInItsCorner)
{
    const auto *logo = column().childAt(20, 20);
    ASSERT_TRUE(logo);
    EXPECT_EQ(placeOf(*logo), QRect(16, 14, 28, 28));
}

TEST_F(CenterDashboard, everyTabStandsSixteenFromTheEdges)
{
    for (const int tab : {0, 4, 1, 2, 3}) {
        state.selectedTab = tab;
        settle();
        const auto areas = column().findChildren<ScrollArea *>();
        const auto area = std::find_if(areas.begin(), areas.end(), [](auto *each) { return each->isVisible(); });
        ASSERT_NE(area, areas.end()) << tab;
        const auto &page = *(*area)->widget();
        const auto content = page.childrenRect();
        EXPECT_EQ(content.left(), 16) << tab;
        EXPECT_EQ(content.top(), 16) << tab;
        EXPECT_EQ(page.width() - content.width(), 2 * 16) << tab;
        EXPECT_EQ(placeOf(page).left(), 0) << tab;
    }
}

TEST_F(CenterDashboard, theHomeTabHasItsDistances)
{
    const auto cards = cardsOf(onlyIn<DashboardHomeTab>(window)); // of the number, the switch and four readings
    ASSERT_EQ(cards.size(), 6u);
    const auto below = [this](const QWidget &upper, const QWidget &lower) {
        return placeOf(lower).top() - placeOf(upper).bottom() - 1;
    };
    EXPECT_EQ(below(*cards[0], button()), 14);
    EXPECT_EQ(below(button(), *cards[1]), 14);
    EXPECT_EQ(below(*cards[1], *cards[2]), 14);
    EXPECT_EQ(below(*cards[2], *cards[4]), 10);
    EXPECT_EQ(placeOf(*cards[3]).left() - placeOf(*cards[2]).right() - 1, 10);
    for (std::size_t i = 2; i < cards.size(); ++i)
        EXPECT_EQ(placeOf(onlyIn<SymbolLabel>(*cards[i])).size(), QSize(24, 24)) << i;
}

TEST_F(CenterDashboard, theTabsStandInTheirOrderWithTheirNumbers)
{
    const std::vector<std::tuple<QString, int, QString>> expected{{"Dashboard", 0, "gauge.medium"},
                                                                  {"Screen Clone", 4, "rectangle.on.rectangle.angled"},
                                                                  {"Diagnostics", 1, "waveform.path.ecg"},
                                                                  {"Power & Tools", 2, "hammer.fill"},
                                                                  {"Settings", 3, "gearshape.fill"}};
    const auto tabs = window.findChildren<TabButton *>();
    ASSERT_EQ(tabs.size(), 5);
    for (int i = 0; i < 5; ++i) {
        const auto &[title, number, symbol] = expected[static_cast<std::size_t>(i)];
        EXPECT_EQ(tabs[i]->label(), title);
        EXPECT_EQ(tabs[i]->symbol(), symbol);
        if (i > 0) {
            EXPECT_GT(tabs[i]->x(), tabs[i - 1]->geometry().right());
        }
        QTest::mouseClick(tabs[i], Qt::LeftButton);
        EXPECT_EQ(state.selectedTab, number);
        EXPECT_THAT(highlighted(), ElementsAre(title.toStdString()));
    }
}

TEST_F(CenterDashboard, onlyTheSelectedTabIsSeen)
{
    for (const int tag : {0, 4, 1, 2, 3, 0}) {
        state.selectedTab = tag;
        EXPECT_EQ(find<DashboardHomeTab>("") != nullptr, tag == 0) << tag;
        EXPECT_EQ(find("Trigger Prime Warmup Now") != nullptr, tag == 0) << tag;
        EXPECT_EQ(highlighted().size(), 1u);
    }
}

TEST_F(CenterDashboard, aNumberThatIsNoTabsShowsNothing)
{
    for (const int tag : {5, -1, 1000}) {
        state.selectedTab = 0;
        state.selectedTab = tag;
        EXPECT_THAT(highlighted(), IsEmpty()) << tag;
        EXPECT_FALSE(find("Trigger Prime Warmup Now"));
        EXPECT_TRUE(find("Dashboard")); // the row of tabs stays
    }
    state.selectedTab = 0;
    EXPECT_TRUE(find("Trigger Prime Warmup Now"));
}

TEST_F(CenterDashboard, pressingTheSelectedTabKeepsItSelected)
{
    QTest::mouseClick(find("Dashboard"), Qt::LeftButton);
    EXPECT_EQ(state.selectedTab, 0);
    EXPECT_THAT(highlighted(), ElementsAre("Dashboard"));
}

TEST_F(CenterDashboard, theMakersNameOpensTheMakersSite)
{
    QTest::mouseClick(find("Quenmark Technologies"), Qt::LeftButton);
    EXPECT_THAT(machine.urls.opened, ElementsAre(std::string(makerSite)));
    EXPECT_TRUE(find<TextLabel>("Orvalen"));
}

TEST(QuenmarkLogo, isBuiltIn)
{
    const auto logo = loadQuenmarkLogo();
    ASSERT_TRUE(logo);
    EXPECT_EQ(logo->size(), QSize(112, 112));
}

TEST(QuenmarkLogo, theFirstFileThatHoldsAPictureCounts)
{
    const QTemporaryDir folder;
    const auto file = [&folder](const char *name) { return folder.filePath(name); };
    const auto save = [&file](const char *name, Qt::GlobalColor color) {
        QImage image(3, 3, QImage::Format_RGB32);
        image.fill(color);
        EXPECT_TRUE(image.save(file(name), "png"));
    };
    save("red.png", Qt::red);
    save("blue.png", Qt::blue);
    QFile broken(file("broken.png"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("no picture");
    broken.close();
    const auto colorOf = [](const QStringList &files) {
        const auto picture = firstPicture(files);
        return picture ? picture->pixelColor(1, 1) : QColor();
    };
    EXPECT_EQ(colorOf({file("red.png"), file("blue.png")}), QColor(Qt::red));
    EXPECT_EQ(colorOf({file("blue.png"), file("red.png")}), QColor(Qt::blue));
    EXPECT_EQ(colorOf({file("no-such.png"), file("broken.png"), file("blue.png"), file("red.png")}), QColor(Qt::blue));
    EXPECT_FALSE(firstPicture({":/no-such.png", "assets/no-such.png"}));
}

TEST(QuenmarkLogo, isSoughtInTheProgramFirstAndThenBesideItsSources)
{
    EXPECT_EQ(quenmarkLogoFiles(), (QStringList{":/quenmark-logo.png", "assets/quenmark-logo.png"}));
}

TEST(QuenmarkLogo, keepsItsShapeInTheMiddleOfTheSquare)
{
    QImage wide(40, 20, QImage::Format_RGB32);
    wide.fill(Qt::red);
    const std::unique_ptr<QWidget> view(logoView(wide, 28));
    view->resize(28, 28);
    for (int time = 0; time < 2; ++time) {
        const auto drawn = view->grab().toImage();
        const double scale = drawn.devicePixelRatio();
        const auto colourAt = [&](int x, int y) {
            return drawn.pixelColor(static_cast<int>(x * scale), static_cast<int>(y * scale));
        };
        EXPECT_EQ(colourAt(14, 14), QColor(Qt::red));
        EXPECT_EQ(colourAt(2, 9), QColor(Qt::red));
        EXPECT_EQ(colourAt(25, 18), QColor(Qt::red));
        EXPECT_NE(colourAt(14, 3), QColor(Qt::red));
        EXPECT_NE(colourAt(14, 24), QColor(Qt::red));
    }
}

TEST(QuenmarkLogo, aShieldStandsInForIt)
{
    const std::unique_ptr<QWidget> view(logoView(std::nullopt, 28));
    const auto *shield = qobject_cast<SymbolLabel *>(view.get());
    ASSERT_TRUE(shield);
    EXPECT_EQ(shield->symbol(), "shield.lefthalf.filled");
    EXPECT_EQ(shield->shade(), accent::blue.vivid);
    EXPECT_EQ(shield->sizeHint(), QSize(28, 28));

    view->resize(28, 28);
    const auto drawn = view->grab().toImage();
    const auto backdrop = over(accent::blue.vivid.at(35).in(*view), view->palette().color(QPalette::Window));
    EXPECT_NEAR(drawn.pixelColor(14, 2).red(), backdrop.red(), 2);
    EXPECT_NEAR(drawn.pixelColor(14, 2).blue(), backdrop.blue(), 2);
}

} // namespace
} // namespace orvalen
