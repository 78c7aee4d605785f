#pragma once

#include "platform/linux/SleepInhibitor.h"

namespace orvalen {

/// logind, which takes a session for idle when its desktop says so. A lock on that keeps some desktops' screens alight
/// and others do not look at it; where there is no desktop it is what there is. Never one on sleep itself: that would
/// stop the person's own wish, too.
class SleepInhibitorLogind : public SleepInhibitor
{
public:
    /// `application` is who `systemd-inhibit --list` names beside the reason.
    SleepInhibitorLogind(std::string application, std::chrono::milliseconds patience);

    [[nodiscard]] std::optional<bool> isAvailable(Deadline deadline) override;
    [[nodiscard]] std::unique_ptr<SleepInhibition> inhibit(const std::string &reason, Deadline deadline) override;

private:
    const std::string application;
    const std::chrono::milliseconds patience;
};

} // namespace orvalen
