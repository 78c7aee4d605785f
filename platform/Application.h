#pragma once

#include <memory>
#include <vector>

namespace orvalen {

/// A window of ours that is on the screen, perhaps minimised.
class ApplicationWindow
{
public:
    virtual ~ApplicationWindow() = default;

    /// Whether it can have the keyboard: tooltips and menus cannot.
    [[nodiscard]] virtual bool canBecomeKeyWindow() const = 0;

    /// Before all others, with the keyboard.
    virtual void makeKeyAndOrderFront() = 0;
};

/// The program as the desktop sees it. Main thread only.
class Application
{
public:
    /// Numbered as AppKit's NSApplicationActivationPolicy.
    enum class ActivationPolicy
    {
        regular = 0, ///< In the Dock, with a menu bar.
    };

    virtual ~Application() = default;

    /// Systems without such a distinction ignore it.
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;

    /// Brings the program before others; `ignoringOtherApps`: even if the user is at work in another one.
    virtual void activate(bool ignoringOtherApps) = 0;

    /// The oldest first, so that after a call to each the newest is in front. Those that were closed are not among
    /// them.
    [[nodiscard]] virtual std::vector<std::unique_ptr<ApplicationWindow>> windows() = 0;
};

} // namespace orvalen
