// Since which version the system has something, and from which on nobody should call it any more, for declarations of
// our own. Compilers that know no macOS ignore it.
#pragma once

#define __MAC_OS_X_VERSION_MAX_ALLOWED 150000

#ifdef __clang__ // for other systems it has no meaning, and no harm
#define ORVALEN_MACOS_SINCE(version) __attribute__((availability(macos, introduced = version)))
#define ORVALEN_MACOS_UNTIL(since, version)                                                                            \
    __attribute__((availability(macos, introduced = since, deprecated = version)))
#else
#define ORVALEN_MACOS_SINCE(version)
#define ORVALEN_MACOS_UNTIL(since, version)
#endif
