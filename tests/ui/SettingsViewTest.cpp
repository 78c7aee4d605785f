#include "ui/SettingsView.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include "core/MakerSite.h"
#include "tests/ui/SettingsTab.h"

namespace orvalen {
namespace {

using namespace kit;
using test::cardsOf;
using test::contentOf;
using test::idleTitle;
using test::Lettering;
using test::letteringOf;
using test::NextStart;
using test::onlyIn;
using test::Settings;
using test::SettingsTab;
using test::targetTitle;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr QFont::Weight semibold = QFont::DemiBold;

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
        SettingsTab::press(tab.target(), key);
    EXPECT_THAT(writes,
                ElementsAre("targetTemp=40.5", "targetTemp=41.5", "targetTemp=44", "targetTemp=43.5", "targetTemp=38"));
    EXPECT_EQ(state.targetTemp, 38.0);
    EXPECT_EQ(tab.targetShown(), "38.0 °C");
}

TEST_F(Settings, theTimeoutIsKeptAtEveryStep)
{
    for (const auto key : {Qt::Key_Up, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Down, Qt::Key_Home})
        SettingsTab::press(tab.idle(), key);
    EXPECT_THAT(writes, ElementsAre("idleTimeoutMinutes=4", "idleTimeoutMinutes=2", "idleTimeoutMinutes=10",
                                    "idleTimeoutMinutes=9", "idleTimeoutMinutes=1"));
    EXPECT_EQ(state.idleTimeoutMinutes, 1.0);
    EXPECT_EQ(tab.idleShown(), "1 mins");
}

TEST_F(Settings, theTargetTakesThirteenValues)
{
    std::vector<std::string> shown;
    SettingsTab::press(tab.target(), Qt::Key_Home);
    for (int i = 0; i < 13; ++i) {
        shown.push_back(tab.targetShown());
        SettingsTab::press(tab.target(), Qt::Key_Right);
    }
    EXPECT_THAT(shown, ElementsAre("38.0 °C", "38.5 °C", "39.0 °C", "39.5 °C", "40.0 °C", "40.5 °C", "41.0 °C",
                                   "41.5 °C", "42.0 °C", "42.5 °C", "43.0 °C", "43.5 °C", "44.0 °C"));
    EXPECT_EQ(tab.targetShown(), "44.0 °C");
}

TEST_F(Settings, theTimeoutTakesTenValues)
{
    std::vector<std::string> shown;
    SettingsTab::press(tab.idle(), Qt::Key_Home);
    for (int i = 0; i < 10; ++i) {
        shown.push_back(tab.idleShown());
        SettingsTab::press(tab.idle(), Qt::Key_Right);
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
    SettingsTab::press(tab.idle(), Qt::Key_Right); // goes on from there
    EXPECT_EQ(state.idleTimeoutMinutes, 8.0);
}

TEST_F(Settings, theNextWarmupGoesToTheTargetOfTheMoment)
{
    SettingsTab::press(tab.target(), Qt::Key_End);
    state.triggerWarmup();
    SettingsTab::press(tab.target(), Qt::Key_Home);
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
    SettingsTab::press(tab.target(), Qt::Key_Right);
    SettingsTab::press(tab.idle(), Qt::Key_End);
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

} // namespace
} // namespace orvalen
