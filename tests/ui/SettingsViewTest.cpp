#include "ui/SettingsView.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include "core/MakerSite.h"
#include "tests/ui/Reading.h"
#include "ui/SettingsRules.h"

namespace orvalen {
namespace {

using namespace kit;
using test::cardsOf;
using test::contentOf;
using test::Dashboard;
using test::FakeMachine;
using test::Lettering;
using test::letteringOf;
using test::onlyIn;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString targetTitle = "Target Bridge Temperature";
const QString idleTitle = "Idle Sleep Timeout";

constexpr QFont::Weight normal = QFont::Normal;
constexpr QFont::Weight semibold = QFont::DemiBold;

TEST(SettingsRules, theTargetHasOneDecimalAndItsUnit)
{
    EXPECT_EQ(SettingsRules::targetValue(40.0), "40.0 °C");
    EXPECT_EQ(SettingsRules::targetValue(38.5), "38.5 °C");
    EXPECT_EQ(SettingsRules::targetValue(45.3), "45.3 °C");
    EXPECT_EQ(SettingsRules::targetValue(40.25), "40.2 °C"); // as the C library rounds
    EXPECT_EQ(SettingsRules::targetValue(-3.14), "-3.1 °C");
}

TEST(SettingsRules, theTimeoutIsCutOffToWholeMinutes)
{
    EXPECT_EQ(SettingsRules::idleTimeoutValue(3.0), "3 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(1.0), "1 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(9.9), "9 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(0.7), "0 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(-2.5), "-2 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(1440.0), "1440 mins");
}

TEST(SettingsRules, aTimeoutThatNoNumberOfMinutesCanHoldIsShownAsTheLargest)
{
    EXPECT_EQ(SettingsRules::idleTimeoutValue(1e300), "9223372036854775807 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(-1e300), "-9223372036854775808 mins");
}

TEST(SettingsRules, theSlidersOfferThirteenTemperaturesAndTenTimes)
{
    constexpr auto target = SettingsRules::targetScale;
    EXPECT_EQ(target.steps() + 1, 13);
    EXPECT_EQ(target.at(0.0), 38.0);
    EXPECT_EQ(target.moved(38.0, 1), 38.5);
    EXPECT_EQ(target.at(1.0), 44.0);
    constexpr auto idle = SettingsRules::idleTimeoutScale;
    EXPECT_EQ(idle.steps() + 1, 10);
    EXPECT_EQ(idle.at(0.0), 1.0);
    EXPECT_EQ(idle.moved(1.0, 1), 2.0);
    EXPECT_EQ(idle.at(1.0), 10.0);
}

/// What a person finds and does in one tab "Settings".
struct Tab
{
    explicit Tab(const QWidget &window) : view(*window.findChild<SettingsView *>()) {}

    [[nodiscard]] Slider &slider(const QString &name) const
    {
        for (auto *slider : view.findChildren<Slider *>()) {
            if (slider->accessibleName() == name)
                return *slider;
        }
        ADD_FAILURE() << "no slider " << name.toStdString();
        std::abort();
    }
    [[nodiscard]] Slider &target() const { return slider(targetTitle); }
    [[nodiscard]] Slider &idle() const { return slider(idleTitle); }
    [[nodiscard]] Toggle &toggle(const QString &name) const
    {
        for (auto *toggle : view.findChildren<Toggle *>()) {
            if (toggle->accessibleName() == name)
                return *toggle;
        }
        ADD_FAILURE() << "no switch " << name.toStdString();
        std::abort();
    }

    /// The values beside the titles.
    [[nodiscard]] std::string targetShown() const { return after(targetTitle); }
    [[nodiscard]] std::string idleShown() const { return after(idleTitle); }

    static void press(Slider &slider, Qt::Key key)
    {
        slider.setFocus();
        QTest::keyClick(&slider, key);
    }

    SettingsView &view;

private:
    [[nodiscard]] std::string after(const QString &title) const
    {
        const auto all = contentOf(view);
        const auto found = std::find(all.begin(), all.end(), title.toStdString());
        return found == all.end() ? std::string() : *(found + 1);
    }
};

/// Shows a window with the tab chosen.
Tab opened(AppState &state, QWidget &window)
{
    state.selectedTab = 3;
    window.show();
    window.activateWindow();
    Dashboard::settle();
    return Tab(window);
}

/// The tab of a program that has just started on a machine on which nothing has been set.
struct Settings : ::testing::Test, Dashboard
{
    Tab tab = opened(state, window);
    std::vector<std::string> &writes = machine.settings.writes;
};

/// The next start of the program, with what has been kept.
struct NextStart
{
    explicit NextStart(Dashboard &before)
        : state(before.machine.stateServices(before.engine)),
          window({state, before.webServer, before.usbManager, before.caffeine, before.machine.urls,
                  before.services.report}),
          tab(opened(state, window))
    {
    }

    AppState state;
    MainView window;
    Tab tab;
};

TEST_F(Settings, standInFiveCards)
{
    const auto cards = cardsOf(tab.view);
    ASSERT_EQ(cards.size(), 5u);
    test::expectStandsInOrder(cards, tab.view);
    EXPECT_THAT(contentOf(*cards[0]),
                ElementsAre("Automations & Feedback", "Auto-Warmup on Charger Plug-In",
                            "Immediately primes display when USB-C charger is connected.", "(switch)",
                            "Audio Chimes & Sound Feedback",
                            "Plays audio signals when warmup starts and display is ready.", "(switch)"));
    EXPECT_THAT(contentOf(*cards[1]),
                ElementsAre("[command.square.fill]", "Emergency Blind Hotkey:",
                            "Press anytime (even on a pitch-black screen) to trigger instant warm-up with audio "
                            "chimes.",
                            "⌘ + ⌥ + W"));
    EXPECT_THAT(contentOf(*cards[2]),
                ElementsAre("Target Bridge Temperature", "40.0 °C", "(slider)",
                            "Recommended: 39.5°C – 41.0°C. Safely bridges connection without excess heat."));
    EXPECT_THAT(contentOf(*cards[3]),
                ElementsAre("Idle Sleep Timeout", "3 mins", "(slider)",
                            "If no keyboard/mouse input is detected for this duration, Orvalen stands down to save "
                            "battery."));
    const std::string site(siteName(makerSite));
    const std::string tools(siteName(makerToolsSite));
    EXPECT_THAT(contentOf(*cards[4]),
                ElementsAre("Quenmark Technologies", "Hardware & Software Intelligence",
                            "Orvalen is crafted by Quenmark Technologies to solve Apple Silicon thermal bridge and "
                            "display interconnect sensitivity.",
                            "[safari.fill] " + site + " ↗ (link)", "[globe] " + tools + " ↗ (link)"));
}

TEST_F(Settings, areSetInTheStatedTypeAndColours)
{
    const auto setAs = [this](const QString &words) { return letteringOf(tab.view, words); };
    EXPECT_EQ(setAs("Automations & Feedback"), (Lettering{13, semibold, neutral::text}));
    EXPECT_EQ(setAs(targetTitle), (Lettering{13, semibold, neutral::text}));
    EXPECT_EQ(setAs(idleTitle), (Lettering{13, semibold, neutral::text}));
    EXPECT_EQ(setAs("40.0 °C"), (Lettering{13, semibold, accent::blue.ink}));
    EXPECT_EQ(setAs("3 mins"), (Lettering{13, semibold, accent::purple.ink}));
    for (const auto *text : tab.view.findChildren<TextLabel *>()) {
        const bool isExplanation = text->text().endsWith('.') || text->text() == "Hardware & Software Intelligence";
        EXPECT_EQ(text->shade() == neutral::secondary, isExplanation) << text->text().toStdString();
    }
    const auto &key = onlyIn<SymbolLabel>(tab.view);
    EXPECT_EQ(key.geometry().size(), QSize(24, 24));
    EXPECT_EQ(key.shade(), accent::blue.vivid);
    EXPECT_EQ(tab.target().accent(), accent::blue);
    EXPECT_EQ(tab.idle().accent(), accent::purple);
}

TEST_F(Settings, theValuesStandAtTheEndOfTheirLines)
{
    for (const auto &value : {"40.0 °C", "3 mins"}) {
        const auto *label = findIn<TextLabel>(tab.view, value);
        const auto *line = label->parentWidget();
        EXPECT_EQ(label->geometry().right(), line->rect().right()) << value;
    }
}

TEST_F(Settings, theKeyBadgeOnlyInforms)
{
    auto *badge = findIn<Badge>(tab.view, "⌘ + ⌥ + W");
    ASSERT_TRUE(badge);
    EXPECT_EQ(badge->accent(), accent::blue);
    EXPECT_EQ(badge->focusPolicy(), Qt::NoFocus);
    QTest::mouseClick(badge, Qt::LeftButton);
    EXPECT_THAT(engine.targets, IsEmpty());
    EXPECT_THAT(writes, IsEmpty());

    const auto drawn = window.grab().toImage().pixelColor(badge->mapTo(&window, QPoint(badge->width() / 2, 1)));
    test::expectColour(drawn, over(accent::blue.vivid.at(12).in(window), neutral::card.in(window)));
}

TEST_F(Settings, theMakersMarkIsThePictureInASquareOf22)
{
    const auto &about = *cardsOf(tab.view).back();
    QWidget *mark = nullptr;
    for (auto *widget : about.findChildren<QWidget *>()) {
        if (widget->size() == QSize(22, 22))
            mark = widget;
    }
    ASSERT_TRUE(mark);
    EXPECT_LT(mark->mapTo(&about, QPoint(0, 0)).x(),
              findIn<TextLabel>(about, "Quenmark Technologies")->mapTo(&about, QPoint(0, 0)).x());
    const auto drawn = mark->grab().toImage();
    const auto first = drawn.pixelColor(0, 0);
    int others = 0;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x)
            others += drawn.pixelColor(x, y) != first;
    }
    EXPECT_GT(others, 22 * 22 / 2);
    EXPECT_THAT(about.findChildren<SymbolLabel *>(), IsEmpty()); // no stand-in beside it
}

TEST_F(Settings, theLinksOpenTheMakersSites)
{
    test::followLinks(tab.view);
    EXPECT_THAT(machine.urls.opened, ElementsAre(std::string(makerSite), std::string(makerToolsSite)));
}

TEST_F(Settings, theSwitchesAreTheirSettingsBothWays)
{
    const std::vector<std::tuple<QString, Published<bool> *, std::string>> all{
        {"Auto-Warmup on Charger Plug-In", &state.autoWarmupOnCharger, "autoWarmupOnCharger"},
        {"Audio Chimes & Sound Feedback", &state.soundFeedbackEnabled, "soundFeedbackEnabled"},
    };
    for (const auto &[name, setting, key] : all) {
        writes.clear();
        auto &toggle = tab.toggle(name);
        EXPECT_TRUE(toggle.isChecked());
        QTest::mouseClick(&toggle, Qt::LeftButton);
        EXPECT_FALSE(*setting);
        EXPECT_THAT(writes, ElementsAre(key + "=false"));
        toggle.setFocus();
        QTest::keyClick(&toggle, Qt::Key_Space);
        EXPECT_TRUE(*setting);
        EXPECT_THAT(writes, ElementsAre(key + "=false", key + "=true"));

        writes.clear();
        *setting = false; // elsewhere
        EXPECT_FALSE(toggle.isChecked());
        *setting = true;
        EXPECT_TRUE(toggle.isChecked());
        EXPECT_THAT(writes, ElementsAre(key + "=false", key + "=true")); // once each: the switch adds nothing
    }
    EXPECT_TRUE(state.smartModeEnabled);
}

TEST_F(Settings, theSwitchesAreBlueWhileOn)
{
    auto &toggle = tab.toggle("Audio Chimes & Sound Feedback");
    const auto trackColour = [&toggle](int x) { return toggle.grab().toImage().pixelColor(x, toggle.height() / 2); };
    EXPECT_EQ(trackColour(8), accent::blue.solid.in(toggle));
    state.soundFeedbackEnabled = false;
    EXPECT_EQ(trackColour(toggle.width() - 8), neutral::groove.in(toggle));
}

TEST_F(Settings, aSwitchSaysWhatItIsFor)
{
    const auto *accessible = QAccessible::queryAccessibleInterface(&tab.toggle("Auto-Warmup on Charger Plug-In"));
    EXPECT_EQ(accessible->text(QAccessible::Description),
              "Immediately primes display when USB-C charger is connected.");
}

TEST_F(Settings, theTargetIsKeptAtEveryStep)
{
    for (const auto key : {Qt::Key_Right, Qt::Key_PageUp, Qt::Key_End, Qt::Key_Left, Qt::Key_Home})
        Tab::press(tab.target(), key);
    EXPECT_THAT(writes,
                ElementsAre("targetTemp=40.5", "targetTemp=41.5", "targetTemp=44", "targetTemp=43.5", "targetTemp=38"));
    EXPECT_EQ(state.targetTemp, 38.0);
    EXPECT_EQ(tab.targetShown(), "38.0 °C");
}

TEST_F(Settings, theTimeoutIsKeptAtEveryStep)
{
    for (const auto key : {Qt::Key_Up, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Down, Qt::Key_Home})
        Tab::press(tab.idle(), key);
    EXPECT_THAT(writes, ElementsAre("idleTimeoutMinutes=4", "idleTimeoutMinutes=2", "idleTimeoutMinutes=10",
                                    "idleTimeoutMinutes=9", "idleTimeoutMinutes=1"));
    EXPECT_EQ(state.idleTimeoutMinutes, 1.0);
    EXPECT_EQ(tab.idleShown(), "1 mins");
}

TEST_F(Settings, theTargetTakesThirteenValues)
{
    std::vector<std::string> shown;
    Tab::press(tab.target(), Qt::Key_Home);
    for (int i = 0; i < 13; ++i) {
        shown.push_back(tab.targetShown());
        Tab::press(tab.target(), Qt::Key_Right);
    }
    EXPECT_THAT(shown, ElementsAre("38.0 °C", "38.5 °C", "39.0 °C", "39.5 °C", "40.0 °C", "40.5 °C", "41.0 °C",
                                   "41.5 °C", "42.0 °C", "42.5 °C", "43.0 °C", "43.5 °C", "44.0 °C"));
    EXPECT_EQ(tab.targetShown(), "44.0 °C");
}

TEST_F(Settings, theTimeoutTakesTenValues)
{
    std::vector<std::string> shown;
    Tab::press(tab.idle(), Qt::Key_Home);
    for (int i = 0; i < 10; ++i) {
        shown.push_back(tab.idleShown());
        Tab::press(tab.idle(), Qt::Key_Right);
    }
    EXPECT_THAT(shown, ElementsAre("1 mins", "2 mins", "3 mins", "4 mins", "5 mins", "6 mins", "7 mins", "8 mins",
                                   "9 mins", "10 mins"));
    EXPECT_EQ(tab.idleShown(), "10 mins");
}

TEST_F(Settings, aClickOnASliderIsKeptAtOnce)
{
    auto &target = tab.target();
    QTest::mouseClick(&target, Qt::LeftButton, {}, QPoint(target.width() - 2, target.height() / 2));
    QTest::mouseClick(&tab.idle(), Qt::LeftButton, {}, QPoint(1, tab.idle().height() / 2));
    EXPECT_THAT(writes, ElementsAre("targetTemp=44", "idleTimeoutMinutes=1"));
}

TEST_F(Settings, theSlidersFollowWhatIsSetElsewhere)
{
    const auto before = tab.target().grab().toImage();
    state.targetTemp = 42.0;
    state.idleTimeoutMinutes = 7.0;
    EXPECT_EQ(tab.target().value(), 42.0);
    EXPECT_NE(tab.target().grab().toImage(), before);
    EXPECT_EQ(tab.targetShown(), "42.0 °C");
    EXPECT_EQ(tab.idle().value(), 7.0);
    EXPECT_EQ(tab.idleShown(), "7 mins");
    EXPECT_THAT(writes, ElementsAre("targetTemp=42", "idleTimeoutMinutes=7"));
    Tab::press(tab.idle(), Qt::Key_Right); // goes on from there
    EXPECT_EQ(state.idleTimeoutMinutes, 8.0);
}

TEST_F(Settings, theNextWarmupGoesToTheTargetOfTheMoment)
{
    Tab::press(tab.target(), Qt::Key_End);
    state.triggerWarmup();
    Tab::press(tab.target(), Qt::Key_Home);
    EXPECT_THAT(engine.targets, ElementsAre(44.0));
}

TEST_F(Settings, theWheelScrollsTheTabUntilASliderHasTheKeyboard)
{
    window.resize(815, 560);
    settle();
    QScrollArea *area = nullptr;
    for (QWidget *widget = &tab.view; widget && !area; widget = widget->parentWidget())
        area = qobject_cast<QScrollArea *>(widget);
    area->parentWidget()->setFixedHeight(200);
    settle();
    test::turnWheel(tab.target(), test::notchDown);
    EXPECT_THAT(writes, IsEmpty());
    EXPECT_GT(area->verticalScrollBar()->value(), 0);
    tab.target().setFocus(); // scrolls it into view
    const int further = area->verticalScrollBar()->value();
    test::turnWheel(tab.target(), test::notchDown);
    EXPECT_THAT(writes, ElementsAre("targetTemp=39.5"));
    EXPECT_EQ(area->verticalScrollBar()->value(), further);
}

TEST_F(Settings, readersSayTheSlidersAsPeopleReadThem)
{
    const auto *target = QAccessible::queryAccessibleInterface(&tab.target());
    EXPECT_EQ(target->text(QAccessible::Name), targetTitle);
    EXPECT_EQ(target->text(QAccessible::Value), "40.0 °C");
    EXPECT_EQ(target->text(QAccessible::Description),
              "Recommended: 39.5°C – 41.0°C. Safely bridges connection without excess heat.");
    auto *idle = QAccessible::queryAccessibleInterface(&tab.idle());
    EXPECT_EQ(idle->text(QAccessible::Value), "3 mins");
    EXPECT_EQ(idle->valueInterface()->minimumValue(), 1.0);
    EXPECT_EQ(idle->valueInterface()->maximumValue(), 10.0);
    EXPECT_EQ(idle->valueInterface()->minimumStepSize(), 1.0);
    idle->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_THAT(writes, ElementsAre("idleTimeoutMinutes=4"));
    EXPECT_EQ(idle->text(QAccessible::Value), "4 mins");
}

TEST_F(Settings, theKeyboardWalksThroughInReadingOrder)
{
    findIn<Control>(window, "Settings")->setFocus(Qt::TabFocusReason);
    std::vector<std::string> visited;
    for (int i = 0; i < 6; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const auto *accessible = QAccessible::queryAccessibleInterface(QApplication::focusWidget());
        visited.push_back(accessible->text(QAccessible::Name).toStdString());
    }
    EXPECT_THAT(visited,
                ElementsAre("Auto-Warmup on Charger Plug-In", "Audio Chimes & Sound Feedback",
                            "Target Bridge Temperature", "Idle Sleep Timeout", std::string(siteName(makerSite)) + " ↗",
                            std::string(siteName(makerToolsSite)) + " ↗"));
}

TEST_F(Settings, areThereAgainAtTheNextStart)
{
    Tab::press(tab.target(), Qt::Key_Right);
    Tab::press(tab.idle(), Qt::Key_End);
    QTest::mouseClick(&tab.toggle("Audio Chimes & Sound Feedback"), Qt::LeftButton);
    const NextStart next(*this);
    EXPECT_EQ(next.tab.targetShown(), "40.5 °C");
    EXPECT_EQ(next.tab.idleShown(), "10 mins");
    EXPECT_FALSE(next.tab.toggle("Audio Chimes & Sound Feedback").isChecked());
    EXPECT_TRUE(next.tab.toggle("Auto-Warmup on Charger Plug-In").isChecked());
}

TEST_F(Settings, letGoOfTheStateWithTheirWindow)
{
    const auto followers = [this] {
        return state.targetTemp.subscriberCount() + state.idleTimeoutMinutes.subscriberCount() +
               state.autoWarmupOnCharger.subscriberCount() + state.soundFeedbackEnabled.subscriberCount();
    };
    const auto before = followers();
    {
        const SettingsView another(state, machine.urls);
        EXPECT_GT(followers(), before);
    }
    EXPECT_EQ(followers(), before);
}

/// A setting that was written elsewhere, and what is shown for it.
struct Stored
{
    std::string key;
    std::string value;
    std::string shown;
    double number;
    double stepUp;   // the first one
    double stepDown; // the first one
};

struct StoredSetting : Settings, ::testing::WithParamInterface<Stored>
{
    StoredSetting() { machine.settings.values = {{GetParam().key, GetParam().value}}; }

    [[nodiscard]] bool isTarget() const { return GetParam().key == "targetTemp"; }
    [[nodiscard]] Slider &slider(const Tab &in) const { return isTarget() ? in.target() : in.idle(); }
    [[nodiscard]] std::string shown(const Tab &in) const { return isTarget() ? in.targetShown() : in.idleShown(); }
};

TEST_P(StoredSetting, isShownAsItIsAndLeftAlone)
{
    const auto kept = machine.settings.values;
    NextStart next(*this);
    const auto expectUntouched = [&](const char *after) {
        EXPECT_EQ(shown(next.tab), GetParam().shown) << after;
        EXPECT_EQ(slider(next.tab).value(), GetParam().number) << after;
        EXPECT_EQ(isTarget() ? next.state.targetTemp : next.state.idleTimeoutMinutes, GetParam().number) << after;
        EXPECT_THAT(writes, IsEmpty()) << after;
        EXPECT_EQ(machine.settings.values, kept) << after;
    };
    expectUntouched("opening the tab");

    for (const int width : {815, 1600, 1000}) {
        next.window.resize(width, 560);
        settle();
    }
    expectUntouched("resizing");

    findIn<Control>(next.window, "Settings")->setFocus(Qt::TabFocusReason);
    for (int i = 0; i < 6; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    expectUntouched("walking through");

    for (const int tag : {0, 1, 3}) {
        next.state.selectedTab = tag;
        settle();
    }
    next.window.hide();
    next.window.show();
    settle();
    expectUntouched("coming back");

    next.window.setLayoutDirection(Qt::RightToLeft);
    settle();
    next.window.setLayoutDirection(Qt::LeftToRight);
    settle();
    expectUntouched("mirroring");

    test::turnWheel(slider(next.tab), test::notchDown); // without the keyboard on it
    machine.world.advance(std::chrono::seconds(30));
    expectUntouched("a while");
}

TEST_P(StoredSetting, comesToAPlaceWithTheFirstStepOfAPerson)
{
    const auto keep = [this](Qt::Key key) {
        machine.settings.values = {{GetParam().key, GetParam().value}};
        const NextStart next(*this);
        Tab::press(slider(next.tab), key);
        return slider(next.tab).value();
    };
    EXPECT_EQ(keep(Qt::Key_Right), GetParam().stepUp);
    EXPECT_EQ(keep(Qt::Key_Left), GetParam().stepDown);
}

INSTANTIATE_TEST_SUITE_P(WrittenElsewhere, StoredSetting,
                         ::testing::Values(Stored{"targetTemp", "45.3", "45.3 °C", 45.3, 45.3, 44.0},
                                           Stored{"targetTemp", "40.2", "40.2 °C", 40.2, 40.5, 40.0},
                                           Stored{"targetTemp", "36.9", "36.9 °C", 36.9, 38.0, 36.9},
                                           Stored{"idleTimeoutMinutes", "9.9", "9 mins", 9.9, 10.0, 9.0},
                                           Stored{"idleTimeoutMinutes", "30", "30 mins", 30.0, 30.0, 10.0},
                                           Stored{"idleTimeoutMinutes", "0.5", "0 mins", 0.5, 1.0, 0.5}),
                         [](const auto &one) {
                             auto name = one.param.key + "_" + one.param.value;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

} // namespace
} // namespace orvalen
