#include "platform/linux/GraphicsQueueVulkan.h"

#include <exception>
#include <utility>

#include "platform/linux/GraphicsBufferVulkan.h"

namespace orvalen {
namespace {

using State = VulkanDevice::State;

void record(const vk::raii::CommandBuffer &commands, vk::Buffer from, vk::Buffer to, vk::DeviceSize bytes)
{
    commands.begin(vk::CommandBufferBeginInfo(vk::CommandBufferUsageFlagBits::eOneTimeSubmit));
    commands.copyBuffer(from, to, vk::BufferCopy(0, 0, bytes));
    // What lies in shared memory is there for the processor to see once the copy is complete.
    commands.pipelineBarrier(vk::PipelineStageFlagBits::eTransfer, vk::PipelineStageFlagBits::eHost, {},
                             vk::MemoryBarrier(vk::AccessFlagBits::eTransferWrite, vk::AccessFlagBits::eHostRead), {},
                             {});
    commands.end();
}

} // namespace

GraphicsQueueVulkan::GraphicsQueueVulkan(std::unique_ptr<VulkanDevice> device, std::chrono::nanoseconds patience,
                                         std::shared_ptr<std::atomic<bool>> hasStuck)
    : device(std::move(device)), patience(patience), hasStuck(std::move(hasStuck))
{
}

GraphicsQueueVulkan::~GraphicsQueueVulkan()
{
    if (device->state == State::stuck) {
        *hasStuck = true;
        static_cast<void>(device.release());
    }
}

std::unique_ptr<GraphicsBuffer> GraphicsQueueVulkan::makeBuffer(std::size_t bytes)
{
    if (device->state != State::working)
        return nullptr;
    try {
        return std::make_unique<GraphicsBufferVulkan>(*device, bytes);
    } catch (const std::exception &) {
        return nullptr;
    }
}

void GraphicsQueueVulkan::copy(GraphicsBuffer &from, GraphicsBuffer &to, std::size_t bytes)
{
    const auto &source = static_cast<GraphicsBufferVulkan &>(from);
    const auto &destination = static_cast<GraphicsBufferVulkan &>(to);
    if (device->state != State::working || bytes == 0 || bytes > source.size() || bytes > destination.size())
        return;
    bool isUnderWay = false;
    try {
        record(device->commands, source.handle(), destination.handle(), bytes);
        device->device.resetFences(*device->copied);
        const vk::SubmitInfo submission({}, {}, *device->commands);
        device->queue.submit(submission, *device->copied);
        isUnderWay = true;
        const auto outcome = device->device.waitForFences(*device->copied, true, patience.count());
        isUnderWay = outcome != vk::Result::eSuccess;
    } catch (const vk::DeviceLostError &) {
        device->state = State::lost;
        return;
    } catch (const std::exception &) { // NOLINT(bugprone-empty-catch): left out, unless it is under way already
    }
    if (isUnderWay)
        device->state = State::stuck;
}

} // namespace orvalen
