#pragma once

#include "platform/linux/SleepInhibitor.h"

namespace orvalen {

/// The desktop's power service, as Plasma, Xfce and others have it: no automatic suspend, while the screen may go dark.
class SleepInhibitorPowerManagement : public SleepInhibitor
{
public:
    /// `application` is the name that the desktop shows beside the reason.
    SleepInhibitorPowerManagement(std::string application, std::chrono::milliseconds patience);

    [[nodiscard]] std::optional<bool> isAvailable(Deadline deadline) override;
    [[nodiscard]] std::unique_ptr<SleepInhibition> inhibit(const std::string &reason, Deadline deadline) override;

private:
    const std::string application;
    const std::chrono::milliseconds patience;
    const char *service; ///< Which of its names the desktop has.
};

} // namespace orvalen
