// What our adapters use of Foundation, as its documentation gives it. Stands in for the system's header where there is
// none.
#pragma once

#include <Availability.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __LP64__
typedef long NSInteger;
typedef unsigned long NSUInteger;
#endif
typedef double CGFloat;

typedef bool BOOL;
#define YES true
#define NO false
#define nil nullptr

@protocol NSObject
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (instancetype)new;
- (instancetype)init;
- (void)dealloc;
@end

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding
{
    NSUTF8StringEncoding = 4
};

@interface NSString : NSObject
- (instancetype)initWithBytes:(const void *)bytes length:(NSUInteger)len encoding:(NSStringEncoding)encoding;
@property(readonly) const char *UTF8String __attribute__((objc_returns_inner_pointer));
@end

typedef struct
{
    unsigned long state;
    id __unsafe_unretained *itemsPtr;
    unsigned long *mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)len;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
- (instancetype)initWithObjects:(const ObjectType[])objects count:(NSUInteger)cnt;
@end

typedef enum : uint64_t
{
    NSActivityUserInitiatedAllowingIdleSystemSleep = 0x00EFFFFF
} NSActivityOptions;

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo *processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString *)reason;
- (void)endActivity:(id<NSObject>)activity;
@end
