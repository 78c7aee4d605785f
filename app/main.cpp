#include "app/FirstPaint.h"
#include "app/NativePlatform.h"
#include "app/Program.h"
#include "core/AppDelegate.h"
#include "core/AppState.h"
#include "platform/posix/TerminationSignals.h"
#include "streaming/WebScreenServer.h"
#include "system/HotKeyManager.h"
#include "ui/MainView.h"
#include "ui/WindowServices.h"

int main(int argc, char **argv)
{
    using namespace orvalen;

    const TerminationSignals signals;
    const auto instance = nativeProgramInstance(ORVALEN_APPLICATION_ID);
    if (!instance->begin())
        return 0;
    prepareNativePlatform();
    Program program(argc, argv, signals);
    Platform::install(nativePlatform(QStringLiteral("Orvalen")));
    auto &platform = Platform::installed();

    MainView window(WindowServices::shared());
    window.show();
    // Asks the desktop, whose answer need not be waited for: a window first.
    platform.dispatch->onMain([&] { window.followColorScheme(*platform.colorScheme); });

    AppDelegate delegate({*platform.application, HotKeyManager::shared(), *platform.statusBar, AppState::shared(),
                          WebScreenServer::shared(), *platform.dispatch});
    afterFirstPaint(window, [&] {
        delegate.applicationDidFinishLaunching();
        program.answer(*instance, {&window}, delegate);
    });
    program.run();
}
