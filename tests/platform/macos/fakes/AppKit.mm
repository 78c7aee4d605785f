#include "tests/platform/macos/fakes/AppKit.h"

#include <algorithm>
#include <cstdio>

#include <AppKit/AppKit.h>

#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/ObjectiveC.h"
#include "tests/platform/macos/fakes/SystemVersion.h"

using namespace orvalen;
using fake::note;

namespace {

fake::MenuBar menuBar;
std::vector<fake::RunningApplication> running;
NSStatusBar *systemBar;
int systemVersion = 13;

const char *textOf(NSString *string)
{
    return string ? string.UTF8String : "nil";
}

} // namespace

namespace orvalen::fake {

void setSystemVersion(int major)
{
    systemVersion = major;
}

bool isAvailable(const char *versions)
{
    int wanted = 0;
    return std::sscanf(versions, "macOS %d", &wanted) == 1 && wanted <= systemVersion;
}

} // namespace orvalen::fake

@implementation NSImage {
@public
    NSString *name;
}

+ (instancetype)imageWithSystemSymbolName:(NSString *)symbolName accessibilityDescription:(NSString *)description
{
    note("imageWithSystemSymbolName %s accessibilityDescription %s", textOf(symbolName), textOf(description));
    if (std::find(menuBar.symbols.begin(), menuBar.symbols.end(), textOf(symbolName)) == menuBar.symbols.end())
        return nil;
    NSImage *const image = [NSImage new];
    image->name = symbolName;
    return image;
}

- (void)setTemplate:(BOOL)isTemplate
{
    note("setTemplate %d of %s", isTemplate, textOf(name));
}

@end

@implementation NSControl {
    __weak id target;
    SEL action;
}

- (id)target
{
    return target;
}

- (void)setTarget:(id)newTarget
{
    note(newTarget ? "setTarget" : "setTarget nil");
    target = newTarget;
}

- (SEL)action
{
    return action;
}

- (void)setAction:(SEL)newAction
{
    note("setAction %s", *reinterpret_cast<const char *const *>(newAction));
    action = newAction;
}

@end

@implementation NSButton {
    NSString *title;
    NSImage *image;
    NSCellImagePosition imagePosition;
}

- (NSString *)title
{
    return title;
}

- (void)setTitle:(NSString *)newTitle
{
    note("setTitle %s", textOf(newTitle));
    title = newTitle;
}

- (NSImage *)image
{
    return image;
}

- (void)setImage:(NSImage *)newImage
{
    note("setImage %s", newImage ? textOf(newImage->name) : "nil");
    image = newImage;
}

- (NSCellImagePosition)imagePosition
{
    return imagePosition;
}

- (void)setImagePosition:(NSCellImagePosition)newImagePosition
{
    note("setImagePosition %lu", newImagePosition);
    imagePosition = newImagePosition;
}

@end

@implementation NSStatusBarButton
@end

@implementation NSStatusItem {
    NSStatusBarButton *button;
}

- (instancetype)init
{
    self = [super init];
    if (menuBar.itemsHaveButtons)
        button = [NSStatusBarButton new];
    return self;
}

- (NSStatusBarButton *)button
{
    return button;
}

@end

@implementation NSStatusBar {
@public
    __weak NSStatusItem *last;
}

+ (NSStatusBar *)systemStatusBar
{
    return systemBar;
}

- (NSStatusItem *)statusItemWithLength:(CGFloat)length
{
    note("statusItemWithLength %.1f", length);
    NSStatusItem *const item = [NSStatusItem new];
    last = item;
    return item;
}

- (void)removeStatusItem:(NSStatusItem *)item
{
    note(item && item == last ? "removeStatusItem" : "removeStatusItem of a stranger");
    last = nil;
}

@end

namespace orvalen::fake {

void openMenuBar(const MenuBar &newMenuBar)
{
    menuBar = newMenuBar;
    systemBar = [NSStatusBar new];
}

void closeMenuBar()
{
    systemBar = nil;
}

void clickStatusItem()
{
    void *button = nullptr;
    void *target = nullptr;
    SEL action = nullptr;
    @autoreleasepool {
        NSStatusItem *const item = systemBar->last;
        button = (__bridge void *)item.button;
        target = (__bridge void *)item.button.target;
        action = item.button.action;
    }
    // Nothing is kept alive for the click: what the action destroys is gone.
    if (target && action)
        send(target, action, button);
}

} // namespace orvalen::fake

NSApplication *NSApp;

@implementation NSWindow {
@public
    fake::Window window;
}

- (BOOL)isVisible
{
    return window.isVisible && !NSApp.hidden;
}

- (BOOL)isMiniaturized
{
    return window.isMiniaturized;
}

- (BOOL)canBecomeKeyWindow
{
    return window.canBecomeKeyWindow;
}

- (void)makeKeyAndOrderFront:(id)sender
{
    note("makeKeyAndOrderFront %s%s", window.name.c_str(), sender ? " with a sender" : "");
}

@end

@implementation NSApplication {
@public
    std::vector<NSWindow *> all;
    bool isHidden;
}

- (BOOL)isHidden
{
    return isHidden;
}

- (void)unhide:(id)sender
{
    note(sender ? "unhide with a sender" : "unhide");
    isHidden = false;
}

- (NSArray<NSWindow *> *)windows
{
    return [[NSArray alloc] initWithObjects:all.data() count:all.size()];
}

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy
{
    note("setActivationPolicy %ld", activationPolicy);
    return YES;
}

- (void)activate
{
    note("activate");
}

- (void)activateIgnoringOtherApps:(BOOL)flag
{
    note("activateIgnoringOtherApps %d", flag);
}

@end

namespace orvalen::fake {

void startApplication(const std::vector<Window> &windows)
{
    NSApp = [NSApplication new];
    for (const auto &window : windows) {
        NSWindow *const made = [NSWindow new];
        made->window = window;
        NSApp->all.push_back(made);
    }
}

void endApplication()
{
    NSApp = nil;
}

void hideApplication()
{
    NSApp->isHidden = true;
}

void setRunningApplications(const std::vector<RunningApplication> &applications)
{
    running = applications;
}

} // namespace orvalen::fake

@implementation NSRunningApplication {
    fake::RunningApplication application;
}

+ (NSArray<NSRunningApplication *> *)runningApplicationsWithBundleIdentifier:(NSString *)bundleIdentifier
{
    note("runningApplicationsWithBundleIdentifier %s", textOf(bundleIdentifier));
    std::vector<NSRunningApplication *> found;
    for (const auto &one : running)
        if (one.bundleIdentifier == textOf(bundleIdentifier)) {
            NSRunningApplication *const made = [NSRunningApplication new];
            made->application = one;
            found.push_back(made);
        }
    return [[NSArray alloc] initWithObjects:found.data() count:found.size()];
}

- (pid_t)processIdentifier
{
    return application.processIdentifier;
}

- (BOOL)isTerminated
{
    return application.isTerminated;
}

@end
