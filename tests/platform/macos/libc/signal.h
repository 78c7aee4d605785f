#pragma once

#include_next <signal.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(sigandset);
ORVALEN_NOT_ON_MACOS(sigisemptyset);
ORVALEN_NOT_ON_MACOS(sigorset);
ORVALEN_NOT_ON_MACOS(sigqueue);
ORVALEN_NOT_ON_MACOS(sigtimedwait);
ORVALEN_NOT_ON_MACOS(sigwaitinfo);

#undef SIGEV_THREAD_ID
#undef SIGPOLL
#undef SIGPWR
#undef SIGRTMAX
#undef SIGRTMIN
#undef SIGSTKFLT
#undef SIGUNUSED
