#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "platform/PowerAssertions.h"

namespace orvalen::test {

/// A system that grants or refuses as the test wants, and remembers what it was asked.
struct FakePowerAssertions : PowerAssertions
{
    bool grants = true;
    std::uint32_t next = 1; ///< The identifier of the next grant.
    std::vector<PowerAssertion> asked;
    std::vector<std::uint32_t> released; ///< Also what was not held.
    std::set<std::uint32_t> held;
    std::function<void()> beforeRelease = [] {};

    std::optional<std::uint32_t> create(const PowerAssertion &assertion) override
    {
        asked.push_back(assertion);
        if (!grants)
            return std::nullopt;
        held.insert(next);
        return next++;
    }
    void release(std::uint32_t identifier) override
    {
        beforeRelease();
        released.push_back(identifier);
        held.erase(identifier);
    }
};

} // namespace orvalen::test
