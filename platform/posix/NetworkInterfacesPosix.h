#pragma once

#include "platform/NetworkInterfaces.h"

namespace orvalen {

/// The interfaces as getifaddrs lists them.
class NetworkInterfacesPosix : public NetworkInterfaces
{
public:
    [[nodiscard]] std::optional<std::vector<NetworkInterface>> list() override;
};

} // namespace orvalen
