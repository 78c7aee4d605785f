#pragma once

#include_next <poll.h>

#include <not_on_macos.h>

ORVALEN_NOT_ON_MACOS(ppoll);

#undef POLLMSG
#undef POLLRDHUP
