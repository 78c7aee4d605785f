#pragma once

#include "platform/linux/SleepInhibitor.h"

namespace orvalen {

/// The session manager of GNOME, Cinnamon and MATE. It is asked not to suspend, and the screen may
/// go dark; whether a person's own wish to suspend is held up, too, is up to it.
class SleepInhibitorSessionManager : public SleepInhibitor
{
public:
    /// `applicationId` names the desktop entry that the manager shows beside the reason.
    SleepInhibitorSessionManager(std::string applicationId, std::chrono::milliseconds patience);

    [[nodiscard]] std::optional<bool> isAvailable(Deadline deadline) override;
    [[nodiscard]] std::unique_ptr<SleepInhibition> inhibit(const std::string &reason, Deadline deadline) override;

private:
    const std::string applicationId;
    const std::chrono::milliseconds patience;
};

} // namespace orvalen
