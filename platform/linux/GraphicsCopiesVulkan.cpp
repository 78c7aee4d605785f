#include "platform/linux/GraphicsCopiesVulkan.h"

#include <algorithm>
#include <array>
#include <exception>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/GraphicsQueueVulkan.h"
#include "platform/linux/VulkanDevice.h"

namespace orvalen {
namespace {

using Type = vk::PhysicalDeviceType;

int rank(const vk::raii::PhysicalDevice &device)
{
    constexpr std::array bestFirst = {Type::eDiscreteGpu, Type::eIntegratedGpu, Type::eVirtualGpu, Type::eOther};
    const auto found = std::find(bestFirst.begin(), bestFirst.end(), device.getProperties().deviceType);
    return static_cast<int>(found - bestFirst.begin());
}

/// The family of queues that drives the device's main engine, or at least one that can copy.
std::optional<std::uint32_t> queueFamily(const vk::raii::PhysicalDevice &device)
{
    const auto families = device.getQueueFamilyProperties();
    using Flag = vk::QueueFlagBits;
    for (const Flag wanted : {Flag::eGraphics, Flag::eCompute, Flag::eTransfer}) // The first two can copy, too.
        for (std::uint32_t i = 0; i < families.size(); ++i)
            if (families[i].queueFlags & wanted)
                return i;
    return std::nullopt;
}

vk::raii::Instance makeInstance(const vk::raii::Context &context)
{
    const vk::ApplicationInfo application("Orvalen", 0, nullptr, 0, VK_API_VERSION_1_0);
    return {context, vk::InstanceCreateInfo({}, &application)};
}

/// Takes `context` and `instance` over only if it succeeds. Throws vk::SystemError where the device does not open.
std::unique_ptr<VulkanDevice> open(vk::raii::Context &context, vk::raii::Instance &instance,
                                   vk::raii::PhysicalDevice &physicalDevice, std::uint32_t family)
{
    const float priority = 1.0f;
    const vk::DeviceQueueCreateInfo wantedQueue({}, family, 1, &priority);
    vk::raii::Device device(physicalDevice, vk::DeviceCreateInfo({}, wantedQueue));
    vk::raii::Queue queue(device, family, 0);
    const auto resettable = vk::CommandPoolCreateFlagBits::eResetCommandBuffer;
    vk::raii::CommandPool pool(device, vk::CommandPoolCreateInfo(resettable, family));
    vk::raii::CommandBuffers buffers(device, vk::CommandBufferAllocateInfo(*pool, vk::CommandBufferLevel::ePrimary, 1));
    vk::raii::Fence copied(device, vk::FenceCreateInfo());
    return std::unique_ptr<VulkanDevice>(
        new VulkanDevice{std::move(context), std::move(instance), std::move(physicalDevice), std::move(device),
                         std::move(queue), std::move(pool), std::move(buffers.front()), std::move(copied)});
}

} // namespace

GraphicsCopiesVulkan::GraphicsCopiesVulkan(SoftwareDevices softwareDevices, std::chrono::nanoseconds patience)
    : softwareDevices(softwareDevices), patience(patience)
{
}

std::unique_ptr<GraphicsQueue> GraphicsCopiesVulkan::openDefaultQueue()
{
    if (*hasStuck)
        return nullptr;
    try {
        vk::raii::Context context;
        vk::raii::Instance instance = makeInstance(context);
        std::vector<vk::raii::PhysicalDevice> devices = vk::raii::PhysicalDevices(instance);
        std::erase_if(devices, [this](const auto &device) {
            return softwareDevices == SoftwareDevices::refused && device.getProperties().deviceType == Type::eCpu;
        });
        std::stable_sort(devices.begin(), devices.end(),
                         [](const auto &a, const auto &b) { return rank(a) < rank(b); });
        for (auto &device : devices) {
            const auto family = queueFamily(device);
            if (!family)
                continue;
            try {
                return std::make_unique<GraphicsQueueVulkan>(open(context, instance, device, *family), patience,
                                                             hasStuck);
            } catch (const vk::SystemError &) { // NOLINT(bugprone-empty-catch): perhaps the next one opens
            }
        }
    } catch (const std::exception &) { // NOLINT(bugprone-empty-catch): no library, no driver, no device
    }
    return nullptr;
}

} // namespace orvalen
