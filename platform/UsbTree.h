#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvalen {

/// A bus, a hub or a device, with what hangs below it.
struct UsbNode
{
    std::optional<std::string> name; ///< As it calls itself (UTF-8, as far as it keeps to that).
    std::vector<UsbNode> items;      ///< In the system's order.
};

/// What is connected by USB.
class UsbTree
{
public:
    virtual ~UsbTree() = default;

    /// The buses. Takes seconds on some systems: background threads, several at once. Empty if it cannot be learned.
    [[nodiscard]] virtual std::vector<UsbNode> read() = 0;
};

} // namespace orvalen
