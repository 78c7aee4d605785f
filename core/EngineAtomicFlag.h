#pragma once

#include <mutex>

#include "core/SpinThenParkLock.h"

namespace orvalen {

/// The stop flag of one pulse, shared by its supervisor and its workers: true while they shall heat. Every look takes
/// the lock; the contention is the load that heats.
template <typename Lock>
class LockedFlag
{
public:
    [[nodiscard]] bool value() const
    {
        const std::lock_guard guard(lock);
        return _value;
    }

    void setValue(bool value)
    {
        const std::lock_guard guard(lock);
        _value = value;
    }

private:
    mutable Lock lock;
    bool _value = true;
};

using EngineAtomicFlag = LockedFlag<SpinThenParkLock>;

} // namespace orvalen
