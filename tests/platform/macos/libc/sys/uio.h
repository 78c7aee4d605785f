#pragma once

#include_next <sys/uio.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(process_vm_readv);
ORVALEN_NOT_ON_MACOS(process_vm_writev);
