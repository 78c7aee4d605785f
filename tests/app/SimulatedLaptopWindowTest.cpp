#include "app/SimulatedLaptopWindow.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QKeyEvent>

#include "app/TemperaturePlot.h"
#include "platform/simulated/SimulatedLaptop.h"
#include "tests/support/FakeMachine.h"
#include "ui/kit/Theme.h"

namespace orvalen {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

class SimulatedLaptopWindowTest : public testing::Test
{
protected:
    SimulatedLaptopWindowTest()
    {
        machine.sensors.set(41.0);
        window.resize(window.sizeHint());
        window.show();
    }

    /// What can be pressed, by the name that a screen reader says.
    QAbstractButton *button(const char *name)
    {
        for (auto *candidate : window.findChildren<QAbstractButton *>())
            if (nameOf(candidate) == name && candidate->isVisible())
                return candidate;
        return nullptr;
    }

    QAbstractSlider *slider(const char *name)
    {
        for (auto *candidate : window.findChildren<QAbstractSlider *>())
            if (candidate->accessibleName() == name)
                return candidate;
        return nullptr;
    }

    static QString nameOf(QAbstractButton *button)
    {
        return QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name);
    }

    static void press(QWidget *widget, int key)
    {
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
        QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
        QApplication::sendEvent(widget, &down);
        QApplication::sendEvent(widget, &up);
    }

    test::FakeMachine machine;
    test::FakeThermalEngine engine{machine};
    AppState state{machine.stateServices(engine)};
    SimulatedLaptop laptop{{machine.world, machine.processors, [] { return std::chrono::nanoseconds(0); }}, 20.0};
    SimulatedLaptopWindow window{state, laptop};
    TemperaturePlot *plot = window.findChild<TemperaturePlot *>();
};

TEST_F(SimulatedLaptopWindowTest, saysWhatItIs)
{
    EXPECT_EQ(window.windowTitle(), "Simulated laptop");
}

TEST_F(SimulatedLaptopWindowTest, theSwitchesAreTheLaptops)
{
    ASSERT_TRUE(button("Charger"));
    EXPECT_TRUE(button("Charger")->isChecked());
    press(button("Charger"), Qt::Key_Space);
    EXPECT_FALSE(laptop.isChargerPluggedIn());

    ASSERT_TRUE(button("All sensors gone") && button("One sensor stuck") && button("One sensor NaN"));
    button("All sensors gone")->click();
    EXPECT_TRUE(laptop.faults().allGone);
    button("One sensor stuck")->click();
    EXPECT_TRUE(laptop.faults().oneStuck);
    button("One sensor NaN")->click();
    EXPECT_TRUE(laptop.faults().oneNotANumber);
    button("All sensors gone")->click();
    EXPECT_FALSE(laptop.faults().allGone);
}

TEST_F(SimulatedLaptopWindowTest, theSlidersAreTheLaptops)
{
    ASSERT_TRUE(slider("Room"));
    press(slider("Room"), Qt::Key_Right);
    EXPECT_EQ(laptop.roomCelsius(), 21.0);
    press(slider("Room"), Qt::Key_Home);
    EXPECT_EQ(laptop.roomCelsius(), 0.0);

    ASSERT_TRUE(slider("Battery"));
    press(slider("Battery"), Qt::Key_Left);
    EXPECT_EQ(laptop.batteryPercent(), 79.0);
}

TEST_F(SimulatedLaptopWindowTest, theUserWalksAwayAndComesBack)
{
    ASSERT_TRUE(button("Walk away"));
    EXPECT_FALSE(button("Come back"));
    button("Walk away")->click();
    EXPECT_TRUE(laptop.isUserAway());
    EXPECT_FALSE(button("Walk away"));
    ASSERT_TRUE(button("Come back"));
    button("Come back")->click();
    EXPECT_FALSE(laptop.isUserAway());
}

TEST_F(SimulatedLaptopWindowTest, theKeyboardStaysOnTheUsersButton)
{
    window.activateWindow();
    button("Walk away")->setFocus();
    press(button("Walk away"), Qt::Key_Space);
    EXPECT_EQ(window.focusWidget(), button("Come back"));
    press(button("Come back"), Qt::Key_Space);
    EXPECT_EQ(window.focusWidget(), button("Walk away"));
}

TEST_F(SimulatedLaptopWindowTest, coolsDownAtAPress)
{
    machine.world.advance(minutes(30));
    ASSERT_TRUE(button("Cool down to room temperature"));
    button("Cool down to room temperature")->click();
    EXPECT_NEAR(summarised(laptop.trueReadings()).bridgeTemp, 20.5, 1.0);
}

TEST_F(SimulatedLaptopWindowTest, everyControlHasANameAndIsReachedByKeyboard)
{
    int controls = 0;
    for (auto *control : window.findChildren<QAbstractButton *>()) {
        EXPECT_FALSE(nameOf(control).isEmpty());
        EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus) << nameOf(control).toStdString();
        ++controls;
    }
    EXPECT_EQ(controls, 6);
    for (const char *name : {"Room", "Battery"}) {
        ASSERT_TRUE(slider(name)) << name;
        EXPECT_TRUE(slider(name)->focusPolicy() & Qt::TabFocus) << name;
    }
}

TEST_F(SimulatedLaptopWindowTest, thePlotSaysTheNewestValuesAndTheTarget)
{
    ASSERT_TRUE(plot);
    EXPECT_EQ(plot->accessibleName(), "Temperatures of the last five minutes");
    machine.world.advance(minutes(5));
    state.targetTemp = 41.5;
    window.refresh();
    const auto bridge = QString::asprintf("Bridge %.0f °C, ", summarised(laptop.trueReadings()).bridgeTemp);
    EXPECT_THAT(plot->accessibleDescription().toStdString(), testing::StartsWith(bridge.toStdString()));
    EXPECT_THAT(plot->accessibleDescription().toStdString(), testing::EndsWith("Target 41.5 °C"));
}

TEST_F(SimulatedLaptopWindowTest, aWarmupIsShaded)
{
    const auto orangePixels = [this] {
        const auto image = plot->grab().toImage();
        int count = 0;
        for (int y = image.height() / 3; y < image.height() * 9 / 10; ++y)
            for (int x = 0; x < image.width(); ++x)
                if (const QColor color(image.pixel(x, y));
                    color.red() > color.blue() + 20 && color.green() > color.blue())
                    ++count;
        return count;
    };
    for (int i = 0; i < 60; ++i) {
        machine.world.advance(seconds(1));
        window.refresh();
    }
    const int before = orangePixels();
    state.isWarmingUp = true;
    for (int i = 0; i < 60; ++i) {
        machine.world.advance(seconds(1));
        window.refresh();
    }
    EXPECT_GT(orangePixels(), before + 2000);
}

TEST_F(SimulatedLaptopWindowTest, followsTheThemeAtRunTime)
{
    const auto ground = [this] { return window.grab().toImage().pixelColor(2, 2).lightness(); };
    QApplication::setPalette(kit::themePalette(false));
    QApplication::processEvents();
    EXPECT_GT(ground(), 200);
    QApplication::setPalette(kit::themePalette(true));
    QApplication::processEvents();
    EXPECT_LT(ground(), 60);
    QApplication::setPalette(kit::themePalette(false));
}

} // namespace
} // namespace orvalen
