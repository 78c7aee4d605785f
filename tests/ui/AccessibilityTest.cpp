#include <gmock/gmock.h>

#include <QAccessible>
#include <QTest>

#include "tests/ui/Dashboard.h"
#include "ui/CenterDashboardView.h"
#include "ui/TemperatureReadout.h"
#include "ui/kit/FocusRing.h"
#include "ui/kit/TabButton.h"

namespace orvalen {
namespace {

using namespace kit;
using test::Dashboard;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

struct Accessibility : ::testing::Test, Dashboard
{
    Accessibility()
    {
        show();
        window.activateWindow();
        settle();
    }

    QAccessibleInterface &accessible(const QString &name) const
    {
        return *QAccessible::queryAccessibleInterface(find(name));
    }
    static QString nameOf(QObject *widget)
    {
        const auto *interface = QAccessible::queryAccessibleInterface(widget);
        return interface ? interface->text(QAccessible::Name) : QString();
    }
    std::string focused() const { return nameOf(QApplication::focusWidget()).toStdString(); }
    void press(Qt::Key key)
    {
        auto *target = QApplication::focusWidget();
        QTest::keyClick(target ? target : &window, key);
        settle();
    }
    FocusRing &ring() const { return *window.findChild<FocusRing *>(); }
};

TEST_F(Accessibility, rolesSayWhatThingsAre)
{
    EXPECT_EQ(accessible("Autonomous Thermal Shield").role(), QAccessible::StaticText); // the text beside the switch
    const auto *toggle = QAccessible::queryAccessibleInterface(window.findChild<Toggle *>());
    EXPECT_EQ(toggle->role(), QAccessible::CheckBox);
    EXPECT_EQ(toggle->text(QAccessible::Name), "Autonomous Thermal Shield");
    EXPECT_EQ(toggle->text(QAccessible::Description), "Auto-heats on wake, sleeps when away");
    EXPECT_TRUE(toggle->state().checkable);
    EXPECT_TRUE(toggle->state().checked);

    EXPECT_EQ(accessible("Trigger Prime Warmup Now").role(), QAccessible::Button);
    EXPECT_EQ(accessible("Quenmark Technologies").role(), QAccessible::Link);
    EXPECT_EQ(accessible("Settings").role(), QAccessible::PageTab);
    EXPECT_TRUE(accessible("Dashboard").state().selected);
    EXPECT_FALSE(accessible("Settings").state().selected);
    EXPECT_EQ(accessible("STANDBY").role(), QAccessible::StaticText);
    EXPECT_EQ(accessible("0.0°C").role(), QAccessible::StaticText);
}

TEST_F(Accessibility, readingsSayWhatTheyAreOf)
{
    setBridge(40.4, 46.2);
    EXPECT_EQ(accessible("46.2°C").text(QAccessible::Description), "Apple Silicon SoC");
    EXPECT_EQ(
        QAccessible::queryAccessibleInterface(window.findChild<TemperatureReadout *>())->text(QAccessible::Description),
        "DISPLAY BRIDGE TEMPERATURE");
}

TEST_F(Accessibility, whatAReaderPressesIsPressed)
{
    accessible("Settings").actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(state.selectedTab, 3);
    state.selectedTab = 0;
    accessible("Trigger Prime Warmup Now").actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(engine.targets.size(), 1u);
    auto *toggle = QAccessible::queryAccessibleInterface(window.findChild<Toggle *>());
    EXPECT_TRUE(toggle->actionInterface()->actionNames().contains(QAccessibleActionInterface::toggleAction()));
    toggle->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(state.smartModeEnabled);
}

TEST_F(Accessibility, tabWalksThroughEverythingInReadingOrderAndBack)
{
    EXPECT_EQ(QApplication::focusWidget(), &window); // no control before it is asked for
    std::vector<std::string> visited;
    for (int i = 0; i < 9; ++i) {
        press(Qt::Key_Tab);
        visited.push_back(focused());
    }
    EXPECT_THAT(visited,
                ElementsAre("Quenmark Technologies", "Prevent sleep", "Dashboard", "Screen Clone", "Diagnostics",
                            "Power & Tools", "Settings", "Trigger Prime Warmup Now", "Autonomous Thermal Shield"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(focused(), "Trigger Prime Warmup Now");
}

TEST_F(Accessibility, arrowsGoFromTabToTab)
{
    find("Dashboard")->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Left); // the first one: stays
    EXPECT_EQ(state.selectedTab, 0);
    press(Qt::Key_Right);
    EXPECT_EQ(focused(), "Screen Clone");
    EXPECT_EQ(state.selectedTab, 4);
    press(Qt::Key_Right);
    EXPECT_EQ(state.selectedTab, 1);
    press(Qt::Key_Left);
    EXPECT_EQ(state.selectedTab, 4);
}

TEST_F(Accessibility, arrowsGoTheOtherWayWhereReadingDoes)
{
    window.setLayoutDirection(Qt::RightToLeft);
    settle();
    EXPECT_GT(find("Dashboard")->x(), find("Settings")->x());
    find("Dashboard")->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Left);
    EXPECT_EQ(state.selectedTab, 4);
}

TEST_F(Accessibility, spaceAndEnterPress)
{
    auto *toggle = window.findChild<Toggle *>();
    toggle->setFocus();
    press(Qt::Key_Space);
    EXPECT_FALSE(state.smartModeEnabled);
    press(Qt::Key_Return);
    EXPECT_TRUE(state.smartModeEnabled);
    find("Quenmark Technologies")->setFocus();
    press(Qt::Key_Enter);
    EXPECT_EQ(machine.urls.opened.size(), 1u);
    find("Settings")->setFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(state.selectedTab, 3);
}

TEST_F(Accessibility, theRingIsSeenAfterKeyboardUseOnly)
{
    find("Settings")->setFocus();
    settle();
    EXPECT_FALSE(ring().isVisible());
    press(Qt::Key_Tab);
    auto *button = QApplication::focusWidget();
    ASSERT_TRUE(ring().isVisible());
    EXPECT_EQ(ring().geometry().center(),
              QRect(button->mapTo(ring().parentWidget(), QPoint(0, 0)), button->size()).center());
    QTest::mouseClick(find("Orvalen"), Qt::LeftButton);
    EXPECT_FALSE(ring().isVisible());
}

TEST_F(Accessibility, theRingGoesWithItsControl)
{
    find("Settings")->setFocus();
    press(Qt::Key_Tab);
    window.resize(1500, 700);
    settle();
    auto *button = QApplication::focusWidget();
    EXPECT_EQ(ring().width(), button->width() + 8);
    button->hide(); // the keyboard goes on to another control
    settle();
    auto *next = QApplication::focusWidget();
    ASSERT_NE(next, button);
    const QRect place(next->mapTo(ring().parentWidget(), QPoint(0, 0)), next->size());
    EXPECT_TRUE(place.adjusted(-4, -4, 4, 4).contains(ring().geometry()));
}

TEST_F(Accessibility, everythingThatCanBePressedIsLargeEnough)
{
    for (const int width : {815, 1000}) {
        window.resize(width, 680);
        settle();
        for (const auto *control : window.findChildren<Control *>()) {
            EXPECT_GE(control->width(), 24) << nameOf(const_cast<Control *>(control)).toStdString();
            EXPECT_GE(control->height(), 24) << nameOf(const_cast<Control *>(control)).toStdString();
        }
    }
}

TEST_F(Accessibility, theFocusedControlScrollsIntoView)
{
    window.resize(815, 560);
    settle();
    auto *toggle = window.findChild<Toggle *>();
    auto *page = toggle->parentWidget();
    while (!page->inherits("QScrollArea"))
        page = page->parentWidget();
    page->parentWidget()->setFixedHeight(150);
    settle();
    find("Trigger Prime Warmup Now")->setFocus();
    press(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), toggle);
    const QRect place(toggle->mapTo(page, QPoint(0, 0)), toggle->size());
    EXPECT_TRUE(page->rect().contains(place));
}

// What screen readers are told.
struct Announcements : Accessibility
{
    Announcements()
    {
        const auto note = [this](const QString &words) { diary.push_back(words.toStdString()); };
        QObject::connect(window.findChild<Badge *>(), &Badge::announced, &window, note);
        QObject::connect(window.findChild<CallToAction *>(), &CallToAction::announced, &window, note);
    }
    std::vector<std::string> taken()
    {
        settle();
        return std::exchange(diary, {});
    }
    std::vector<std::string> diary;
};

TEST_F(Announcements, aNewStateIsSaidOnceEachTime)
{
    machine.sensors.set(40.5);
    EXPECT_THAT(taken(), IsEmpty());
    state.triggerWarmup();
    EXPECT_THAT(taken(), UnorderedElementsAre("WARMING UP", "Optimizing Gate Drivers (0%)..."));
    engine.complete(40.5); // passes through "STANDBY", since the reading comes after the end
    EXPECT_THAT(taken(), UnorderedElementsAre("PROTECTED", "Trigger Prime Warmup Now"));
    setBridge(41.0);
    EXPECT_THAT(taken(), IsEmpty());
    setBridge(39.0);
    EXPECT_THAT(taken(), ElementsAre("STANDBY"));
}

TEST_F(Announcements, progressIsSaidByQuarters)
{
    state.triggerWarmup();
    taken();
    std::vector<std::string> said;
    for (int percent = 1; percent <= 100; ++percent) {
        engine.reportProgress(38.0, percent / 100.0);
        for (auto &entry : taken())
            said.push_back(std::move(entry));
    }
    EXPECT_THAT(said, ElementsAre("Optimizing Gate Drivers (25%)...", "Optimizing Gate Drivers (50%)...",
                                  "Optimizing Gate Drivers (75%)...", "Optimizing Gate Drivers (100%)..."));
}

} // namespace
} // namespace orvalen
