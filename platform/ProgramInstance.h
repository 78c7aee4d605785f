#pragma once

#include <functional>
#include <string_view>

namespace orvalen {

/// One program in a user's session, however often it is started. Main thread only.
class ProgramInstance
{
public:
    /// What others may ask of the running program, on its main thread.
    struct Requests
    {
        std::function<void()> activate; ///< Show yourself: somebody started the program again.
        std::function<void(std::string_view name)> performAction;
    };

    virtual ~ProgramInstance() = default;

    /// Before anything is shown. False: another one runs in this session, it has been asked to show itself, and this
    /// process should end. True also where sessions cannot be asked.
    [[nodiscard]] virtual bool begin() = 0;

    /// From now on requests are answered, also those that came since `begin`. Once.
    virtual void serve(Requests requests) = 0;
};

} // namespace orvalen
