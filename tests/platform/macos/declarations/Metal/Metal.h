// What our adapters use of Metal, as its documentation gives it. Stands in for the system's header where there is none.
#pragma once

#include <Foundation/Foundation.h>

typedef NSUInteger MTLResourceOptions;
enum : MTLResourceOptions
{
    MTLResourceCPUCacheModeDefaultCache = 0,
    MTLResourceStorageModeShared ORVALEN_MACOS_SINCE(10.11) = 0
};

ORVALEN_MACOS_SINCE(10.11)
@protocol MTLBuffer <NSObject>
@end

ORVALEN_MACOS_SINCE(10.11)
@protocol MTLBlitCommandEncoder <NSObject>
- (void)copyFromBuffer:(id<MTLBuffer>)sourceBuffer
          sourceOffset:(NSUInteger)sourceOffset
              toBuffer:(id<MTLBuffer>)destinationBuffer
     destinationOffset:(NSUInteger)destinationOffset
                  size:(NSUInteger)size;
- (void)endEncoding;
@end

ORVALEN_MACOS_SINCE(10.11)
@protocol MTLCommandBuffer <NSObject>
- (id<MTLBlitCommandEncoder>)blitCommandEncoder;
- (void)commit;
- (void)waitUntilCompleted;
@end

ORVALEN_MACOS_SINCE(10.11)
@protocol MTLCommandQueue <NSObject>
- (id<MTLCommandBuffer>)commandBuffer;
@end

ORVALEN_MACOS_SINCE(10.11)
@protocol MTLDevice <NSObject>
- (id<MTLCommandQueue>)newCommandQueue;
- (id<MTLBuffer>)newBufferWithLength:(NSUInteger)length options:(MTLResourceOptions)options;
@end

extern "C" id<MTLDevice> MTLCreateSystemDefaultDevice(void) ORVALEN_MACOS_SINCE(10.11)
    __attribute__((ns_returns_retained));
