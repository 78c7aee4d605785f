#include "ui/kit/Slider.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTest>

#include <cmath>
#include <limits>

#include "tests/ui/Reading.h"
#include "ui/kit/Builders.h"
#include "ui/kit/ScrollArea.h"
#include "ui/kit/Theme.h"

namespace orvalen::kit {
namespace {

using test::Dashboard;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr SliderScale degrees{.from = 38.0, .to = 44.0, .step = 0.5};

struct Setting : Observable
{
    Published<double> value{*this, 40.0};
};

QString spoken(double value)
{
    return QString::number(value) + " units";
}

constexpr int knobRadius = 9;
constexpr int sliderWidth = 12 * 20 + 2 * knobRadius; // 20 px from place to place

/// A slider in a page that has to be scrolled, and what a person does with it.
struct SliderOf : ::testing::Test
{
    Setting setting;
    std::vector<double> changes;
    Slider *slider = kit::slider(setting.value, degrees, "Warmth", {setting.value, spoken});
    QWidget *other = link("elsewhere", [] {});
    QWidget *page = new QWidget;
    ScrollArea window{page};
    Subscription following;

    SliderOf()
    {
        page->setMinimumHeight(2000);
        slider->setParent(page);
        slider->setGeometry(10, 10, sliderWidth, slider->sizeHint().height());
        other->setParent(page);
        other->setGeometry(10, 60, 100, 30);
        window.setPalette(themePalette(false));
        window.resize(400, 300);
        window.show();
        window.activateWindow();
        other->setFocus();
        Dashboard::settle();
        following = setting.value.subscribe([this](double value) { changes.push_back(value); });
        taken();
    }

    std::vector<double> taken() { return std::exchange(changes, {}); }
    int scrolled() const { return window.verticalScrollBar()->value(); }
    void press(Qt::Key key)
    {
        slider->setFocus();
        QTest::keyClick(slider, key);
    }

    /// Where the middle of the knob is while it is on that place.
    QPoint place(int number) const
    {
        const int x = knobRadius + number * 20;
        return {slider->isRightToLeft() ? sliderWidth - x : x, slider->height() / 2};
    }
    void mouse(QEvent::Type type, const QPoint &point, Qt::MouseButton button = Qt::LeftButton) const
    {
        const bool isUp = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, point, slider->mapToGlobal(point), type == QEvent::MouseMove ? Qt::NoButton : button,
                          isUp ? Qt::NoButton : button, Qt::NoModifier);
        QApplication::sendEvent(slider, &event);
    }
    void hold(const QPoint &point) const { mouse(QEvent::MouseButtonPress, point); }
    void moveTo(const QPoint &point) const { mouse(QEvent::MouseMove, point); }
    void release(const QPoint &point) const { mouse(QEvent::MouseButtonRelease, point); }

    void turnWheel(const QPoint &angle) const { test::turnWheel(*slider, angle); }

    /// The middle of the knob as it is painted.
    int knobX() const
    {
        const auto picture = slider->grab().toImage();
        int first = -1;
        int last = -1;
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, picture.height() / 2) == QColor(Qt::white)) {
                first = first < 0 ? x : first;
                last = x;
            }
        }
        return (first + last + 1) / 2;
    }
    QColor grooveAt(int x) const { return slider->grab().toImage().pixelColor(x, slider->height() / 2); }

    QAccessibleInterface &accessible() const { return *QAccessible::queryAccessibleInterface(slider); }
};

TEST_F(SliderOf, arrowsGoFromPlaceToPlace)
{
    press(Qt::Key_Right);
    press(Qt::Key_Up);
    press(Qt::Key_Left);
    press(Qt::Key_Down);
    EXPECT_THAT(taken(), ElementsAre(40.5, 41.0, 40.5, 40.0));
    EXPECT_EQ(slider->value(), 40.0);
}

TEST_F(SliderOf, everyPlaceIsReachedByKeyAndNoMore)
{
    press(Qt::Key_Home);
    EXPECT_THAT(taken(), ElementsAre(38.0));
    for (int i = 0; i < 15; ++i)
        press(Qt::Key_Right);
    EXPECT_THAT(taken(), ElementsAre(38.5, 39.0, 39.5, 40.0, 40.5, 41.0, 41.5, 42.0, 42.5, 43.0, 43.5, 44.0));
    press(Qt::Key_End);
    EXPECT_THAT(taken(), IsEmpty()); // is there already
    press(Qt::Key_Home);
    press(Qt::Key_End);
    EXPECT_THAT(taken(), ElementsAre(38.0, 44.0));
}

TEST_F(SliderOf, pageKeysGoTwoPlaces)
{
    press(Qt::Key_PageUp);
    press(Qt::Key_PageDown);
    press(Qt::Key_PageDown);
    EXPECT_THAT(taken(), ElementsAre(41.0, 40.0, 39.0));
    EXPECT_EQ(scrolled(), 0); // and the page stays
}

TEST_F(SliderOf, otherKeysAreLeftToOthers)
{
    slider->setFocus();
    QKeyEvent event(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
    QApplication::sendEvent(slider, &event);
    EXPECT_FALSE(event.isAccepted());
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(SliderOf, rightAndLeftAreTheOtherWayRoundWhereReadingIs)
{
    window.setLayoutDirection(Qt::RightToLeft);
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    press(Qt::Key_Up); // up is up everywhere
    press(Qt::Key_Home);
    EXPECT_THAT(taken(), ElementsAre(39.5, 40.0, 40.5, 38.0));
}

TEST_F(SliderOf, aClickPutsTheKnobThere)
{
    QTest::mouseClick(slider, Qt::LeftButton, {}, place(10));
    QTest::mouseClick(slider, Qt::LeftButton, {}, place(2) + QPoint(9, 5)); // closest
    QTest::mouseClick(slider, Qt::LeftButton, {}, QPoint(1, 0));
    QTest::mouseClick(slider, Qt::LeftButton, {}, QPoint(sliderWidth - 1, 0));
    EXPECT_THAT(taken(), ElementsAre(43.0, 39.0, 38.0, 44.0));
    EXPECT_TRUE(slider->hasFocus());
}

TEST_F(SliderOf, aClickWhereTheKnobIsChangesNothing)
{
    QTest::mouseClick(slider, Qt::LeftButton, {}, place(4) + QPoint(7, 0));
    setting.value = 40.2;
    taken();
    QTest::mouseClick(slider, Qt::LeftButton, {}, place(4) + QPoint(5, 0));
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(SliderOf, onlyTheLeftButtonMovesTheKnob)
{
    for (const auto button : {Qt::RightButton, Qt::MiddleButton}) {
        mouse(QEvent::MouseButtonPress, place(10), button);
        mouse(QEvent::MouseMove, place(11), button);
        mouse(QEvent::MouseButtonRelease, place(11), button);
    }
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(SliderOf, aDragTakesTheKnobAlongAsItWasHeld)
{
    const QPoint beside(6, 0);
    hold(place(4) + beside);
    moveTo(place(4) + beside + QPoint(9, 0)); // not half way yet
    EXPECT_THAT(taken(), IsEmpty());
    moveTo(place(4) + beside + QPoint(11, 0));
    EXPECT_THAT(taken(), ElementsAre(40.5)); // during the drag, not after it
    moveTo(place(6) + beside);
    moveTo(place(3) + beside);
    release(place(3) + beside);
    EXPECT_THAT(taken(), ElementsAre(41.0, 39.5));
}

TEST_F(SliderOf, aHandThatIsNotQuiteStillDragsNothing)
{
    setting.value = 45.3; // the next place is not where it stands
    taken();
    hold(place(12));
    moveTo(place(12) + QPoint(1, 1));
    moveTo(place(12) - QPoint(QApplication::startDragDistance() - 1, 0));
    release(place(12));
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_EQ(setting.value, 45.3);

    hold(place(6) + QPoint(9, 0));
    moveTo(place(6) + QPoint(11, 0)); // nearer to the next one
    release(place(6) + QPoint(11, 0));
    EXPECT_THAT(taken(), ElementsAre(41.0));
}

TEST_F(SliderOf, aDragThatHasBegunGoesBackToWhereItBegan)
{
    hold(place(4));
    moveTo(place(6));
    moveTo(place(4));
    release(place(4));
    EXPECT_THAT(taken(), ElementsAre(41.0, 40.0));
}

TEST_F(SliderOf, aDragVisitsEveryPlace)
{
    hold(place(4));
    for (int x = place(4).x(); x >= -50; --x)
        moveTo({x, 100}); // also with the pointer elsewhere
    EXPECT_THAT(taken(), ElementsAre(39.5, 39.0, 38.5, 38.0));
    for (int x = -50; x <= sliderWidth + 50; ++x)
        moveTo({x, -100});
    EXPECT_THAT(taken(), ElementsAre(38.5, 39.0, 39.5, 40.0, 40.5, 41.0, 41.5, 42.0, 42.5, 43.0, 43.5, 44.0));
    release({sliderWidth + 50, 0});
    moveTo(place(4)); // held no more: the button is up
    QMouseEvent passing(QEvent::MouseMove, place(4), slider->mapToGlobal(place(4)), Qt::NoButton, Qt::NoButton, {});
    taken();
    QApplication::sendEvent(slider, &passing);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(SliderOf, aDragThatStartsBesideTheKnobStartsWithAJump)
{
    hold(place(8));
    moveTo(place(9));
    release(place(9));
    EXPECT_THAT(taken(), ElementsAre(42.0, 42.5));
}

TEST_F(SliderOf, clicksAndDragsAreMirroredWhereReadingIs)
{
    window.setLayoutDirection(Qt::RightToLeft);
    QTest::mouseClick(slider, Qt::LeftButton, {}, place(10));
    EXPECT_LT(place(10).x(), sliderWidth / 2);
    hold(place(10) + QPoint(4, 0));
    moveTo(place(7) + QPoint(4, 0));
    release(place(7) + QPoint(4, 0));
    EXPECT_THAT(taken(), ElementsAre(43.0, 41.5));
}

TEST_F(SliderOf, theWheelScrollsThePageUnlessTheSliderHasTheKeyboard)
{
    turnWheel({0, -120});
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_GT(scrolled(), 0);
    EXPECT_FALSE(slider->hasFocus()); // nor does it take the keyboard

    slider->setFocus(); // scrolls it into view
    const int further = scrolled();
    turnWheel({0, -120});
    turnWheel({0, 240});
    EXPECT_THAT(taken(), ElementsAre(39.5, 40.5));
    EXPECT_EQ(scrolled(), further);
    press(Qt::Key_End);
    taken();
    turnWheel({0, 120});
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_EQ(scrolled(), further); // at its end the slider still has the wheel
}

TEST_F(SliderOf, partsOfANotchAddUp)
{
    slider->setFocus();
    for (int i = 0; i < 9; ++i)
        turnWheel({0, 40});
    EXPECT_THAT(taken(), ElementsAre(40.5, 41.0, 41.5));
}

TEST_F(SliderOf, aPartOfANotchIsForgotten)
{
    slider->setFocus();
    turnWheel({0, 80});
    turnWheel({0, -80}); // the other way
    turnWheel({0, -40});
    EXPECT_THAT(taken(), ElementsAre(39.5));
    turnWheel({0, 80});
    other->setFocus();
    slider->setFocus();
    turnWheel({0, 80});
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(SliderOf, keysWithAnotherKeyAreLeftToOthers)
{
    slider->setFocus();
    for (const auto modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Home, modifier);
        QApplication::sendEvent(slider, &event);
        EXPECT_FALSE(event.isAccepted());
    }
    EXPECT_THAT(taken(), IsEmpty());
    QTest::keyClick(slider, Qt::Key_Home, Qt::KeypadModifier);
    EXPECT_THAT(taken(), ElementsAre(38.0));
}

/// How often something is painted.
struct Paints : QObject
{
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
    int count = 0;
};

TEST_F(SliderOf, whatIsNoNumberIsShownAtTheStartAndPaintedOnce)
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    setting.value = none;
    EXPECT_NEAR(knobX(), place(0).x(), 1);
    Dashboard::settle();
    Paints paints;
    slider->installEventFilter(&paints);
    setting.value = none;
    Dashboard::settle();
    EXPECT_EQ(paints.count, 0);
    taken();
    press(Qt::Key_Right); // and there is a way out
    EXPECT_THAT(taken(), ElementsAre(38.0));
}

TEST_F(SliderOf, aWheelToTheSideMovesTheKnobToThatSide)
{
    slider->setFocus();
    turnWheel({-120, 0}); // as the system reports a turn to the right
    EXPECT_THAT(taken(), ElementsAre(40.5));
    window.setLayoutDirection(Qt::RightToLeft);
    turnWheel({-120, 0});
    EXPECT_THAT(taken(), ElementsAre(40.0));
}

TEST_F(SliderOf, theKnobFollowsTheSettingWithoutAWordOfItsOwn)
{
    EXPECT_NEAR(knobX(), place(4).x(), 1);
    setting.value = 43.0;
    EXPECT_NEAR(knobX(), place(10).x(), 1);
    window.setLayoutDirection(Qt::RightToLeft);
    EXPECT_NEAR(knobX(), place(10).x(), 1);
    EXPECT_THAT(taken(), ElementsAre(43.0)); // ours alone
}

TEST_F(SliderOf, aValueBeyondThePlacesIsKeptAndShownAtTheEnd)
{
    setting.value = 45.3;
    taken();
    EXPECT_EQ(slider->value(), 45.3);
    EXPECT_NEAR(knobX(), place(12).x(), 1);
    window.resize(500, 200);
    slider->setFocus();
    slider->hide();
    slider->show();
    press(Qt::Key_End);
    press(Qt::Key_Right);
    hold(place(12));
    release(place(12));
    Dashboard::settle();
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_EQ(setting.value, 45.3);
    press(Qt::Key_Left);
    EXPECT_THAT(taken(), ElementsAre(44.0));
}

TEST_F(SliderOf, theWayToTheKnobHasTheSlidersColour)
{
    slider->setAccent(accent::purple);
    const auto colour = accent::purple.vivid.in(*slider);
    const auto groove = neutral::groove.in(*slider);
    EXPECT_EQ(grooveAt(place(1).x()), colour);
    EXPECT_EQ(grooveAt(place(8).x()), groove);
    window.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(grooveAt(place(1).x()), colour);
    EXPECT_EQ(grooveAt(place(8).x()), groove);
}

TEST_F(SliderOf, theRingGoesAroundTheKnobsHeight)
{
    const auto [rect, radius] = slider->outline();
    EXPECT_EQ(rect, QRect(0, (slider->height() - 18) / 2, sliderWidth, 18));
    EXPECT_EQ(radius, 9);
    EXPECT_GE(slider->sizeHint().height(), 24); // and enough to be hit
}

TEST_F(SliderOf, readersHearTheSettingsOwnValues)
{
    EXPECT_EQ(accessible().role(), QAccessible::Slider);
    EXPECT_EQ(accessible().text(QAccessible::Name), "Warmth");
    EXPECT_EQ(accessible().text(QAccessible::Value), "40 units");
    auto *value = accessible().valueInterface();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->currentValue(), 40.0);
    EXPECT_EQ(value->minimumValue(), 38.0);
    EXPECT_EQ(value->maximumValue(), 44.0);
    EXPECT_EQ(value->minimumStepSize(), 0.5);
    setting.value = 45.3;
    EXPECT_EQ(value->currentValue(), 45.3);
    EXPECT_EQ(accessible().text(QAccessible::Value), "45.3 units");
}

TEST_F(SliderOf, readersSetItToAPlace)
{
    auto *value = accessible().valueInterface();
    value->setCurrentValue(41.7);
    value->setCurrentValue(100);
    EXPECT_THAT(taken(), ElementsAre(41.5, 44.0));
    value->setCurrentValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_EQ(setting.value, 44.0);
}

TEST_F(SliderOf, readersMoveItByAction)
{
    auto *actions = accessible().actionInterface();
    ASSERT_TRUE(actions);
    EXPECT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::increaseAction()));
    EXPECT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::decreaseAction()));
    actions->doAction(QAccessibleActionInterface::increaseAction());
    actions->doAction(QAccessibleActionInterface::decreaseAction());
    actions->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_THAT(taken(), ElementsAre(40.5, 40.0, 39.5));
    actions->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(slider->hasFocus());
}

} // namespace
} // namespace orvalen::kit
