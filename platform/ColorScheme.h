#pragma once

#include <functional>

namespace orvalen {

/// Which colour scheme the desktop's user prefers. Main thread only.
class ColorScheme
{
public:
    /// 1 prefers dark, 2 prefers light, anything else: no preference.
    using Receive = std::function<void(unsigned preference)>;

    virtual ~ColorScheme() = default;

    /// Calls `receive` as soon as the desktop has answered and again after each change, never from within this call;
    /// not at all where no desktop tells. Any number may follow; each is told for as long as this object lives.
    virtual void follow(Receive receive) = 0;
};

} // namespace orvalen
