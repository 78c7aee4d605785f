// The clocks of Darwin, with its numbers.
typedef enum {
    CLOCK_REALTIME = 0,
    CLOCK_MONOTONIC_RAW = 4,
    CLOCK_MONOTONIC_RAW_APPROX = 5,
    CLOCK_MONOTONIC = 6,
    CLOCK_UPTIME_RAW = 8,
    CLOCK_UPTIME_RAW_APPROX = 9,
    CLOCK_PROCESS_CPUTIME_ID = 12,
    CLOCK_THREAD_CPUTIME_ID = 16,
} clockid_t;
