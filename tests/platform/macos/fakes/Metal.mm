#include "tests/platform/macos/fakes/Metal.h"

#include <cstdio>
#include <cstdlib>

#include <Metal/Metal.h>

#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/ObjectiveC.h"

using namespace orvalen;
using fake::note;

namespace {

fake::GraphicsSystem graphicsSystem;
char nextBuffer = 'A';

void insist(bool condition, const char *rule)
{
    if (condition)
        return;
    std::fprintf(stderr, "Metal's fake: %s\n", rule);
    std::abort();
}

} // namespace

namespace orvalen::fake {

void setGraphicsSystem(const GraphicsSystem &newSystem)
{
    graphicsSystem = newSystem;
    nextBuffer = 'A';
}

} // namespace orvalen::fake

@interface FakeBuffer : NSObject <MTLBuffer>
@end

@implementation FakeBuffer {
@public
    char name;
}

- (instancetype)init
{
    self = [super init];
    name = nextBuffer++;
    return self;
}

@end

namespace {

char nameOf(id<MTLBuffer> buffer)
{
    insist(buffer, "a copy wants two buffers");
    return static_cast<FakeBuffer *>(buffer)->name;
}

} // namespace

@interface FakeEncoder : NSObject <MTLBlitCommandEncoder>
@end

@implementation FakeEncoder {
@public
    bool hasEnded;
}

- (void)copyFromBuffer:(id<MTLBuffer>)sourceBuffer
          sourceOffset:(NSUInteger)sourceOffset
              toBuffer:(id<MTLBuffer>)destinationBuffer
     destinationOffset:(NSUInteger)destinationOffset
                  size:(NSUInteger)size
{
    insist(!hasEnded, "encoding has ended");
    note("copyFromBuffer %c sourceOffset %lu toBuffer %c destinationOffset %lu size %lu", nameOf(sourceBuffer),
         sourceOffset, nameOf(destinationBuffer), destinationOffset, size);
}

- (void)endEncoding
{
    insist(!hasEnded, "encoding has ended");
    hasEnded = true;
    note("endEncoding");
}

- (void)dealloc
{
    insist(hasEnded, "an encoder ends its encoding before it goes");
}

@end

@interface FakeCommandBuffer : NSObject <MTLCommandBuffer>
@end

@implementation FakeCommandBuffer {
    FakeEncoder *encoder;
    bool isCommitted;
}

- (id<MTLBlitCommandEncoder>)blitCommandEncoder
{
    note("blitCommandEncoder");
    fake::leaveSomethingToThePool();
    if (graphicsSystem.hasEncoders)
        encoder = [FakeEncoder new];
    return encoder;
}

- (void)commit
{
    insist(encoder && encoder->hasEnded, "encoding ends before the commit");
    isCommitted = true;
    note("commit");
}

- (void)waitUntilCompleted
{
    insist(isCommitted, "only what is committed can complete");
    note("waitUntilCompleted");
}

@end

@interface FakeQueue : NSObject <MTLCommandQueue>
@end

@implementation FakeQueue

- (id<MTLCommandBuffer>)commandBuffer
{
    note("commandBuffer");
    return graphicsSystem.hasCommandBuffers ? [FakeCommandBuffer new] : nil;
}

@end

@interface FakeDevice : NSObject <MTLDevice>
@end

@implementation FakeDevice

- (id<MTLCommandQueue>)newCommandQueue
{
    note("newCommandQueue");
    fake::leaveSomethingToThePool();
    return graphicsSystem.hasQueue ? [FakeQueue new] : nil;
}

- (id<MTLBuffer>)newBufferWithLength:(NSUInteger)length options:(MTLResourceOptions)options
{
    note("newBufferWithLength %lu options %lu", length, options);
    fake::leaveSomethingToThePool();
    return graphicsSystem.buffers-- > 0 ? [FakeBuffer new] : nil;
}

@end

id<MTLDevice> MTLCreateSystemDefaultDevice()
{
    note("MTLCreateSystemDefaultDevice");
    return graphicsSystem.hasDevice ? [FakeDevice new] : nil;
}
