#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "streaming/server/Descriptor.h"

namespace orvalen {

/// Listens on the first of the ports that can be had, on all IPv4 interfaces, and has written its number to the port
/// file. A port whose number cannot be written is given back. None without a port.
[[nodiscard]] Descriptor listenOnFirst(std::span<const std::uint16_t> ports, const std::filesystem::path &portFile);

} // namespace orvalen
