#pragma once

#include <optional>

#include <sys/socket.h>
#include <sys/types.h>

/// What connections have under other names on each Unix. Any thread.
namespace orvalen::stream_socket {

/// Before the first `sendNow`: a peer that is gone becomes an error there, never a signal to the process.
void quieten(int socket);

/// As sendmsg(2), as far as there is room: it does not wait, and does not signal on a socket that has been quietened.
[[nodiscard]] ssize_t sendNow(int socket, const msghdr &message);

/// Bytes that were sent and that the peer's system has not acknowledged; std::nullopt if the system does not say.
[[nodiscard]] std::optional<int> unacknowledged(int socket);

} // namespace orvalen::stream_socket
