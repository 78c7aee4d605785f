#include <Foundation/Foundation.h>

#include <string>
#include <vector>

#include "tests/platform/macos/fakes/Calls.h"

@implementation NSString {
    std::string utf8;
}

- (instancetype)initWithBytes:(const void *)bytes length:(NSUInteger)len encoding:(NSStringEncoding)encoding
{
    self = [super init];
    if (encoding != NSUTF8StringEncoding)
        return nil;
    utf8.assign(static_cast<const char *>(bytes), len);
    return utf8.find('\xFF') == std::string::npos ? self : nil;
}

- (const char *)UTF8String
{
    return utf8.c_str();
}

@end

@implementation NSArray {
    std::vector<id> items;
}

- (instancetype)initWithObjects:(const id[])objects count:(NSUInteger)cnt
{
    self = [super init];
    items.assign(objects, objects + cnt);
    return self;
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)len
{
    NSUInteger given = 0;
    for (; given < len && state->state < items.size(); ++given, ++state->state)
        buffer[given] = items[state->state];
    state->itemsPtr = buffer;
    state->mutationsPtr = state->extra; // stays 0: this list does not change
    return given;
}

@end

/// What a program is at.
@interface OrvalenFakeActivity : NSObject {
@public
    std::string reason;
}
@end

@implementation OrvalenFakeActivity
@end

@implementation NSProcessInfo

+ (NSProcessInfo *)processInfo
{
    static NSProcessInfo *const theOne = [self new];
    return theOne;
}

- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString *)reason
{
    OrvalenFakeActivity *const activity = [OrvalenFakeActivity new];
    activity->reason = reason.UTF8String;
    orvalen::fake::note("beginActivity %#llx %s", static_cast<unsigned long long>(options), reason.UTF8String);
    return activity;
}

- (void)endActivity:(id<NSObject>)activity
{
    orvalen::fake::note("endActivity " + static_cast<OrvalenFakeActivity *>(activity)->reason);
}

@end
