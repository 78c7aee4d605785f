#pragma once

#include <string_view>

namespace orvalen {

/// Desktop notifications. Main thread only.
class Notifications
{
public:
    virtual ~Notifications() = default;

    /// Posts a notification, both texts shown as they stand (UTF-8). The caller keeps double quotes and backslashes out
    /// of them: not every system's way to a notification bears these. Does not wait; nobody there to show it: nothing
    /// happens.
    virtual void post(std::string_view title, std::string_view message) = 0;
};

} // namespace orvalen
