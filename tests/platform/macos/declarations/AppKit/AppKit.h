// What our adapters use of AppKit, as its documentation gives it. Stands in for the system's header where there is
// none.
#pragma once

#include <Foundation/Foundation.h>
#include <sys/types.h>

// Images
@interface NSImage : NSObject
+ (instancetype)imageWithSystemSymbolName:(NSString *)symbolName
                 accessibilityDescription:(NSString *)description ORVALEN_MACOS_SINCE(11.0);
- (void)setTemplate:(BOOL)isTemplate;
@end

typedef NSUInteger NSCellImagePosition;
enum : NSCellImagePosition
{
    NSNoImage = 0,
    NSImageOnly = 1,
    NSImageLeft = 2
};

// The menu bar's right end
@interface NSControl : NSObject
@property(weak) id target;
@property SEL action;
@end

@interface NSButton : NSControl
@property(copy) NSString *title;
@property(strong) NSImage *image;
@property NSCellImagePosition imagePosition;
@end

ORVALEN_MACOS_SINCE(10.10)
@interface NSStatusBarButton : NSButton
@end

@interface NSStatusItem : NSObject
@property(readonly, strong) NSStatusBarButton *button ORVALEN_MACOS_SINCE(10.10);
@end

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar *systemStatusBar;
- (NSStatusItem *)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem *)item;
@end

// The application and its windows
@interface NSWindow : NSObject
@property(readonly, getter=isVisible) BOOL visible;
@property(readonly, getter=isMiniaturized) BOOL miniaturized;
@property(readonly) BOOL canBecomeKeyWindow;
- (void)makeKeyAndOrderFront:(id)sender;
@end

typedef NSInteger NSApplicationActivationPolicy;
enum : NSApplicationActivationPolicy
{
    NSApplicationActivationPolicyRegular = 0
};

@interface NSApplication : NSObject
@property(readonly, getter=isHidden) BOOL hidden;
- (void)unhide:(id)sender;
@property(readonly, copy) NSArray<NSWindow *> *windows;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)activate ORVALEN_MACOS_SINCE(14.0);
- (void)activateIgnoringOtherApps:(BOOL)flag ORVALEN_MACOS_UNTIL(10.0, 14.0);
@end

extern "C" NSApplication *NSApp;

// What else runs in this session
@interface NSRunningApplication : NSObject
@property(readonly) pid_t processIdentifier;
@property(readonly, getter=isTerminated) BOOL terminated;
+ (NSArray<NSRunningApplication *> *)runningApplicationsWithBundleIdentifier:(NSString *)bundleIdentifier;
@end
