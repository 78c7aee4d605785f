#include "platform/qt/ApplicationQt.h"

#include <QGuiApplication>
#include <QPointer>
#include <QWindow>

#include <utility>

namespace orvalen {

namespace {

/// Tooltips, menus and the tray's own little window are none that a person works in.
bool canHaveKeyboard(const QWindow &window)
{
    const auto flags = window.flags();
    const auto type = window.type();
    return (type == Qt::Window || type == Qt::Dialog || type == Qt::Tool) &&
           !flags.testFlag(Qt::WindowDoesNotAcceptFocus) && !flags.testFlag(Qt::BypassWindowManagerHint);
}

class ApplicationWindowQt : public ApplicationWindow
{
public:
    ApplicationWindowQt(QWindow &window, const ApplicationQt::BringForward &bringForward)
        : window(&window), bringForward(bringForward)
    {
    }

    bool canBecomeKeyWindow() const override { return window && canHaveKeyboard(*window); }

    void makeKeyAndOrderFront() override
    {
        if (!window)
            return;
        window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
        bringForward(*window);
    }

private:
    QPointer<QWindow> window;
    ApplicationQt::BringForward bringForward;
};

} // namespace

void ApplicationQt::requestForward(QWindow &window)
{
    window.raise();
    window.requestActivate();
}

ApplicationQt::ApplicationQt(BringForward bringForward) : bringForward(std::move(bringForward)) {}

void ApplicationQt::setActivationPolicy(ActivationPolicy) {}

void ApplicationQt::activate(bool)
{
    if (QGuiApplication::focusWindow())
        return;
    const auto all = QGuiApplication::topLevelWindows();
    for (auto window = all.rbegin(); window != all.rend(); ++window)
        if ((*window)->isVisible() && canHaveKeyboard(**window) &&
            !(*window)->windowStates().testFlag(Qt::WindowMinimized))
            return bringForward(**window);
}

std::vector<std::unique_ptr<ApplicationWindow>> ApplicationQt::windows()
{
    std::vector<std::unique_ptr<ApplicationWindow>> shown;
    for (auto *const window : QGuiApplication::topLevelWindows())
        if (window->isVisible())
            shown.push_back(std::make_unique<ApplicationWindowQt>(*window, bringForward));
    return shown;
}

} // namespace orvalen
