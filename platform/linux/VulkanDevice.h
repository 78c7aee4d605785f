#pragma once

#include <vulkan/vulkan_raii.hpp>

#include <cstdint>

namespace orvalen {

/// An opened device with all that one copy at a time takes. Members go in the reverse order of their making.
struct VulkanDevice
{
    enum class State
    {
        working,
        lost,  ///< The driver gave the device up: nothing runs on it any more.
        stuck, ///< A copy did not end in time and may still be running: nothing that it uses can be freed, ever.
    };

    vk::raii::Context context;
    vk::raii::Instance instance;
    vk::raii::PhysicalDevice physicalDevice;
    vk::raii::Device device;
    vk::raii::Queue queue;
    vk::raii::CommandPool pool;
    vk::raii::CommandBuffer commands;
    vk::raii::Fence copied;
    State state = State::working;
};

} // namespace orvalen
