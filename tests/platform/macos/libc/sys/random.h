#pragma once

#include_next <sys/random.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(getrandom);

#undef GRND_INSECURE
#undef GRND_NONBLOCK
#undef GRND_RANDOM
