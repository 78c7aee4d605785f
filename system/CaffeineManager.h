#pragma once

#include <cstdint>

#include "core/Published.h"

namespace orvalen {

class PowerAssertions;

/// Keeps the machine awake for as long as the user wants it. Main thread only.
class CaffeineManager : public Observable
{
public:
    /// `assertions` must outlive it.
    explicit CaffeineManager(PowerAssertions &assertions);
    virtual ~CaffeineManager();

    /// That of the installed platform, made on first use and never destroyed.
    [[nodiscard]] static CaffeineManager &shared();

private:
    PowerAssertions &assertions;
    std::uint32_t assertionID = 0; ///< Of the assertion that is held; 0: none.

public:
    Published<bool> isActive{*this, false}; ///< Exactly while an assertion is held.

    virtual void toggle();
    virtual void enable(); ///< Stays inactive if the system does not grant it.
    virtual void disable();
};

} // namespace orvalen
