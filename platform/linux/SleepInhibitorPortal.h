#pragma once

#include "platform/linux/SleepInhibitor.h"

namespace orvalen {

/// The desktop portal, which asks the desktop behind it and tells later whether that granted it.
class SleepInhibitorPortal : public SleepInhibitor
{
public:
    explicit SleepInhibitorPortal(std::chrono::milliseconds patience);

    [[nodiscard]] bool isAvailable(Deadline deadline) override;
    [[nodiscard]] std::unique_ptr<SleepInhibition> inhibit(const std::string &reason, Deadline deadline) override;

private:
    const std::chrono::milliseconds patience;
};

} // namespace orvalen
