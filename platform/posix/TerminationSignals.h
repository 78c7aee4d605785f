#pragma once

namespace orvalen {

/// The polite requests to end: SIGTERM, SIGINT and SIGHUP. From construction on they do not end the process; each makes
/// one byte readable at `descriptor()`, where an event loop finds it whenever it gets to run. One per process.
class TerminationSignals
{
public:
    TerminationSignals();
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;

    /// −1 where no pipe could be had: then the signals end the process as ever.
    [[nodiscard]] int descriptor() const;
};

} // namespace orvalen
