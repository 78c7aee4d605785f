#pragma once

#include "platform/linux/SleepInhibitor.h"

namespace orvalen {

/// The session manager of GNOME, Cinnamon and MATE: the session does not become idle enough to be suspended.
class SleepInhibitorSessionManager : public SleepInhibitor
{
public:
    /// `applicationId` names the desktop entry that the manager shows beside the reason.
    SleepInhibitorSessionManager(std::string applicationId, std::chrono::milliseconds patience);

    [[nodiscard]] bool isAvailable(Deadline deadline) override;
    [[nodiscard]] std::unique_ptr<SleepInhibition> inhibit(const std::string &reason, Deadline deadline) override;

private:
    const std::string applicationId;
    const std::chrono::milliseconds patience;
};

} // namespace orvalen
