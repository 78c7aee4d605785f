#include "platform/simulated/GraphicsCopiesSimulated.h"

#include <cstring>
#include <new>

#include "platform/simulated/SimulatedLaptop.h"

namespace orvalen {

namespace {

struct MemoryBuffer : GraphicsBuffer
{
    explicit MemoryBuffer(std::size_t bytes) : memory(std::make_unique<std::byte[]>(bytes)) {}
    std::unique_ptr<std::byte[]> memory;
};

class MemoryQueue : public GraphicsQueue
{
public:
    explicit MemoryQueue(SimulatedLaptop &laptop) : laptop(laptop) {}

    std::unique_ptr<GraphicsBuffer> makeBuffer(std::size_t bytes) override
    {
        try {
            return std::make_unique<MemoryBuffer>(bytes);
        } catch (const std::bad_alloc &) {
            return nullptr;
        }
    }

    void copy(GraphicsBuffer &from, GraphicsBuffer &to, std::size_t bytes) override
    {
        std::memcpy(static_cast<MemoryBuffer &>(to).memory.get(), static_cast<MemoryBuffer &>(from).memory.get(),
                    bytes);
        laptop.countCopy(bytes);
    }

private:
    SimulatedLaptop &laptop;
};

} // namespace

std::unique_ptr<GraphicsQueue> GraphicsCopiesSimulated::openDefaultQueue()
{
    return std::make_unique<MemoryQueue>(laptop);
}

} // namespace orvalen
