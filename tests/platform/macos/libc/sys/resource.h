#pragma once

#include_next <sys/resource.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(prlimit);

#undef RLIMIT_LOCKS
#undef RLIMIT_MSGQUEUE
#undef RLIMIT_NICE
#undef RLIMIT_RTPRIO
#undef RLIMIT_RTTIME
#undef RLIMIT_SIGPENDING
#undef RUSAGE_THREAD
