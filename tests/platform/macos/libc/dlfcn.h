#pragma once

#include_next <dlfcn.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(dlinfo);
