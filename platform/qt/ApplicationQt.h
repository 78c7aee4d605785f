#pragma once

#include <functional>

#include "platform/Application.h"

class QWindow;

namespace orvalen {

/// The windows that Qt shows for us.
class ApplicationQt : public Application
{
public:
    /// Gives a window the keyboard and puts it before all others.
    using BringForward = std::function<void(QWindow &)>;

    /// By Qt's own means, which the desktop may refuse while the user is at work in another program.
    static void requestForward(QWindow &window);

    explicit ApplicationQt(BringForward bringForward = requestForward);

    void setActivationPolicy(ActivationPolicy policy) override; ///< Nothing to set: a window is all it takes.
    void activate(bool ignoringOtherApps) override;
    [[nodiscard]] std::vector<std::unique_ptr<ApplicationWindow>> windows() override;

private:
    BringForward bringForward;
};

} // namespace orvalen
