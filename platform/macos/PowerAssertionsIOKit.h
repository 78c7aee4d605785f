#pragma once

#include "platform/PowerAssertions.h"

namespace orvalen {

/// The assertions of the system's power management. Its identifiers are passed on as they are: they are this process's
/// own, and one that it did not give, or that has been given back, is refused without harm.
///
/// The system takes every type that it knows, levels of 0 (off) and 255 (on), and names of up to 128 characters.
class PowerAssertionsIOKit : public PowerAssertions
{
public:
    [[nodiscard]] std::optional<std::uint32_t> create(const PowerAssertion &assertion) override;
    void release(std::uint32_t identifier) override;
};

} // namespace orvalen
