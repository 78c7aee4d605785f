#pragma once

#include_next <netinet/in.h>

#undef IP_BIND_ADDRESS_NO_PORT
#undef IP_FREEBIND
#undef IP_MTU
#undef IP_MTU_DISCOVER
#undef IP_RECVERR
#undef IP_TRANSPARENT
