#pragma once

#include <cstddef>
#include <memory>

namespace orvalen {

/// A piece of graphics memory. Freed with the object.
class GraphicsBuffer
{
public:
    virtual ~GraphicsBuffer() = default;
};

/// A command queue on a graphics device; both are given back with the object, after its buffers. One thread at a time.
class GraphicsQueue
{
public:
    virtual ~GraphicsQueue() = default;

    /// A buffer of `bytes` bytes, or null where none can be had.
    [[nodiscard]] virtual std::unique_ptr<GraphicsBuffer> makeBuffer(std::size_t bytes) = 0;

    /// Copies `bytes` bytes from the start of `from` to the start of `to` and waits until the copy is complete.
    /// A copy that cannot be had is left out silently. Both buffers are of this queue.
    virtual void copy(GraphicsBuffer &from, GraphicsBuffer &to, std::size_t bytes) = 0;
};

/// The way to the machine's default graphics device. Any thread.
class GraphicsCopies
{
public:
    virtual ~GraphicsCopies() = default;

    /// A queue on the default device; null where there is no device or no queue. A processor that plays at being a
    /// graphics device counts as none.
    [[nodiscard]] virtual std::unique_ptr<GraphicsQueue> openDefaultQueue() = 0;
};

} // namespace orvalen
