#pragma once

#include <memory>
#include <vector>

#include "platform/InputIdleTime.h"

namespace orvalen {

/// The ways in which sessions tell the idle time, best first: each is asked in turn, and the first that has an answer
/// gives it.
class InputIdleTimeFirstAvailable : public InputIdleTime
{
public:
    explicit InputIdleTimeFirstAvailable(std::vector<std::unique_ptr<InputIdleTime>> ways);

    [[nodiscard]] std::optional<std::chrono::duration<double>> sinceLastInput() override;

private:
    const std::vector<std::unique_ptr<InputIdleTime>> ways;
};

} // namespace orvalen
