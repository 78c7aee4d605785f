#pragma once

#include_next <netdb.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(gethostbyaddr_r);
ORVALEN_NOT_ON_MACOS(gethostbyname2_r);
ORVALEN_NOT_ON_MACOS(gethostbyname_r);
ORVALEN_NOT_ON_MACOS(getservbyname_r);
ORVALEN_NOT_ON_MACOS(getservbyport_r);
