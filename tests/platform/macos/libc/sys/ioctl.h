#pragma once

#include_next <sys/ioctl.h>

#undef SIOCGIFHWADDR
#undef SIOCGIFINDEX
#undef SIOCINQ
#undef SIOCOUTQ
#undef TIOCINQ
