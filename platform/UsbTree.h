#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvalen {

/// A bus, a hub or a device, with what hangs below it. However deep that goes, to move and to destroy it takes a few
/// bytes of the stack; a copy would take more, so there is none.
struct UsbNode
{
    UsbNode() = default;
    explicit UsbNode(std::optional<std::string> name, std::vector<UsbNode> items = {});
    UsbNode(UsbNode &&) noexcept = default;
    UsbNode &operator=(UsbNode &&) noexcept = default;
    UsbNode(const UsbNode &) = delete;
    UsbNode &operator=(const UsbNode &) = delete;
    ~UsbNode();

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
