#include "platform/posix/StreamSocket.h"

#include <sys/ioctl.h>

namespace orvalen::stream_socket {

void quieten([[maybe_unused]] int socket)
{
#ifdef __APPLE__ // where it is the socket's to know
    const int yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_NOSIGPIPE, &yes, sizeof yes);
#endif
}

ssize_t sendNow(int socket, const msghdr &message)
{
#ifdef __APPLE__
    return ::sendmsg(socket, &message, MSG_DONTWAIT);
#else
    return ::sendmsg(socket, &message, MSG_DONTWAIT | MSG_NOSIGNAL);
#endif
}

std::optional<int> unacknowledged(int socket)
{
    int bytes = 0;
#ifdef __APPLE__ // whose TIOCOUTQ is for terminals alone
    socklen_t size = sizeof bytes;
    const bool isKnown = ::getsockopt(socket, SOL_SOCKET, SO_NWRITE, &bytes, &size) == 0;
#else
    const bool isKnown = ::ioctl(socket, TIOCOUTQ, &bytes) == 0;
#endif
    return isKnown ? std::optional(bytes) : std::nullopt;
}

} // namespace orvalen::stream_socket
