#pragma once

#include <atomic>
#include <chrono>
#include <memory>

#include "platform/GraphicsCopies.h"

namespace orvalen {

/// Graphics copies by Vulkan. The Vulkan library and its drivers are in memory only while a queue is open.
///
/// A device that once did not finish a copy is left alone from then on: no further queue is opened.
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
    std::shared_ptr<std::atomic<bool>> hasStuck =
        std::make_shared<std::atomic<bool>>(false); ///< Shared with the queues.
};

} // namespace orvalen
