#pragma once

// A thread names itself there, and nobody else.
#define pthread_setname_np orvalen_setname_of_musl

#include_next <pthread.h>

#undef pthread_setname_np
#ifdef __cplusplus
extern "C" int pthread_setname_np(const char *name);
#else
int pthread_setname_np(const char *name);
#endif

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(pthread_barrier_destroy);
ORVALEN_NOT_ON_MACOS(pthread_barrier_init);
ORVALEN_NOT_ON_MACOS(pthread_barrier_wait);
ORVALEN_NOT_ON_MACOS(pthread_condattr_getclock);
ORVALEN_NOT_ON_MACOS(pthread_condattr_setclock);
ORVALEN_NOT_ON_MACOS(pthread_getaffinity_np);
ORVALEN_NOT_ON_MACOS(pthread_getattr_np);
ORVALEN_NOT_ON_MACOS(pthread_getcpuclockid);
ORVALEN_NOT_ON_MACOS(pthread_mutex_consistent);
ORVALEN_NOT_ON_MACOS(pthread_mutex_timedlock);
ORVALEN_NOT_ON_MACOS(pthread_mutexattr_getrobust);
ORVALEN_NOT_ON_MACOS(pthread_mutexattr_setrobust);
ORVALEN_NOT_ON_MACOS(pthread_rwlock_timedrdlock);
ORVALEN_NOT_ON_MACOS(pthread_rwlock_timedwrlock);
ORVALEN_NOT_ON_MACOS(pthread_setaffinity_np);
ORVALEN_NOT_ON_MACOS(pthread_setattr_default_np);
ORVALEN_NOT_ON_MACOS(pthread_setschedprio);
ORVALEN_NOT_ON_MACOS(pthread_spin_destroy);
ORVALEN_NOT_ON_MACOS(pthread_spin_init);
ORVALEN_NOT_ON_MACOS(pthread_spin_lock);
ORVALEN_NOT_ON_MACOS(pthread_spin_trylock);
ORVALEN_NOT_ON_MACOS(pthread_spin_unlock);
ORVALEN_NOT_ON_MACOS(pthread_timedjoin_np);
ORVALEN_NOT_ON_MACOS(pthread_tryjoin_np);

#undef PTHREAD_BARRIER_SERIAL_THREAD
#undef PTHREAD_MUTEX_ROBUST
#undef PTHREAD_MUTEX_STALLED
