#pragma once

#include "platform/linux/SleepInhibitor.h"
#include "platform/linux/SleepPatience.h"

namespace orvalen {

/// The desktop portal, which asks the desktop behind it and tells later whether that granted it.
class SleepInhibitorPortal : public SleepInhibitor
{
public:
    explicit SleepInhibitorPortal(const SleepPatience &patience);

    [[nodiscard]] std::optional<bool> isAvailable(Deadline deadline) override;
    [[nodiscard]] std::unique_ptr<SleepInhibition> inhibit(const std::string &reason, Deadline deadline) override;

private:
    const SleepPatience patience;
};

} // namespace orvalen
