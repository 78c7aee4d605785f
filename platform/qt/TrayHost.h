#pragma once

#include <functional>

namespace orvalen {

/// Knows when the desktop has a place for a tray icon. Main thread only.
///
/// At the first use of its QSystemTrayIcon in a process Qt decides for good which kind of tray it speaks to: before
/// there is one, that class is better left alone.
class TrayHost
{
public:
    virtual ~TrayHost() = default;

    /// Calls `then` once, as soon as there is a tray, never from within this call. Any number may wait.
    virtual void whenPresent(std::function<void()> then) = 0;
};

} // namespace orvalen
