#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace orvalen::fake {

/// What the kernel says of processors and threads while this lives: one at a time.
class Kernel
{
public:
    Kernel();
    ~Kernel();
    Kernel(const Kernel &) = delete;
    Kernel &operator=(const Kernel &) = delete;

    int settingQuality = 0; ///< What pthread_set_qos_class_self_np answers.

    int askingProcessors = 0; ///< What sysctlbyname answers; a failure leaves a number behind as well.
    std::int64_t processors = 8;
    std::size_t processorsSize = sizeof(int); ///< Of the number, in bytes.
};

/// The clock and the pauses of whoever asks while this lives, on one thread. Without one they are the system's own.
class Time
{
public:
    Time();
    ~Time();
    Time(const Time &) = delete;
    Time &operator=(const Time &) = delete;

    std::chrono::nanoseconds now{};
    std::chrono::nanoseconds longestPause = std::chrono::nanoseconds::max(); ///< A signal ends a longer one.
};

} // namespace orvalen::fake
