#pragma once

// The C++ library asks whether they are there.
#define quick_exit orvalen_quick_exit_of_musl
#define at_quick_exit orvalen_at_quick_exit_of_musl

#include_next <stdlib.h>

#undef quick_exit
#undef at_quick_exit

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(clearenv);
ORVALEN_NOT_ON_MACOS(ptsname_r);
ORVALEN_NOT_ON_MACOS(qsort_r);
ORVALEN_NOT_ON_MACOS(secure_getenv);
