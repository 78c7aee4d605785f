#pragma once

// Darwin's names of the finer times.
#define st_atim st_atimespec
#define st_mtim st_mtimespec
#define st_ctim st_ctimespec

#include_next <sys/stat.h>

#undef st_atim
#undef st_mtim
#undef st_ctim

#undef st_atime
#undef st_ctime
#undef st_mtime

#define st_atime st_atimespec.tv_sec
#define st_mtime st_mtimespec.tv_sec
#define st_ctime st_ctimespec.tv_sec
