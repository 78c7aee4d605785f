#pragma once

#include <string_view>

namespace orvalen {

/// The system's voice. Background threads only: starting it may take a moment.
class Speech
{
public:
    virtual ~Speech() = default;

    /// Starts to speak English `text` as it stands, and returns without waiting for its end. No voice: nothing happens.
    virtual void speak(std::string_view text) = 0;
};

} // namespace orvalen
