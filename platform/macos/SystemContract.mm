// SystemContract.cpp's other half: what the adapters take for granted of the frameworks that speak Objective-C.
#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#import <Metal/Metal.h>

#include <sys/types.h>

#include <cstdint>
#include <type_traits>

#include "platform/macos/SystemContract.h"

namespace orvalen::system_contract {

namespace {

/// For objects: what is given can stand where the other is expected.
template <typename Given, typename Expected>
constexpr bool isA = std::is_convertible_v<Given, Expected>;

// Foundation
static_assert(is<NSInteger, long> && is<NSUInteger, unsigned long> && is<CGFloat, double> && is<BOOL, bool>);
static_assert(isAs<NSStringEncoding, NSUInteger> && NSUTF8StringEncoding == 4);
static_assert(isA<decltype([[NSString alloc] initWithBytes:static_cast<const void *>(nullptr)
                                                    length:NSUInteger {}
                                                  encoding:NSUTF8StringEncoding]),
                  NSString *>);
static_assert(is<decltype([[NSString alloc] init].UTF8String), const char *>);
static_assert(isAs<NSActivityOptions, std::uint64_t>);
static_assert(NSActivityUserInitiatedAllowingIdleSystemSleep == 0x00EFFFFF);
static_assert(isA<decltype(NSProcessInfo.processInfo), NSProcessInfo *>);
static_assert(
    isA<decltype([NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                              reason:static_cast<NSString *>(nil)]),
        id<NSObject>>);
static_assert(is<decltype([NSProcessInfo.processInfo endActivity:static_cast<id<NSObject>>(nil)]), void>);

// AppKit: the status item
static_assert(isAs<NSCellImagePosition, NSUInteger> && NSNoImage == 0 && NSImageOnly == 1 && NSImageLeft == 2);
static_assert(isA<decltype([NSImage imageWithSystemSymbolName:static_cast<NSString *>(nil)
                                     accessibilityDescription:static_cast<NSString *>(nil)]),
                  NSImage *>);
static_assert(is<decltype([static_cast<NSImage *>(nil) setTemplate:YES]), void>);
static_assert(isA<decltype(NSStatusBar.systemStatusBar), NSStatusBar *>);
static_assert(isA<decltype([NSStatusBar.systemStatusBar statusItemWithLength:CGFloat{}]), NSStatusItem *>);
static_assert(is<decltype([NSStatusBar.systemStatusBar removeStatusItem:static_cast<NSStatusItem *>(nil)]), void>);
static_assert(isA<decltype(static_cast<NSStatusItem *>(nil).button), NSButton *>);
static_assert(isA<decltype(static_cast<NSButton *>(nil).title), NSString *>);
static_assert(isA<decltype(static_cast<NSButton *>(nil).image), NSImage *>);
static_assert(isAs<decltype(static_cast<NSButton *>(nil).imagePosition), NSCellImagePosition>);
static_assert(isA<decltype(static_cast<NSButton *>(nil).target), id>);
static_assert(is<decltype(static_cast<NSButton *>(nil).action), SEL>);

// AppKit: the application and its windows
static_assert(isAs<NSApplicationActivationPolicy, NSInteger> && NSApplicationActivationPolicyRegular == 0);
static_assert(isA<decltype(NSApp), NSApplication *>);
static_assert(
    is<decltype([static_cast<NSApplication *>(nil) setActivationPolicy:NSApplicationActivationPolicyRegular]), BOOL>);
static_assert(is<decltype(static_cast<NSApplication *>(nil).hidden), BOOL>);
static_assert(is<decltype([static_cast<NSApplication *>(nil) unhide:nil]), void>);
static_assert(isA<decltype(static_cast<NSApplication *>(nil).windows), NSArray<NSWindow *> *>);
static_assert(is<decltype(static_cast<NSWindow *>(nil).visible), BOOL>);
static_assert(is<decltype(static_cast<NSWindow *>(nil).miniaturized), BOOL>);
static_assert(is<decltype(static_cast<NSWindow *>(nil).canBecomeKeyWindow), BOOL>);
static_assert(is<decltype([static_cast<NSWindow *>(nil) makeKeyAndOrderFront:nil]), void>);

// AppKit: what else runs
static_assert(isA<decltype([NSRunningApplication runningApplicationsWithBundleIdentifier:static_cast<NSString *>(nil)]),
                  NSArray<NSRunningApplication *> *>);
static_assert(is<decltype(static_cast<NSRunningApplication *>(nil).processIdentifier), pid_t> && is<pid_t, int>);
static_assert(is<decltype(static_cast<NSRunningApplication *>(nil).terminated), BOOL>);

// Metal
static_assert(isAs<MTLResourceOptions, NSUInteger>);
static_assert(MTLResourceCPUCacheModeDefaultCache == 0 && MTLResourceStorageModeShared == 0);
static_assert(isA<decltype(MTLCreateSystemDefaultDevice()), id<MTLDevice>>);
static_assert(isA<decltype([static_cast<id<MTLDevice>>(nil) newCommandQueue]), id<MTLCommandQueue>>);
static_assert(isA<decltype([static_cast<id<MTLDevice>>(nil) newBufferWithLength:NSUInteger {}
                                                                        options:MTLResourceStorageModeShared]),
                  id<MTLBuffer>>);
static_assert(isA<decltype([static_cast<id<MTLCommandQueue>>(nil) commandBuffer]), id<MTLCommandBuffer>>);
static_assert(isA<decltype([static_cast<id<MTLCommandBuffer>>(nil) blitCommandEncoder]), id<MTLBlitCommandEncoder>>);
static_assert(is<decltype([static_cast<id<MTLCommandBuffer>>(nil) commit]), void>);
static_assert(is<decltype([static_cast<id<MTLCommandBuffer>>(nil) waitUntilCompleted]), void>);
static_assert(is<decltype([static_cast<id<MTLBlitCommandEncoder>>(nil) copyFromBuffer:static_cast<id<MTLBuffer>>(nil)
                     sourceOffset:NSUInteger {}
                     toBuffer:static_cast<id<MTLBuffer>>(nil)
                     destinationOffset:NSUInteger {}
                     size:NSUInteger{}]),
                 void>);
static_assert(is<decltype([static_cast<id<MTLBlitCommandEncoder>>(nil) endEncoding]), void>);

} // namespace

} // namespace orvalen::system_contract
