#pragma once

#include_next <string.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(explicit_bzero);
ORVALEN_NOT_ON_MACOS(mempcpy);
ORVALEN_NOT_ON_MACOS(memrchr);
ORVALEN_NOT_ON_MACOS(strverscmp);

#undef strdupa
