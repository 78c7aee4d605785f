#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "platform/GraphicsCopies.h"
#include "platform/linux/VulkanDevice.h"

namespace orvalen {

/// A buffer for copying from and to. On a device that shares its memory with the processor it lies in shared memory.
class GraphicsBufferVulkan : public GraphicsBuffer
{
public:
    /// `device` outlives the buffer. Throws vk::SystemError where the device has no such memory left.
    GraphicsBufferVulkan(const VulkanDevice &device, std::size_t bytes);
    ~GraphicsBufferVulkan() override;
    GraphicsBufferVulkan(GraphicsBufferVulkan &&) = delete;

    [[nodiscard]] vk::Buffer handle() const;
    [[nodiscard]] std::size_t size() const { return bytes; }

    /// The contents as the processor sees them between two copies; empty where it cannot.
    [[nodiscard]] std::span<std::byte> contents();

private:
    struct Storage;

    const VulkanDevice &device;
    std::size_t bytes;
    std::unique_ptr<Storage> storage;
    std::byte *mapped = nullptr;
};

} // namespace orvalen
