#pragma once

#include <string_view>
#include <vector>

#include "mirroring/USBDeviceInfo.h"
#include "platform/UsbTree.h"

namespace orvalen {

/// A kind of device that can show our screen.
struct SecondScreenKind
{
    std::vector<std::string_view> words; ///< One of them in the name makes a device one of these. In small letters.
    std::string_view type;
    std::string_view instructions;
};

/// In the order in which they are tried.
[[nodiscard]] const std::vector<SecondScreenKind> &secondScreenKinds();

/// The first kind with a word in `name` (UTF-8), large and small letters alike, those of every script; bytes that are
/// no UTF-8 match nothing. Null: none.
[[nodiscard]] const SecondScreenKind *secondScreenKind(std::string_view name);

/// Appends the second screens among `items` and below them to `list`: each before those that hang from it.
void parseTree(const std::vector<UsbNode> &items, std::vector<USBDeviceInfo> &list);

/// What stands in the list when there is nothing else in it.
[[nodiscard]] USBDeviceInfo placeholderDevice();

} // namespace orvalen
