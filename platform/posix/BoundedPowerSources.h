#pragma once

#include <memory>

#include "platform/PowerSources.h"
#include "platform/posix/BoundedQuestion.h"

namespace orvalen {

/// Power sources that answer within half a second though firmware behind them hangs; none until it lets go.
class BoundedPowerSources : public PowerSources
{
public:
    explicit BoundedPowerSources(std::shared_ptr<PowerSources> inner,
                                 std::chrono::nanoseconds limit = std::chrono::milliseconds(500));

    [[nodiscard]] std::vector<PowerSource> list() override;

private:
    BoundedQuestion<std::vector<PowerSource>> question;
};

} // namespace orvalen
