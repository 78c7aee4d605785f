#pragma once

#include <string_view>

namespace orvalen {

/// Short sounds known by name: "Blow", "Glass", "Tink". Background threads only: starting a player may take a moment.
class Sounds
{
public:
    virtual ~Sounds() = default;

    /// Starts the sound and returns without waiting for its end. No such sound, no device: nothing happens.
    virtual void play(std::string_view name) = 0;
};

} // namespace orvalen
