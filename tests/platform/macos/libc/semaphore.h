#pragma once

#include_next <semaphore.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(sem_destroy);
ORVALEN_NOT_ON_MACOS(sem_getvalue);
ORVALEN_NOT_ON_MACOS(sem_init);
ORVALEN_NOT_ON_MACOS(sem_timedwait);
