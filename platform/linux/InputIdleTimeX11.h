#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "platform/InputIdleTime.h"

namespace orvalen {

/// What the X server's screen-saver extension tells, over a connection of its own. Once the connection has died, and
/// for as long as the server does not answer (a question waits at most half a second), there is no idle time.
class InputIdleTimeX11 : public InputIdleTime
{
public:
    /// Connects to `display`, or to the one that the environment names where it is empty, and waits for the server's
    /// greeting.
    explicit InputIdleTimeX11(const std::string &display = {});
    ~InputIdleTimeX11() override;

    /// False without a server or without the extension, after the connection has died, and on a server that is
    /// itself a guest in a Wayland session: it hears only what is typed into its own windows. Any thread.
    [[nodiscard]] bool isAvailable() const;

    [[nodiscard]] std::optional<std::chrono::duration<double>> sinceLastInput() override;

private:
    class Connection;
    mutable std::mutex mutex; ///< Guards the connection: one question at a time.
    const std::unique_ptr<Connection> connection;
};

} // namespace orvalen
