#pragma once

#include <chrono>
#include <functional>

#include "platform/HostName.h"
#include "platform/posix/BoundedQuestion.h"

namespace orvalen {

/// The name that the Avahi daemon announces, asked over the system bus. A daemon that is not there is not started.
class HostNameAvahi : public HostName
{
public:
    explicit HostNameAvahi(std::chrono::milliseconds patience = std::chrono::milliseconds(500));

    [[nodiscard]] std::optional<std::string> multicastName() override;
    [[nodiscard]] std::string processName() override;

private:
    BoundedQuestion<std::optional<std::string>> question; ///< Bounds what the library does not: the way to the bus.
};

} // namespace orvalen
