#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace orvalen {

/// One program in a user's session, however often it is started. Main thread only.
class ProgramInstance
{
public:
    /// What others may ask of the running program, on its main thread. `token` is what the desktop gave to whoever
    /// asks, so that it can tell what became of it; empty if nothing.
    struct Requests
    {
        /// Show yourself: somebody started the program again.
        std::function<void(const std::string &token)> activate;
        std::function<void(std::string_view name, const std::string &token)> performAction;
    };

    virtual ~ProgramInstance() = default;

    /// Before anything is shown. False: another one runs in this session, it has been asked to show itself, and this
    /// process should end. True also where sessions cannot be asked. Bounded, about a second at worst.
    [[nodiscard]] virtual bool begin() = 0;

    /// From now on requests are answered, also those that came since `begin`. Once, and only after it.
    virtual void serve(Requests requests) = 0;
};

} // namespace orvalen
