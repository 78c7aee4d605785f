#pragma once

#include <mutex>

namespace orvalen {

/// The stop flag of one pulse, shared by its supervisor and its workers: true while they shall heat.
class EngineAtomicFlag
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
    mutable std::mutex lock;
    bool _value = true;
};

} // namespace orvalen
