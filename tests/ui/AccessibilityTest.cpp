#include <gmock/gmock.h>

#include <QTest>

#include <map>
#include <set>

#include "tests/ui/Scenes.h"
#include "ui/CenterDashboardView.h"
#include "ui/TemperatureReadout.h"
#include "ui/kit/Accessibility.h"
#include "ui/kit/TabBar.h"
#include "ui/kit/TabButton.h"

namespace orvalen {
namespace {

using namespace kit;
using test::Dashboard;
using test::Scene;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

struct Accessibility : ::testing::Test, Dashboard
{
    Accessibility()
    {
        test::plain(*this);
        show();
        window.activateWindow();
        settle();
    }

    static QAccessibleInterface &accessible(QObject *widget) { return *QAccessible::queryAccessibleInterface(widget); }
    template <typename Widget = QWidget>
    QAccessibleInterface &accessible(const QString &name) const
    {
        return accessible(find<Widget>(name));
    }
    static std::string nameOf(const QAccessibleInterface &interface)
    {
        return interface.text(QAccessible::Name).toStdString();
    }
    static std::string aboutOf(const QAccessibleInterface &interface)
    {
        return interface.text(QAccessible::Description).toStdString();
    }
    [[nodiscard]] QWidget &centre() const { return *window.findChild<CenterDashboardView *>(); }

    /// The names of the groups that a thing lies in, the outermost first.
    static std::string groupsOf(const QAccessibleInterface &interface)
    {
        std::string groups;
        for (auto *around = interface.parent(); around; around = around->parent()) {
            if (around->role() == QAccessible::Grouping)
                groups = nameOf(*around) + " > " + groups;
        }
        return groups;
    }

    /// Everything that a screen reader meets, in its order.
    static void visit(QAccessibleInterface &interface, const std::function<void(QAccessibleInterface &)> &look)
    {
        if (interface.state().invisible)
            return;
        look(interface);
        for (int index = 0; index < interface.childCount(); ++index)
            visit(*interface.child(index), look);
    }
};

/// What a control of that kind is to a screen reader.
QAccessible::Role roleOf(const QWidget &widget)
{
    static const std::map<std::string_view, QAccessible::Role> roles{
        {"orvalen::kit::CallToAction", QAccessible::Button},
        {"orvalen::kit::LinkLabel", QAccessible::Link},
        {"orvalen::kit::RowButton", QAccessible::Button},
        {"orvalen::kit::Slider", QAccessible::Slider},
        {"orvalen::kit::SmallButton", QAccessible::Button},
        {"orvalen::kit::SymbolToggle", QAccessible::CheckBox},
        {"orvalen::kit::TabButton", QAccessible::PageTab},
        {"orvalen::kit::Toggle", QAccessible::CheckBox},
        {"orvalen::kit::AddressLabel", QAccessible::EditableText},
    };
    const auto role = roles.find(widget.metaObject()->className());
    return role == roles.end() ? QAccessible::NoRole : role->second;
}

TEST_F(Accessibility, rolesSayWhatThingsAre)
{
    EXPECT_EQ(accessible("Autonomous Thermal Shield").role(), QAccessible::StaticText); // the text beside the switch
    const auto &toggle = accessible<Toggle>("Autonomous Thermal Shield");
    EXPECT_EQ(toggle.role(), QAccessible::CheckBox);
    EXPECT_EQ(toggle.text(QAccessible::Description), "Auto-heats on wake, sleeps when away");
    EXPECT_TRUE(toggle.state().checkable);
    EXPECT_TRUE(toggle.state().checked);

    EXPECT_EQ(accessible("Trigger Prime Warmup Now").role(), QAccessible::Button);
    EXPECT_EQ(accessible("Quenmark Technologies").role(), QAccessible::Link);
    EXPECT_EQ(accessible("Settings").role(), QAccessible::PageTab);
    EXPECT_EQ(accessible("Settings").parent()->role(), QAccessible::PageTabList);
    EXPECT_EQ(accessible("Settings").parent()->childCount(), 5);
    EXPECT_TRUE(accessible("Dashboard").state().selected);
    EXPECT_FALSE(accessible("Settings").state().selected);
    EXPECT_EQ(accessible("STANDBY").role(), QAccessible::StaticText);
    EXPECT_EQ(accessible("0.0°C").role(), QAccessible::StaticText);
    EXPECT_EQ(accessible(&window).role(), QAccessible::Window);
    EXPECT_EQ(nameOf(accessible(&window)), "Orvalen");
}

TEST_F(Accessibility, readingsSayWhatTheyAreOf)
{
    setBridge(40.4, 46.2);
    EXPECT_EQ(accessible("46.2°C").text(QAccessible::Description), "Apple Silicon SoC");
    EXPECT_EQ(accessible(window.findChild<TemperatureReadout *>()).text(QAccessible::Description),
              "DISPLAY BRIDGE TEMPERATURE");
}

TEST_F(Accessibility, whatAReaderPressesIsPressed)
{
    accessible("Settings").actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(state.selectedTab, 3);
    state.selectedTab = 0;
    accessible("Trigger Prime Warmup Now").actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(engine.targets.size(), 1u);
    auto *actions = accessible<Toggle>("Autonomous Thermal Shield").actionInterface();
    EXPECT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::toggleAction()));
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(state.smartModeEnabled);
}

TEST_F(Accessibility, aSliderIsSetByItsValue)
{
    state.selectedTab = 3;
    settle();
    auto &slider = accessible<Slider>("Target Bridge Temperature");
    auto *value = slider.valueInterface();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->minimumValue(), 38.0);
    EXPECT_EQ(value->maximumValue(), 44.0);
    EXPECT_EQ(value->minimumStepSize(), 0.5);
    EXPECT_EQ(value->currentValue(), 40.0);
    EXPECT_EQ(slider.text(QAccessible::Value), "40.0 °C");
    value->setCurrentValue(42.6); // between two places
    EXPECT_EQ(state.targetTemp, 42.5);
    EXPECT_EQ(slider.text(QAccessible::Value), "42.5 °C");
    value->setCurrentValue(99.0);
    EXPECT_EQ(state.targetTemp, 44.0);
    slider.actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(state.targetTemp, 43.5);
}

TEST_F(Accessibility, aCardGoesByWhatItIsAbout)
{
    test::full(*this);
    const auto groupOf = [this](int tab, const QString &name) {
        state.selectedTab = tab;
        settle();
        return groupsOf(accessible<Control>(name));
    };
    EXPECT_EQ(groupOf(0, "See the plans"), "Quenmark Harbor > ");
    EXPECT_EQ(groupOf(0, "Watch the channel"), "SPONSORED INFOTAINMENT > ");
    EXPECT_EQ(groupOf(1, "Generate Technician Diagnostic Report"), "Service Shop Report > ");
    EXPECT_EQ(groupOf(2, "See our services ↗"), "Is there something you want built? > ");
    EXPECT_EQ(groupOf(3, "Audio Chimes & Sound Feedback"), "Automations & Feedback > ");
    EXPECT_EQ(groupOf(4, "Stop Stream"), "Zero-Install Web Mirror (Phone & Tablets) > ");
    EXPECT_EQ(groupOf(4, "Copy Link"), "Direct USB Tethering Mirror > ");
    EXPECT_EQ(groupOf(4, "Test Hotkey Voice"), "Blind Voice Assistant (When 100% Black) > ");
    EXPECT_EQ(groupOf(0, "Autonomous Thermal Shield"), ""); // once is enough
    EXPECT_EQ(groupOf(0, "Quenmark Technologies"), "");     // on no card
}

TEST_F(Accessibility, aNameIsNotSaidTwice)
{
    EXPECT_EQ(find("Prevent sleep")->toolTip(), "Prevent sleep");
    EXPECT_EQ(accessible("Prevent sleep").text(QAccessible::Description), "");
}

struct EveryScene : Accessibility, ::testing::WithParamInterface<Scene>
{
    EveryScene() { GetParam().set(*this); }

    void onEveryTab(const std::function<void(int)> &look)
    {
        for (const int tab : test::tabs) {
            state.selectedTab = tab;
            settle();
            look(tab);
        }
    }
};

TEST_P(EveryScene, everyControlHasANameARoleAndASizeToHit)
{
    for (const int width : {815, 1000, 1600}) {
        window.resize(width, 680);
        onEveryTab([&](int tab) {
            for (auto *widget : window.findChildren<QWidget *>()) {
                if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus)
                    continue;
                auto &interface = accessible(widget);
                EXPECT_NE(nameOf(interface), "") << widget->metaObject()->className() << " on " << tab;
                EXPECT_EQ(interface.role(), roleOf(*widget)) << widget->metaObject()->className();
                EXPECT_TRUE(interface.state().focusable);
                if (qobject_cast<AddressLabel *>(widget))
                    continue; // text; what is to hit is the button beside it
                EXPECT_GE(widget->width(), 24) << nameOf(interface) << " at " << width;
                EXPECT_GE(widget->height(), 24) << nameOf(interface) << " at " << width;
                EXPECT_EQ(interface.rect(), QRect(widget->mapToGlobal(QPoint()), widget->size()));
            }
        });
    }
}

// An "&" in its words is a word.
TEST_P(EveryScene, noControlTakesAKeyForItself)
{
    onEveryTab([&](int) {
        for (const auto *button : window.findChildren<QAbstractButton *>())
            EXPECT_TRUE(button->shortcut().isEmpty()) << button->shortcut().toString().toStdString();
    });
}

// Not even by their names: what stands around tells two buttons "Copy" apart as well.
TEST_P(EveryScene, noTwoControlsSayTheSame)
{
    onEveryTab([&](int tab) {
        std::set<std::string> said;
        for (auto *widget : window.findChildren<QWidget *>()) {
            if (!widget->isVisible() || !(widget->focusPolicy() & Qt::TabFocus))
                continue;
            const auto &interface = accessible(widget);
            const auto words = groupsOf(interface) + nameOf(interface) + ", " + aboutOf(interface);
            EXPECT_TRUE(said.insert(words).second) << words << " on " << tab;
        }
    });
}

TEST_P(EveryScene, whatAReaderMeetsHasWords)
{
    onEveryTab([&](int tab) {
        int met = 0;
        visit(accessible(&window), [&](QAccessibleInterface &interface) {
            if (interface.childCount() > 0)
                return;
            const auto *object = interface.object();
            EXPECT_NE(nameOf(interface), "")
                << object->metaObject()->className() << " in " << groupsOf(interface) << " on " << tab;
            EXPECT_FALSE(object->inherits("orvalen::kit::SymbolLabel"));
            EXPECT_FALSE(object->inherits("orvalen::kit::FocusRing"));
            ++met;
        });
        EXPECT_GT(met, 30) << tab;
    });
}

// The places in the tree agree with each other both ways.
TEST_P(EveryScene, whatAReaderMeetsKnowsItsPlace)
{
    onEveryTab([&](int) {
        visit(accessible(&window), [&](QAccessibleInterface &interface) {
            for (int index = 0; index < interface.childCount(); ++index) {
                auto *child = interface.child(index);
                ASSERT_TRUE(child);
                EXPECT_EQ(child->parent(), &interface) << nameOf(*child);
                EXPECT_EQ(interface.indexOfChild(child), index) << nameOf(*child);
            }
        });
    });
}

INSTANTIATE_TEST_SUITE_P(Scenes, EveryScene, ::testing::ValuesIn(test::scenes()),
                         [](const auto &tested) { return tested.param.name; });

TEST_F(Accessibility, theCodeSaysWhatItIsAndWhatItSays)
{
    test::full(*this);
    state.selectedTab = 4;
    settle();
    const auto &code = accessible("QR code");
    EXPECT_EQ(code.role(), QAccessible::Graphic);
    EXPECT_EQ(code.text(QAccessible::Description).toStdString(), webServer.primaryURL.value());
}

TEST(AccessibleOrnaments, areNotAmongTheChildren)
{
    installAccessibility();
    QWidget parent;
    auto *line = hairline();
    line->setParent(&parent);
    auto *word = new QLabel("word", &parent);
    auto &interface = *QAccessible::queryAccessibleInterface(&parent);
    ASSERT_EQ(interface.childCount(), 1);
    EXPECT_EQ(interface.child(0)->object(), word);
    EXPECT_FALSE(interface.child(1));
    EXPECT_EQ(interface.indexOfChild(QAccessible::queryAccessibleInterface(line)), -1);
}

// What screen readers are told.
struct Announcements : Accessibility
{
    Announcements()
    {
        const auto note = [this](const QString &words) { diary.push_back(words.toStdString()); };
        QObject::connect(find<Badge>("STANDBY"), &Badge::announced, &window, note);
        QObject::connect(find<CallToAction>("Trigger Prime Warmup Now"), &CallToAction::announced, &window, note);
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

TEST_F(Announcements, aCapsuleThatFollowsSomethingIsSaidWhereItIsSeen)
{
    const auto noteWhatBadgesSay = [this] {
        for (auto *badge : centre().findChildren<Badge *>()) {
            QObject::connect(badge, &Badge::announced, &window,
                             [this](const QString &word) { diary.push_back(word.toStdString()); });
        }
    };
    state.selectedTab = 4;
    settle();
    noteWhatBadgesSay();
    EXPECT_THAT(taken(), IsEmpty());
    webServer.isRunning = true;
    EXPECT_THAT(taken(), ElementsAre("ONLINE"));
    test::withPhone(*this);
    EXPECT_THAT(taken(), ElementsAre("CONNECTED"));
    test::plain(*this);
    EXPECT_THAT(taken(), ElementsAre("100% OFFLINE"));
    state.selectedTab = 0;
    webServer.isRunning = false;
    EXPECT_THAT(taken(), IsEmpty());
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
