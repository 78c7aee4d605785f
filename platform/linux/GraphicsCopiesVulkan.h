#pragma once

#include <chrono>

#include "platform/GraphicsCopies.h"

namespace orvalen {

/// Graphics copies by Vulkan. The Vulkan library and its drivers are in memory only while a queue is open.
///
/// The default device is the first discrete one, else the first integrated one, else the first of any other kind.
class GraphicsCopiesVulkan : public GraphicsCopies
{
public:
    /// What to think of a device that is the processor in disguise.
    enum class SoftwareDevices
    {
        refused,
        accepted,
    };

    /// After a copy that takes longer than `patience` its queue is given up.
    explicit GraphicsCopiesVulkan(SoftwareDevices softwareDevices = SoftwareDevices::refused,
                                  std::chrono::nanoseconds patience = std::chrono::seconds(5));

    [[nodiscard]] std::unique_ptr<GraphicsQueue> openDefaultQueue() override;

private:
    SoftwareDevices softwareDevices;
    std::chrono::nanoseconds patience;
};

} // namespace orvalen
