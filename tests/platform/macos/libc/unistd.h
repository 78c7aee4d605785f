#pragma once

// Darwin has the variable, too, and nothing that declares it.
#define environ orvalen_environ_of_musl

#include_next <unistd.h>

#undef environ

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(copy_file_range);
ORVALEN_NOT_ON_MACOS(dup3);
ORVALEN_NOT_ON_MACOS(eaccess);
ORVALEN_NOT_ON_MACOS(euidaccess);
ORVALEN_NOT_ON_MACOS(execvpe);
ORVALEN_NOT_ON_MACOS(fdatasync);
ORVALEN_NOT_ON_MACOS(fexecve);
ORVALEN_NOT_ON_MACOS(get_current_dir_name);
ORVALEN_NOT_ON_MACOS(getentropy);
ORVALEN_NOT_ON_MACOS(getresgid);
ORVALEN_NOT_ON_MACOS(getresuid);
ORVALEN_NOT_ON_MACOS(gettid);
ORVALEN_NOT_ON_MACOS(pipe2);
ORVALEN_NOT_ON_MACOS(posix_close);
ORVALEN_NOT_ON_MACOS(setresgid);
ORVALEN_NOT_ON_MACOS(setresuid);
ORVALEN_NOT_ON_MACOS(syncfs);
ORVALEN_NOT_ON_MACOS(syscall);
ORVALEN_NOT_ON_MACOS(vhangup);

#undef _POSIX_TIMERS
#undef _SC_AVPHYS_PAGES
