#pragma once

#include_next <sched.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(clone);
ORVALEN_NOT_ON_MACOS(sched_getaffinity);
ORVALEN_NOT_ON_MACOS(sched_getcpu);
ORVALEN_NOT_ON_MACOS(sched_getparam);
ORVALEN_NOT_ON_MACOS(sched_getscheduler);
ORVALEN_NOT_ON_MACOS(sched_rr_get_interval);
ORVALEN_NOT_ON_MACOS(sched_setaffinity);
ORVALEN_NOT_ON_MACOS(sched_setparam);
ORVALEN_NOT_ON_MACOS(sched_setscheduler);
ORVALEN_NOT_ON_MACOS(setns);
ORVALEN_NOT_ON_MACOS(unshare);

#undef CPU_ALLOC
#undef CPU_CLR
#undef CPU_COUNT
#undef CPU_FREE
#undef CPU_ISSET
#undef CPU_SET
#undef CPU_SETSIZE
#undef CPU_ZERO
#undef SCHED_BATCH
#undef SCHED_DEADLINE
#undef SCHED_IDLE
#undef SCHED_RESET_ON_FORK
