#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "platform/PowerAssertions.h"
#include "platform/linux/SleepInhibitor.h"

namespace orvalen {

/// The ways in which a machine is kept awake, best first: each is asked in turn, and the first that grants it holds it
/// alone. Who may be there counts as there. Only idle sleep can be held off, so every other type of assertion is
/// refused.
///
/// A service that goes away while it holds an assertion takes it along, and the assertion stays in the books until it
/// is released: nobody is asked twice for one wish.
class PowerAssertionsFirstGranted : public PowerAssertions
{
public:
    using Inhibitors = std::vector<std::unique_ptr<SleepInhibitor>>;

    /// Who is asked where any of them is there, and who is asked only where none of them is.
    struct Ways
    {
        Inhibitors desktop;
        Inhibitors withoutDesktop;
    };

    /// `patience` is for all of them together.
    explicit PowerAssertionsFirstGranted(Ways ways,
                                         std::chrono::milliseconds patience = std::chrono::milliseconds(2500));

    [[nodiscard]] std::optional<std::uint32_t> create(const PowerAssertion &assertion) override;
    void release(std::uint32_t identifier) override;

private:
    std::uint32_t keep(std::unique_ptr<SleepInhibition> inhibition);

    const Ways ways;
    const std::chrono::milliseconds patience;
    std::map<std::uint32_t, std::unique_ptr<SleepInhibition>> held;
    std::uint32_t last = 0;
};

} // namespace orvalen
