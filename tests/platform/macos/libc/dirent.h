#pragma once

#include_next <dirent.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(getdents);
ORVALEN_NOT_ON_MACOS(versionsort);
