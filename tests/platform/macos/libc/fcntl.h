#pragma once

#include_next <fcntl.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(fallocate);
ORVALEN_NOT_ON_MACOS(name_to_handle_at);
ORVALEN_NOT_ON_MACOS(open_by_handle_at);
ORVALEN_NOT_ON_MACOS(posix_fadvise);
ORVALEN_NOT_ON_MACOS(posix_fallocate);
ORVALEN_NOT_ON_MACOS(readahead);
ORVALEN_NOT_ON_MACOS(splice);
ORVALEN_NOT_ON_MACOS(sync_file_range);
ORVALEN_NOT_ON_MACOS(tee);
ORVALEN_NOT_ON_MACOS(vmsplice);

#define F_FULLFSYNC 51

#undef AT_EMPTY_PATH
#undef AT_NO_AUTOMOUNT
#undef AT_RECURSIVE
#undef AT_STATX_SYNC_TYPE
#undef FALLOC_FL_KEEP_SIZE
#undef FALLOC_FL_PUNCH_HOLE
#undef F_ADD_SEALS
#undef F_GETLEASE
#undef F_GETOWN_EX
#undef F_GETPIPE_SZ
#undef F_GETSIG
#undef F_GET_SEALS
#undef F_NOTIFY
#undef F_OFD_GETLK
#undef F_OFD_SETLK
#undef F_OFD_SETLKW
#undef F_SEAL_GROW
#undef F_SEAL_SEAL
#undef F_SEAL_SHRINK
#undef F_SEAL_WRITE
#undef F_SETLEASE
#undef F_SETOWN_EX
#undef F_SETPIPE_SZ
#undef F_SETSIG
#undef O_DIRECT
#undef O_LARGEFILE
#undef O_NOATIME
#undef O_PATH
#undef O_RSYNC
#undef O_TMPFILE
#undef POSIX_FADV_DONTNEED
#undef POSIX_FADV_NOREUSE
#undef POSIX_FADV_NORMAL
#undef POSIX_FADV_RANDOM
#undef POSIX_FADV_SEQUENTIAL
#undef POSIX_FADV_WILLNEED
#undef SPLICE_F_GIFT
#undef SPLICE_F_MORE
#undef SPLICE_F_MOVE
#undef SPLICE_F_NONBLOCK
