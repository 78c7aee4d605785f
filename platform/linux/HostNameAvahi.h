#pragma once

#include <chrono>

#include "platform/HostName.h"

namespace orvalen {

/// The name that the Avahi daemon announces, asked over the system bus. A daemon that is not there is not started.
class HostNameAvahi : public HostName
{
public:
    explicit HostNameAvahi(std::chrono::milliseconds patience = std::chrono::milliseconds(500));

    [[nodiscard]] std::optional<std::string> multicastName() override;
    [[nodiscard]] std::string processName() override;

private:
    const std::chrono::milliseconds patience;
};

} // namespace orvalen
