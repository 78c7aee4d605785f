#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "platform/PowerSources.h"
#include "platform/posix/BoundedQuestion.h"

namespace orvalen {

/// Power sources that answer within half a second though firmware behind them hangs. An answer that does not come in
/// time, or an exception in the place of one, leaves the last answer that came; before the first there are none. A
/// charger that is slow to answer so never looks unplugged, and then plugged in again.
class BoundedPowerSources : public PowerSources
{
public:
    /// `prepareThread`, if any, is what the asking thread begins with. Must not throw.
    explicit BoundedPowerSources(std::shared_ptr<PowerSources> inner,
                                 std::chrono::nanoseconds limit = boundedAnswerTime,
                                 PrepareAskingThread prepareThread = {});

    [[nodiscard]] std::vector<PowerSource> list() override;

private:
    /// Also of answers that came too late to be given.
    struct Latest
    {
        std::mutex mutex;
        std::vector<PowerSource> sources;
    };

    const std::shared_ptr<Latest> latest; ///< Shared with the asking thread.
    BoundedQuestion<std::vector<PowerSource>> question;
};

} // namespace orvalen
