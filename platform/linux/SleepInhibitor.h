#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace orvalen {

/// The machine does not go to sleep by itself as long as this lives, nor longer than the process.
class SleepInhibition
{
public:
    SleepInhibition() = default;
    virtual ~SleepInhibition() = default;

    SleepInhibition(const SleepInhibition &) = delete;
    SleepInhibition &operator=(const SleepInhibition &) = delete;
};

/// One of the services that can keep a machine awake. Each operation is over at its deadline, answered or not. Main
/// thread only.
class SleepInhibitor
{
public:
    using Deadline = std::chrono::steady_clock::time_point;

    virtual ~SleepInhibitor() = default;

    /// Whether the service is there, or would be started for whoever asks it; std::nullopt if nobody says so in time.
    [[nodiscard]] virtual std::optional<bool> isAvailable(Deadline deadline) = 0;

    /// Asks the service as isAvailable found it last, with a reason for people to read. Null if it was refused or not
    /// answered.
    [[nodiscard]] virtual std::unique_ptr<SleepInhibition> inhibit(const std::string &reason, Deadline deadline) = 0;

protected:
    /// In so much time from now, and no later than `deadline`.
    [[nodiscard]] static Deadline soon(Deadline deadline, std::chrono::milliseconds patience)
    {
        return std::min(deadline, std::chrono::steady_clock::now() + patience);
    }
};

} // namespace orvalen
