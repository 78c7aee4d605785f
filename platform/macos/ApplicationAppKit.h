#pragma once

#include "platform/Application.h"

namespace orvalen {

/// The shared application object of AppKit, which the toolkit has made before anything is asked here. Without one the
/// program ends.
class ApplicationAppKit : public Application
{
public:
    void setActivationPolicy(ActivationPolicy policy) override;

    /// Unhides the application, too, and with it its windows. From macOS 14 on the system decides whether the user is
    /// disturbed in another application.
    void activate(bool ignoringOtherApps) override;

    /// While the application is hidden none but minimised ones: `activate` first.
    [[nodiscard]] std::vector<std::unique_ptr<ApplicationWindow>> windows() override;
};

} // namespace orvalen
