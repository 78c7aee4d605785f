#include "platform/linux/GraphicsBufferVulkan.h"

#include <algorithm>
#include <vector>

namespace orvalen {

/// The memory goes after the buffer that lies in it.
struct GraphicsBufferVulkan::Storage
{
    vk::raii::DeviceMemory memory;
    vk::raii::Buffer buffer;
    bool isVisible;
};

namespace {

using Property = vk::MemoryPropertyFlagBits;

constexpr auto visible = Property::eHostVisible | Property::eHostCoherent;

/// Kinds of memory with other properties than these need extensions that are not asked for.
constexpr auto ordinary = Property::eDeviceLocal | visible | Property::eHostCached;

struct MemoryKind
{
    std::uint32_t index;
    vk::MemoryPropertyFlags properties;
    vk::DeviceSize heapBytes;
    int rank;
};

/// The kinds of memory among `allowed`, best first.
std::vector<MemoryKind> memoryKinds(const vk::raii::PhysicalDevice &device, std::uint32_t allowed)
{
    const bool isDiscrete = device.getProperties().deviceType == vk::PhysicalDeviceType::eDiscreteGpu;
    const auto memory = device.getMemoryProperties();
    std::vector<MemoryKind> kinds;
    for (std::uint32_t i = 0; i < memory.memoryTypeCount; ++i) {
        const vk::MemoryPropertyFlags properties = memory.memoryTypes[i].propertyFlags;
        if ((allowed & (1u << i)) == 0 || (properties & ~ordinary))
            continue;
        const bool isLocal = static_cast<bool>(properties & Property::eDeviceLocal);
        const bool isVisible = (properties & visible) == visible;
        kinds.push_back({i, properties, memory.memoryHeaps[memory.memoryTypes[i].heapIndex].size,
                         (isLocal ? 2 : 0) + (isVisible != isDiscrete ? 1 : 0)});
    }
    std::stable_sort(kinds.begin(), kinds.end(), [](const auto &a, const auto &b) { return a.rank > b.rank; });
    return kinds;
}

vk::DeviceSize largestHeap(const vk::raii::PhysicalDevice &device)
{
    const auto memory = device.getMemoryProperties();
    vk::DeviceSize largest = 0;
    for (std::uint32_t i = 0; i < memory.memoryHeapCount; ++i)
        largest = std::max(largest, memory.memoryHeaps[i].size);
    return largest;
}

} // namespace

GraphicsBufferVulkan::GraphicsBufferVulkan(const VulkanDevice &device, std::size_t bytes) : device(device), bytes(bytes)
{
    // Sizes beyond reason are not for the driver's arithmetic.
    if (bytes == 0 || bytes > largestHeap(device.physicalDevice))
        throw vk::OutOfDeviceMemoryError("no such buffer");
    const vk::BufferCreateInfo wanted({}, bytes,
                                      vk::BufferUsageFlagBits::eTransferSrc | vk::BufferUsageFlagBits::eTransferDst);
    vk::raii::Buffer buffer(device.device, wanted);
    const auto needed = buffer.getMemoryRequirements();
    for (const MemoryKind &kind : memoryKinds(device.physicalDevice, needed.memoryTypeBits)) {
        if (needed.size > kind.heapBytes)
            continue;
        try {
            vk::raii::DeviceMemory memory(device.device, vk::MemoryAllocateInfo(needed.size, kind.index));
            buffer.bindMemory(*memory, 0);
            storage.reset(new Storage{std::move(memory), std::move(buffer), (kind.properties & visible) == visible});
            return;
        } catch (const vk::OutOfDeviceMemoryError &) {
        } catch (const vk::OutOfHostMemoryError &) {
        }
    }
    throw vk::OutOfDeviceMemoryError("no memory for the buffer");
}

GraphicsBufferVulkan::~GraphicsBufferVulkan()
{
    if (device.state == VulkanDevice::State::stuck)
        static_cast<void>(storage.release());
}

vk::Buffer GraphicsBufferVulkan::handle() const
{
    return *storage->buffer;
}

std::span<std::byte> GraphicsBufferVulkan::contents()
{
    if (!storage->isVisible)
        return {};
    if (!mapped)
        mapped = static_cast<std::byte *>(storage->memory.mapMemory(0, VK_WHOLE_SIZE)); // Unmapped when it is freed.
    return {mapped, bytes};
}

} // namespace orvalen
