#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orvalen {

/// A wish about the machine's power, with the words that the system shows for it.
struct PowerAssertion
{
    std::string type;        ///< As IOKit names it: "PreventUserIdleSystemSleep".
    std::uint32_t level = 0; ///< 255: on.
    std::string name;        ///< The reason, for people.

    friend bool operator==(const PowerAssertion &, const PowerAssertion &) = default;
};

/// Keeps the machine from going to sleep by itself. What is held ends with the process at the latest. Main thread only.
class PowerAssertions
{
public:
    virtual ~PowerAssertions() = default;

    /// Asks the system and waits for its answer, some two and a half seconds in the worst case. The identifier of what
    /// it granted, never 0; std::nullopt if it refused or there is nobody to ask.
    [[nodiscard]] virtual std::optional<std::uint32_t> create(const PowerAssertion &assertion) = 0;

    /// Gives it back. Unknown identifiers are ignored.
    virtual void release(std::uint32_t identifier) = 0;
};

} // namespace orvalen
