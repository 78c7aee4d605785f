#pragma once

#include <mutex>
#include <string_view>

#include <spawn.h>

#include "streaming/server/CommandSearch.h"
#include "streaming/server/Contract.h"
#include "streaming/server/Watchdog.h"

namespace orvalen {

/// The command that takes pictures. It gets our standard streams, no other descriptor, default signals and a process
/// group of its own. One that hangs is killed with its group after our patience, but not if we are killed before: it
/// then outlives us (our own command gives up by itself). Any thread.
class CaptureCommand
{
public:
    /// `ownFolder`: where to look last. `descriptors` is held while a descriptor exists that a command would inherit.
    CaptureCommand(std::string_view ownFolder, std::mutex &descriptors,
                   std::chrono::nanoseconds patience = limits::captureTime);
    CaptureCommand(const CaptureCommand &) = delete;
    CaptureCommand &operator=(const CaptureCommand &) = delete;
    ~CaptureCommand();

    /// Runs it and waits for it; false if it cannot be started, fails, or takes too long. `arguments`: the command's
    /// name, then its arguments, then null.
    [[nodiscard]] bool run(const char *const *arguments) noexcept;

private:
    std::mutex &descriptors;
    CommandSearch search; // under `descriptors`
    posix_spawnattr_t attributes{};
    Watchdog watchdog;
};

} // namespace orvalen
