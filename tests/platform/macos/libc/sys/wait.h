#pragma once

#include_next <sys/wait.h>

#undef __WALL
#undef __WCLONE
#undef __WNOTHREAD
