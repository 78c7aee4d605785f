#pragma once

#include <string_view>

namespace orvalen {

/// Hands addresses to the program that the user has chosen for them. Main thread only.
class UrlOpener
{
public:
    virtual ~UrlOpener() = default;

    /// Opens `url` and returns at once. No program for it: nothing happens.
    virtual void open(std::string_view url) = 0;
};

} // namespace orvalen
