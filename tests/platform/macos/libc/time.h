#pragma once

#include_next <time.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(clock_getcpuclockid);
ORVALEN_NOT_ON_MACOS(clock_nanosleep);
ORVALEN_NOT_ON_MACOS(stime);
ORVALEN_NOT_ON_MACOS(timer_create);
ORVALEN_NOT_ON_MACOS(timer_delete);
ORVALEN_NOT_ON_MACOS(timer_getoverrun);
ORVALEN_NOT_ON_MACOS(timer_gettime);
ORVALEN_NOT_ON_MACOS(timer_settime);

#undef CLOCK_BOOTTIME
#undef CLOCK_BOOTTIME_ALARM
#undef CLOCK_MONOTONIC
#undef CLOCK_MONOTONIC_COARSE
#undef CLOCK_MONOTONIC_RAW
#undef CLOCK_PROCESS_CPUTIME_ID
#undef CLOCK_REALTIME
#undef CLOCK_REALTIME_ALARM
#undef CLOCK_REALTIME_COARSE
#undef CLOCK_SGI_CYCLE
#undef CLOCK_TAI
#undef CLOCK_THREAD_CPUTIME_ID
#undef TIMER_ABSTIME

// Darwin's clocks are an enumeration (bits/darwin_clocks.h), each with a macro of its own name.
#define CLOCK_REALTIME CLOCK_REALTIME
#define CLOCK_MONOTONIC CLOCK_MONOTONIC
#define CLOCK_MONOTONIC_RAW CLOCK_MONOTONIC_RAW
#define CLOCK_UPTIME_RAW CLOCK_UPTIME_RAW
#define CLOCK_PROCESS_CPUTIME_ID CLOCK_PROCESS_CPUTIME_ID
#define CLOCK_THREAD_CPUTIME_ID CLOCK_THREAD_CPUTIME_ID

#ifdef __cplusplus
extern "C" unsigned long long clock_gettime_nsec_np(clockid_t clock);
#endif
