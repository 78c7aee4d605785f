#include "platform/macos/ApplicationAppKit.h"

#include <cstdlib>

#import <AppKit/AppKit.h>

namespace orvalen {

namespace {

NSApplication *sharedApplication()
{
    if (!NSApp)
        std::abort();
    return NSApp;
}

class ApplicationWindowAppKit : public ApplicationWindow
{
public:
    explicit ApplicationWindowAppKit(NSWindow *window) : window(window) {}

    bool canBecomeKeyWindow() const override { return window.canBecomeKeyWindow; }
    void makeKeyAndOrderFront() override { [window makeKeyAndOrderFront:nil]; }

private:
    NSWindow *window;
};

} // namespace

void ApplicationAppKit::setActivationPolicy(ActivationPolicy policy)
{
    [sharedApplication() setActivationPolicy:static_cast<NSApplicationActivationPolicy>(policy)];
}

void ApplicationAppKit::activate(bool ignoringOtherApps)
{
    if (sharedApplication().hidden)
        [sharedApplication() unhide:nil];
    if (@available(macOS 14, *))
        [sharedApplication() activate];
    else
        [sharedApplication() activateIgnoringOtherApps:ignoringOtherApps];
}

std::vector<std::unique_ptr<ApplicationWindow>> ApplicationAppKit::windows()
{
    std::vector<std::unique_ptr<ApplicationWindow>> shown;
    for (NSWindow *const window in sharedApplication().windows)
        if (window.visible || window.miniaturized) // the list has those that were closed, too
            shown.push_back(std::make_unique<ApplicationWindowAppKit>(window));
    return shown;
}

} // namespace orvalen
