#pragma once

namespace orvalen {

/// The machine's processor cores. Any thread.
class Processors
{
public:
    virtual ~Processors() = default;

    /// Cores that can run threads of this process now; at least 1.
    [[nodiscard]] virtual int activeCount() = 0;
};

} // namespace orvalen
