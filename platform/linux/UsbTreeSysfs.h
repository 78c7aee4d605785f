#pragma once

#include <string>

#include "platform/UsbTree.h"

namespace orvalen {

/// The buses and devices that the kernel shows as folders: buses by number, and below each its devices by port. A
/// device is named by its "product". One whose hub has vanished meanwhile hangs from the next thing above that.
class UsbTreeSysfs : public UsbTree
{
public:
    explicit UsbTreeSysfs(std::string root = "/sys/bus/usb/devices");

    [[nodiscard]] std::vector<UsbNode> read() override;

private:
    const std::string root;
};

} // namespace orvalen
