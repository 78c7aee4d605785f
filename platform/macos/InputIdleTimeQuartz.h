#pragma once

#include "platform/InputIdleTime.h"

namespace orvalen {

/// The time since the last input event of any type in the user's session, as the system tells it: what is made up by a
/// program counts as input, too.
class InputIdleTimeQuartz : public InputIdleTime
{
public:
    /// Always an answer, whatever it is worth.
    [[nodiscard]] std::optional<std::chrono::duration<double>> sinceLastInput() override;
};

} // namespace orvalen
