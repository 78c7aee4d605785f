#pragma once

#include_next <spawn.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(posix_spawnattr_getschedparam);
ORVALEN_NOT_ON_MACOS(posix_spawnattr_getschedpolicy);
ORVALEN_NOT_ON_MACOS(posix_spawnattr_setschedparam);
ORVALEN_NOT_ON_MACOS(posix_spawnattr_setschedpolicy);

#undef POSIX_SPAWN_SETSCHEDPARAM
#undef POSIX_SPAWN_SETSCHEDULER
#undef POSIX_SPAWN_SETSID
#undef POSIX_SPAWN_USEVFORK

// Darwin's own.
#define POSIX_SPAWN_SETSID 0x0400
#define POSIX_SPAWN_CLOEXEC_DEFAULT 0x4000
