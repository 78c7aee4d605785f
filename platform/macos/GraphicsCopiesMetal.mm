#include "platform/macos/GraphicsCopiesMetal.h"

#import <Metal/Metal.h>

namespace orvalen {

namespace {

class GraphicsBufferMetal : public GraphicsBuffer
{
public:
    explicit GraphicsBufferMetal(id<MTLBuffer> buffer) : buffer(buffer) {}

    [[nodiscard]] id<MTLBuffer> get() const { return buffer; }

private:
    id<MTLBuffer> buffer;
};

id<MTLBuffer> bufferOf(GraphicsBuffer &buffer)
{
    return static_cast<GraphicsBufferMetal &>(buffer).get();
}

// The threads that heat have no autorelease pool of their own: what a call leaves in one goes when the call returns.
class GraphicsQueueMetal : public GraphicsQueue
{
public:
    GraphicsQueueMetal(id<MTLDevice> device, id<MTLCommandQueue> queue) : device(device), queue(queue) {}

    std::unique_ptr<GraphicsBuffer> makeBuffer(std::size_t bytes) override
    {
        @autoreleasepool {
            const id<MTLBuffer> buffer = [device newBufferWithLength:bytes options:MTLResourceStorageModeShared];
            return buffer ? std::make_unique<GraphicsBufferMetal>(buffer) : nullptr;
        }
    }

    void copy(GraphicsBuffer &from, GraphicsBuffer &to, std::size_t bytes) override
    {
        @autoreleasepool {
            const id<MTLCommandBuffer> commands = [queue commandBuffer];
            const id<MTLBlitCommandEncoder> encoder = [commands blitCommandEncoder]; // of no commands: none
            if (!encoder)
                return;
            [encoder copyFromBuffer:bufferOf(from) sourceOffset:0 toBuffer:bufferOf(to) destinationOffset:0 size:bytes];
            [encoder endEncoding];
            [commands commit];
            [commands waitUntilCompleted];
        }
    }

private:
    id<MTLDevice> device;
    id<MTLCommandQueue> queue;
};

} // namespace

std::unique_ptr<GraphicsQueue> GraphicsCopiesMetal::openDefaultQueue()
{
    @autoreleasepool {
        const id<MTLDevice> device = MTLCreateSystemDefaultDevice();
        const id<MTLCommandQueue> queue = [device newCommandQueue]; // of no device: none
        return queue ? std::make_unique<GraphicsQueueMetal>(device, queue) : nullptr;
    }
}

} // namespace orvalen
