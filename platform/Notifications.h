#pragma once

#include <string_view>

namespace orvalen {

/// Desktop notifications. Main thread only.
class Notifications
{
public:
    virtual ~Notifications() = default;

    /// Posts a notification, both texts shown as they stand (UTF-8). Does not wait; nobody there to show it: nothing
    /// happens.
    virtual void post(std::string_view title, std::string_view message) = 0;
};

} // namespace orvalen
