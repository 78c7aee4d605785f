#pragma once

#include <sys/types.h>

#include <map>
#include <vector>

namespace orvalen::bench {

/// What processes have used so far, and what they hold, all of them together; from /proc.
struct StreamProcesses
{
    std::map<pid_t, double> threadSeconds; ///< Processor time of each living thread, to the nanosecond.
    double ownSeconds = 0;                 ///< Processor time of living and ended threads, to the clock tick.
    double childSeconds = 0;               ///< Of children that were waited for, to the clock tick.
    long residentKilobytes = 0;
    long peakKilobytes = 0; ///< Highest resident memory ever.
    long threads = 0;
    long descriptors = 0;

    [[nodiscard]] static StreamProcesses read(const std::vector<pid_t> &pids);

    /// Processor seconds of their own since `earlier`: to the nanosecond if no thread has ended since.
    [[nodiscard]] double ownSecondsSince(const StreamProcesses &earlier) const;
};

} // namespace orvalen::bench
