#include "app/OrvalenApp.h"

#include <utility>

#include "app/FirstPaint.h"
#include "app/NativePlatform.h"
#include "core/AppState.h"
#include "platform/Platform.h"
#include "platform/ProgramInstance.h"
#include "streaming/WebScreenServer.h"
#include "system/HotKeyManager.h"
#include "ui/WindowServices.h"

namespace orvalen {

namespace {

AppDelegate::Services delegateServices()
{
    auto &platform = Platform::installed();
    return {*platform.application, HotKeyManager::shared(),   *platform.statusBar,
            AppState::shared(),    WebScreenServer::shared(), *platform.dispatch};
}

void answer(ProgramInstance &instance, std::vector<QWidget *> windows, AppDelegate &delegate)
{
    instance.serve({
        .activate =
            [windows = std::move(windows), &delegate](const std::string &token) {
                for (auto *const window : windows)
                    window->show();
                delegate.menuBarClicked();
                endLaunch(token);
            },
        .performAction =
            [&delegate](std::string_view name, const std::string &token) {
                delegate.performAction(name);
                endLaunch(token);
            },
    });
}

} // namespace

OrvalenApp::OrvalenApp() : window(WindowServices::shared()), appDelegate(delegateServices()) {}

void OrvalenApp::beginWhenSeen(ProgramInstance &instance, std::vector<QWidget *> windows)
{
    afterFirstPaint(window, [this, &instance, windows = std::move(windows)] {
        appDelegate.applicationDidFinishLaunching();
        answer(instance, windows, appDelegate);
    });
}

} // namespace orvalen
