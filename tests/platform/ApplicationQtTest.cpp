#include "platform/qt/ApplicationQt.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QWidget>
#include <QWindow>

#include <memory>
#include <vector>

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A desktop on which the keyboard stays with whatever other program has it.
class ApplicationQtTest : public ::testing::Test
{
protected:
    static std::unique_ptr<QWidget> window(Qt::WindowFlags flags = Qt::Window)
    {
        auto widget = std::make_unique<QWidget>(nullptr, flags);
        widget->setAttribute(Qt::WA_ShowWithoutActivating);
        widget->show();
        return widget;
    }

    std::vector<bool> canBecomeKey()
    {
        std::vector<bool> all;
        for (const auto &window : application.windows())
            all.push_back(window->canBecomeKeyWindow());
        return all;
    }

    std::vector<QWindow *> forward;
    ApplicationQt application{[this](QWindow &window) { forward.push_back(&window); }};
};

TEST_F(ApplicationQtTest, hasNoWindowBeforeOneIsShown)
{
    const QWidget hidden;
    EXPECT_THAT(canBecomeKey(), IsEmpty());
}

TEST_F(ApplicationQtTest, listsWindowsThatAreShownMinimisedOnesToo)
{
    const auto plain = window();
    const auto minimised = window();
    minimised->showMinimized();
    EXPECT_THAT(canBecomeKey(), ElementsAre(true, true));
}

TEST_F(ApplicationQtTest, forgetsWindowsThatWereClosed)
{
    const auto first = window();
    const auto second = window();
    first->close();
    EXPECT_THAT(canBecomeKey(), ElementsAre(true));
}

TEST_F(ApplicationQtTest, givesNoKeyboardToTooltipsMenusAndTheTraysOwnWindow)
{
    const auto tip = window(Qt::ToolTip);
    const auto splash = window(Qt::SplashScreen);
    const auto dock = window(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    const auto deaf = window(Qt::Window | Qt::WindowDoesNotAcceptFocus);
    const auto dialog = window(Qt::Dialog);
    const auto menu = window(Qt::Popup); // the last, for it closes when another opens
    EXPECT_THAT(canBecomeKey(), ElementsAre(false, false, false, false, true, false));
}

TEST_F(ApplicationQtTest, bringsThatWindowForward)
{
    const auto first = window();
    const auto second = window();
    application.windows()[0]->makeKeyAndOrderFront();
    EXPECT_THAT(forward, ElementsAre(first->windowHandle()));
}

TEST_F(ApplicationQtTest, unminimisesTheWindowThatItBringsForward)
{
    const auto widget = window();
    widget->showMaximized();
    widget->showMinimized();
    ASSERT_TRUE(widget->isMinimized());
    application.windows()[0]->makeKeyAndOrderFront();
    EXPECT_FALSE(widget->windowHandle()->windowStates().testFlag(Qt::WindowMinimized));
    EXPECT_TRUE(widget->windowHandle()->windowStates().testFlag(Qt::WindowMaximized));
    EXPECT_THAT(forward, ElementsAre(widget->windowHandle()));
}

TEST_F(ApplicationQtTest, survivesAWindowThatHasGoneSinceItWasListed)
{
    auto widget = window();
    const auto windows = application.windows();
    widget.reset();
    EXPECT_FALSE(windows[0]->canBecomeKeyWindow());
    windows[0]->makeKeyAndOrderFront();
    EXPECT_THAT(forward, IsEmpty());
}

TEST_F(ApplicationQtTest, activatesByTheWindowThatWasMadeLastAndCanHaveTheKeyboard)
{
    const auto first = window();
    const auto second = window();
    const auto minimised = window();
    minimised->showMinimized();
    const auto tip = window(Qt::ToolTip);
    application.activate(true);
    EXPECT_THAT(forward, ElementsAre(second->windowHandle()));
}

TEST_F(ApplicationQtTest, activatesNothingWithoutAWindow)
{
    const auto closed = window();
    closed->close();
    application.activate(true);
    EXPECT_THAT(forward, IsEmpty());
}

TEST_F(ApplicationQtTest, leavesTheKeyboardWhereItIsAmongItsOwnWindows)
{
    const auto first = window();
    const auto second = window();
    first->activateWindow();
    QApplication::processEvents();
    ASSERT_EQ(QGuiApplication::focusWindow(), first->windowHandle());
    application.activate(true);
    EXPECT_THAT(forward, IsEmpty());
}

} // namespace
} // namespace orvalen
