#include <gmock/gmock.h>

#include <QPointer>
#include <QScrollBar>
#include <QTest>

#include <algorithm>
#include <set>

#include "tests/ui/Reading.h"
#include "tests/ui/Scenes.h"
#include "ui/CenterDashboardView.h"
#include "ui/LeftSidebarAdView.h"
#include "ui/RightSidebarUtilityView.h"
#include "ui/kit/FocusRing.h"
#include "ui/kit/ScrollArea.h"

namespace orvalen {
namespace {

using namespace kit;
using test::Dashboard;
using test::nameOf;
using test::placeIn;
using test::Scene;
using test::tabs;
using ::testing::Contains;
using ::testing::ElementsAreArray;

using Names = std::vector<std::string>;

Names operator+(Names first, const Names &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const Names leftColumn{"See the plans", "Open the workshop", "Watch the channel"};
const Names header{"Quenmark Technologies", "Prevent sleep", "Dashboard", "Screen Clone",
                   "Diagnostics",           "Power & Tools", "Settings"};
const Names rightColumn{"⚡ Start Offline Stream", "Copy", "Displays & Mirroring", "Screen Recording Access",
                        "Talk to us ↗"};
const Names fullRightColumn{"Stop Offline Stream",     "Copy",        "Copy", "Displays & Mirroring",
                            "Screen Recording Access", "Talk to us ↗"};

/// What the keyboard reaches on a tab, in reading order.
Names controlsOf(int tab, bool isFull)
{
    switch (tab) {
    case 0:
        return {"Trigger Prime Warmup Now", "Autonomous Thermal Shield"};
    case 1:
        return {"Generate Technician Diagnostic Report"};
    case 2:
        return {"Visit Portal ↗", "Open ↗", "Open ↗", "Open ↗", "Open ↗", "See our services ↗"};
    case 3:
        return {"Auto-Warmup on Charger Plug-In",
                "Audio Chimes & Sound Feedback",
                "Target Bridge Temperature",
                "Idle Sleep Timeout",
                "quenmark.example ↗",
                "tools.quenmark.example ↗"};
    default:
        return isFull
                   ? Names{"Open Settings ↗",
                           "Stop Stream",
                           "Copy",
                           "Open",
                           "Copy",
                           "Refresh USB Status",
                           "Copy Link",
                           "Open Displays Settings ↗",
                           "Test Hotkey Voice"}
                   : Names{"Start Browser Cast", "Refresh USB Status", "Open Displays Settings ↗", "Test Hotkey Voice"};
    }
}

/// The same but for what a curve's soft edge takes away.
bool isAbout(QRgb one, QRgb other)
{
    const auto near = [](int a, int b) { return std::abs(a - b) <= 24; };
    return near(qRed(one), qRed(other)) && near(qGreen(one), qGreen(other)) && near(qBlue(one), qBlue(other));
}

Names orderOf(int tab, bool isFull)
{
    return leftColumn + header + controlsOf(tab, isFull) + (isFull ? fullRightColumn : rightColumn);
}

struct Keyboard : ::testing::Test, Dashboard
{
    Keyboard()
    {
        test::plain(*this);
        show();
        window.activateWindow();
        settle();
    }

    static std::multiset<std::string> namesOf(const std::set<const QWidget *> &widgets)
    {
        std::multiset<std::string> names;
        for (const auto *widget : widgets)
            names.insert(nameOf(widget));
        return names;
    }
    static std::string focused() { return nameOf(QApplication::focusWidget()); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        auto *target = QApplication::focusWidget();
        QTest::keyClick(target ? target : &window, key, modifiers);
        settle();
    }
    void goOn() { press(Qt::Key_Tab); }
    void goBack() { press(Qt::Key_Tab, Qt::ShiftModifier); }

    /// Calls `step` and `look` until what was met first is met again: the names of all that had the keyboard.
    Names walk(
        const std::function<void()> &step, const std::function<void()> &look = [] {})
    {
        constexpr std::size_t tooMany = 60;
        Names names;
        const QWidget *first = nullptr;
        while (names.size() < tooMany) {
            step();
            auto *now = QApplication::focusWidget();
            if (now == first)
                break;
            if (!first)
                first = now;
            names.push_back(nameOf(now));
            look();
        }
        return names;
    }
    void leaveAll()
    {
        window.setFocus();
        settle();
    }

    FocusRing &ring() const { return *window.findChild<FocusRing *>(); }
    [[nodiscard]] QRect placeOf(const QWidget &widget) const { return placeIn(window, widget); }

    /// The part of it that nothing around it cuts off.
    [[nodiscard]] QRect seenPartOf(const QWidget &widget) const
    {
        auto seen = placeOf(widget);
        for (const auto *around = widget.parentWidget(); around; around = around->parentWidget())
            seen &= placeOf(*around);
        return seen;
    }

    /// That the control with the keyboard is to be seen, all of it, in a ring of which nothing is missing.
    void expectInARing()
    {
        const auto *control = QApplication::focusWidget();
        EXPECT_EQ(seenPartOf(*control), placeOf(*control)) << focused();
        ASSERT_TRUE(ring().isVisible()) << focused();
        const auto place = placeOf(ring());
        EXPECT_EQ(seenPartOf(ring()), place) << focused();
        const auto *outlined = dynamic_cast<const Outlined *>(control);
        ASSERT_TRUE(outlined) << focused();
        EXPECT_EQ(place.adjusted(4, 4, -4, -4), outlined->outline().rect.translated(placeOf(*control).topLeft()))
            << focused();
        const auto picture = window.grab(place).toImage();
        const auto color = neutral::focusRing.in(window).rgb();
        const auto middle = picture.rect().center();
        for (const auto point : {QPoint(middle.x(), 0), QPoint(middle.x(), picture.height() - 1), QPoint(0, middle.y()),
                                 QPoint(picture.width() - 1, middle.y())})
            EXPECT_TRUE(isAbout(picture.pixel(point), color)) << focused() << " at " << point.x() << ", " << point.y();
    }
};

TEST_F(Keyboard, isWithNoControlBeforeItIsAskedFor)
{
    EXPECT_EQ(QApplication::focusWidget(), &window);
    EXPECT_FALSE(ring().isVisible());
}

/// Tabs, and whether the window shows all that it can show.
struct TabOrder : Keyboard, ::testing::WithParamInterface<std::tuple<int, bool>>
{
    TabOrder()
    {
        if (isFull())
            test::full(*this);
        state.selectedTab = tab();
        settle();
    }
    static int tab() { return std::get<0>(GetParam()); }
    static bool isFull() { return std::get<1>(GetParam()); }
};

TEST_P(TabOrder, isTheOrderOfReadingThereAndBack)
{
    auto expected = orderOf(tab(), isFull());
    EXPECT_THAT(walk([this] { goOn(); }), ElementsAreArray(expected));
    leaveAll();
    std::reverse(expected.begin(), expected.end());
    EXPECT_THAT(walk([this] { goBack(); }), ElementsAreArray(expected));
}

TEST_P(TabOrder, bringsEverythingIntoViewInItsRing)
{
    window.resize(815, 560);
    settle();
    walk([this] { goOn(); }, [this] { expectInARing(); });
}

TEST_P(TabOrder, bringsEverythingIntoViewOnTheWayBackToo)
{
    window.resize(815, 560);
    settle();
    walk([this] { goBack(); }, [this] { expectInARing(); });
}

TEST_P(TabOrder, leavesNothingOut)
{
    std::set<const QWidget *> reached;
    walk([this] { goOn(); }, [&reached] { reached.insert(QApplication::focusWidget()); });
    std::set<const QWidget *> toBeReached;
    for (const auto *widget : window.findChildren<QWidget *>()) {
        if (widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus))
            toBeReached.insert(widget);
    }
    EXPECT_EQ(namesOf(reached), namesOf(toBeReached));
    EXPECT_TRUE(reached == toBeReached);
}

TEST_P(TabOrder, spaceAndEnterPressWhateverIsThere)
{
    const auto visible = [this] {
        std::vector<QPointer<Control>> all;
        for (auto *control : window.findChildren<Control *>()) {
            if (control->isVisible())
                all.emplace_back(control);
        }
        return all;
    }();
    EXPECT_GE(visible.size(), controlsOf(tab(), isFull()).size());
    for (const auto &control : visible) {
        for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
            int presses = 0;
            const auto counting =
                QObject::connect(control, &QAbstractButton::clicked, control, [&presses] { ++presses; });
            control->setFocus(Qt::TabFocusReason);
            press(key);
            QObject::disconnect(counting);
            EXPECT_EQ(presses, 1) << nameOf(control) << " by " << key;
            if (isFull())
                test::full(*this);
            state.selectedTab = tab();
            settle();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Tabs, TabOrder, ::testing::Combine(::testing::ValuesIn(tabs), ::testing::Bool()),
                         [](const auto &tested) {
                             return "tab" + std::to_string(std::get<0>(tested.param)) +
                                    (std::get<1>(tested.param) ? "full" : "");
                         });

TEST_F(Keyboard, tabsThatAreLookedAtLaterComeAtTheirPlaceAndHiddenOnesNotAtAll)
{
    for (const int tab : {3, 2, 0, 4, 1, 0, 3}) {
        state.selectedTab = tab;
        leaveAll();
        EXPECT_THAT(walk([this] { goOn(); }), ElementsAreArray(orderOf(tab, false))) << tab;
    }
    state.selectedTab = 7; // no tab's number
    leaveAll();
    EXPECT_THAT(walk([this] { goOn(); }), ElementsAreArray(leftColumn + header + rightColumn));
}

TEST_F(Keyboard, whatAppearsUnderItIsReachedFromThere)
{
    state.selectedTab = 4;
    settle();
    find<CallToAction>("Start Browser Cast")->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_TRUE(webServer.isRunning);
    EXPECT_EQ(focused(), "Stop Stream");
    goOn();
    EXPECT_EQ(focused(), "Copy");
    goBack();
    press(Qt::Key_Space);
    goOn();
    EXPECT_EQ(focused(), "Refresh USB Status");
}

TEST_F(Keyboard, goesOnWhereWhatHadItVanishes)
{
    test::full(*this);
    state.selectedTab = 4;
    settle();
    find("Copy Link")->setFocus(Qt::TabFocusReason);
    machine.interfaces.entries->pop_back();
    webServer.refreshIPs();
    settle();
    goOn();
    EXPECT_THAT(controlsOf(4, true) + fullRightColumn, Contains(focused()));
    EXPECT_TRUE(QApplication::focusWidget()->isVisible());
}

TEST_F(Keyboard, arrowsMoveSlidersAndTheirSettings)
{
    state.selectedTab = 3;
    settle();
    find<Slider>("Target Bridge Temperature")->setFocus(Qt::TabFocusReason);
    for (const auto &[key, value] : {std::pair{Qt::Key_Right, 40.5},
                                     {Qt::Key_Up, 41.0},
                                     {Qt::Key_Left, 40.5},
                                     {Qt::Key_Down, 40.0},
                                     {Qt::Key_PageUp, 41.0},
                                     {Qt::Key_PageDown, 40.0},
                                     {Qt::Key_End, 44.0},
                                     {Qt::Key_Right, 44.0},
                                     {Qt::Key_Home, 38.0},
                                     {Qt::Key_Left, 38.0}}) {
        press(key);
        EXPECT_EQ(state.targetTemp, value) << key;
        EXPECT_EQ(focused(), "Target Bridge Temperature");
    }
    find<Slider>("Idle Sleep Timeout")->setFocus(Qt::TabFocusReason);
    press(Qt::Key_End);
    EXPECT_EQ(state.idleTimeoutMinutes, 10.0);
}

TEST_F(Keyboard, arrowsGoFromTabToTab)
{
    find("Dashboard")->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Left); // the first one: stays
    EXPECT_EQ(state.selectedTab, 0);
    for (const auto &[tab, name] :
         {std::pair{4, "Screen Clone"}, {1, "Diagnostics"}, {2, "Power & Tools"}, {3, "Settings"}, {3, "Settings"}}) {
        press(Qt::Key_Right);
        EXPECT_EQ(state.selectedTab, tab);
        EXPECT_EQ(focused(), name);
        expectInARing();
    }
    press(Qt::Key_Left);
    EXPECT_EQ(state.selectedTab, 2);
}

TEST_F(Keyboard, arrowsGoTheOtherWayWhereReadingDoes)
{
    window.setLayoutDirection(Qt::RightToLeft);
    settle();
    EXPECT_GT(find("Dashboard")->x(), find("Settings")->x());
    find("Dashboard")->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Left);
    EXPECT_EQ(state.selectedTab, 4);
    walk([this] { goOn(); }, [this] { expectInARing(); });
}

TEST_F(Keyboard, leavesAnAddressThatWasClickedAt)
{
    test::full(*this);
    state.selectedTab = 4;
    window.resize(1000, 1400);
    settle();
    for (const auto &[name, next] : {std::pair{"Open in Phone / Tablet Browser:", "Copy"},
                                     {"Universal Bonjour (mDNS):", "Copy"},
                                     {"USB CABLE (OFFLINE)", "Copy"},
                                     {"WI-FI / LOCAL MDNS", "Copy"}}) {
        auto *address = find<AddressLabel>(name);
        ASSERT_TRUE(address) << name;
        QTest::mouseClick(address, Qt::LeftButton);
        settle();
        ASSERT_EQ(QApplication::focusWidget(), address);
        goOn();
        EXPECT_EQ(focused(), next) << name;
    }
}

TEST_F(Keyboard, pageKeysReadOnWhereNothingIsToPress)
{
    window.resize(815, 560);
    settle();
    struct Column
    {
        QWidget *view;
        int tab;
        const char *control;
    };
    for (const auto &[view, tab, control] :
         {Column{window.findChild<CenterDashboardView *>(), 1, "Generate Technician Diagnostic Report"},
          {window.findChild<CenterDashboardView *>(), 4, "Start Browser Cast"},
          {window.findChild<RightSidebarUtilityView *>(), 0, "Displays & Mirroring"}}) {
        state.selectedTab = tab;
        settle();
        auto *widget = findIn<Control>(*view, control);
        ASSERT_TRUE(widget) << control;
        const auto areas = view->findChildren<ScrollArea *>();
        const auto area =
            std::find_if(areas.begin(), areas.end(), [&](auto *each) { return each->isAncestorOf(widget); });
        ASSERT_NE(area, areas.end());
        auto *bar = (*area)->verticalScrollBar();
        ASSERT_GT(bar->maximum(), 0) << control << ": all of it is in view";
        widget->setFocus(Qt::TabFocusReason);
        for (int page = 0; page < 5; ++page)
            press(Qt::Key_PageDown);
        EXPECT_EQ(bar->value(), bar->maximum()) << control;
        for (int page = 0; page < 5; ++page)
            press(Qt::Key_PageUp);
        EXPECT_EQ(bar->value(), 0) << control;
    }
}

/// A low window that shows the upper end of a tab with a link at its lower end.
struct LowWindow : Keyboard
{
    LowWindow()
    {
        state.selectedTab = 2;
        window.resize(815, 560);
        settle();
        link = find<LinkLabel>("See our services ↗");
        area = window.findChild<CenterDashboardView *>()->findChildren<ScrollArea *>().back();
        bar = area->verticalScrollBar();
    }

    LinkLabel *link = nullptr;
    ScrollArea *area = nullptr;
    QScrollBar *bar = nullptr;
};

TEST_F(LowWindow, aPressOfThePointerMovesNothingAway)
{
    ASSERT_TRUE(area->isAncestorOf(link));
    ASSERT_GT(bar->maximum(), 0);
    // Half of it in view.
    bar->setValue(link->mapTo(area->widget(), QPoint()).y() + link->height() / 2 - area->viewport()->height());
    settle();
    const int before = bar->value();
    QTest::mousePress(link, Qt::LeftButton, {}, {5, 5});
    settle();
    EXPECT_EQ(bar->value(), before);
    QTest::mouseRelease(link, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(machine.urls.opened.size(), 1u);
}

TEST_F(LowWindow, aLookAtAnotherWindowScrollsNothing)
{
    ASSERT_TRUE(area->isAncestorOf(link));
    link->setFocus(Qt::TabFocusReason);
    settle();
    ASSERT_GT(bar->value(), 0);
    bar->setValue(0);
    Q_EMIT qApp->focusChanged(link, nullptr);
    Q_EMIT qApp->focusChanged(nullptr, link);
    EXPECT_EQ(bar->value(), 0);
    find("Settings")->setFocus(Qt::TabFocusReason);
    link->setFocus(Qt::TabFocusReason); // this time it does come to it
    EXPECT_GT(bar->value(), 0);
}

TEST_F(Keyboard, arrowsWithAnotherKeyAreLeftToOthers)
{
    auto *tab = find("Dashboard");
    for (const auto modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        tab->setFocus(Qt::TabFocusReason);
        press(Qt::Key_Right, modifier);
        EXPECT_EQ(state.selectedTab, 0);
    }
    tab->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Right, Qt::KeypadModifier);
    EXPECT_EQ(state.selectedTab, 4);
}

TEST_F(Keyboard, itsRingIsSeenAfterKeyboardUseOnly)
{
    find("Settings")->setFocus();
    settle();
    EXPECT_FALSE(ring().isVisible());
    goOn();
    expectInARing();
    QTest::mouseClick(find("Orvalen"), Qt::LeftButton);
    EXPECT_FALSE(ring().isVisible());
}

TEST_F(Keyboard, itsRingGoesWithItsControl)
{
    find("Settings")->setFocus();
    goOn();
    window.resize(1500, 700);
    settle();
    expectInARing();
    auto *button = QApplication::focusWidget();
    button->hide(); // the keyboard goes on to another control
    settle();
    ASSERT_NE(QApplication::focusWidget(), button);
    expectInARing();
}

} // namespace
} // namespace orvalen
