#pragma once

#include_next <sys/mman.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(memfd_create);
ORVALEN_NOT_ON_MACOS(mlock2);
ORVALEN_NOT_ON_MACOS(mremap);
ORVALEN_NOT_ON_MACOS(remap_file_pages);

#undef MADV_COLD
#undef MADV_DODUMP
#undef MADV_DOFORK
#undef MADV_DONTDUMP
#undef MADV_DONTFORK
#undef MADV_HUGEPAGE
#undef MADV_MERGEABLE
#undef MADV_NOHUGEPAGE
#undef MADV_PAGEOUT
#undef MADV_REMOVE
#undef MADV_WIPEONFORK
#undef MAP_FIXED_NOREPLACE
#undef MAP_GROWSDOWN
#undef MAP_HUGETLB
#undef MAP_LOCKED
#undef MAP_NONBLOCK
#undef MAP_POPULATE
#undef MAP_SHARED_VALIDATE
#undef MAP_STACK
#undef MAP_SYNC
#undef MFD_ALLOW_SEALING
#undef MFD_CLOEXEC
#undef MFD_HUGETLB
#undef MREMAP_FIXED
#undef MREMAP_MAYMOVE
