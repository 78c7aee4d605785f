#pragma once

#include <chrono>
#include <optional>

namespace orvalen {

/// How long nobody has touched keyboard, pointer or screen. Any thread, also several at once.
class InputIdleTime
{
public:
    virtual ~InputIdleTime() = default;

    /// Time since the last input of any kind; std::nullopt where the present session does not tell.
    [[nodiscard]] virtual std::optional<std::chrono::duration<double>> sinceLastInput() = 0;
};

} // namespace orvalen
