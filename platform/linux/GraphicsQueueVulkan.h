#pragma once

#include <atomic>
#include <chrono>
#include <memory>

#include "platform/GraphicsCopies.h"
#include "platform/linux/VulkanDevice.h"

namespace orvalen {

/// Copies one at a time on a Vulkan device of its own.
class GraphicsQueueVulkan : public GraphicsQueue
{
public:
    /// `hasStuck` is set when a copy has outlasted `patience`.
    GraphicsQueueVulkan(std::unique_ptr<VulkanDevice> device, std::chrono::nanoseconds patience,
                        std::shared_ptr<std::atomic<bool>> hasStuck);
    ~GraphicsQueueVulkan() override;
    GraphicsQueueVulkan(GraphicsQueueVulkan &&) = delete;

    /// Of type GraphicsBufferVulkan.
    [[nodiscard]] std::unique_ptr<GraphicsBuffer> makeBuffer(std::size_t bytes) override;
    void copy(GraphicsBuffer &from, GraphicsBuffer &to, std::size_t bytes) override;

private:
    std::unique_ptr<VulkanDevice> device;
    std::chrono::nanoseconds patience;
    std::shared_ptr<std::atomic<bool>> hasStuck;
};

} // namespace orvalen
