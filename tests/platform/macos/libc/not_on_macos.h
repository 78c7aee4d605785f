// For the headers beside this one, which stand before musl's: takes away what Darwin's C library has not.
#pragma once

#ifdef __cplusplus
#define ORVALEN_NOT_ON_MACOS(function)                                                                                 \
    extern "C" __attribute__((unavailable("not on macOS"))) decltype(function) function
#else
#define ORVALEN_NOT_ON_MACOS(function) _Static_assert(1, #function)
#endif
