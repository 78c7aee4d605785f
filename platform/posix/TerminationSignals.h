#pragma once

namespace orvalen {

/// The polite requests to end: SIGTERM, SIGINT and SIGHUP. They end the process at once and with 0 as long as nobody
/// attends to them: a start may get stuck, with a display that does not answer. One per process.
class TerminationSignals
{
public:
    TerminationSignals();
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;

    /// From now on each signal makes one byte readable at `descriptor()` instead, where an event loop finds it whenever
    /// it gets to run; where it does not, the same signal a second time ends the process.
    void attend() const;

    /// −1 where no pipe could be had: then the signals end the process as ever.
    [[nodiscard]] int descriptor() const;
};

} // namespace orvalen
