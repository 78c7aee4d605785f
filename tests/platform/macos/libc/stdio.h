#pragma once

#include_next <stdio.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(fflush_unlocked);
ORVALEN_NOT_ON_MACOS(fgetc_unlocked);
ORVALEN_NOT_ON_MACOS(fgets_unlocked);
ORVALEN_NOT_ON_MACOS(fopencookie);
ORVALEN_NOT_ON_MACOS(fputc_unlocked);
ORVALEN_NOT_ON_MACOS(fputs_unlocked);
ORVALEN_NOT_ON_MACOS(fread_unlocked);
ORVALEN_NOT_ON_MACOS(fwrite_unlocked);
