#include "streaming/server/Listener.h"

#include <string>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "platform/posix/PrivateFile.h"
#include "streaming/server/Contract.h"

namespace orvalen {

namespace {

/// Does not block: who is announced may be gone when it is accepted.
Descriptor listenOn(std::uint16_t port)
{
    Descriptor socket(::socket(AF_INET, SOCK_STREAM, 0));
    if (!socket)
        return {};
    ::fcntl(socket.get(), F_SETFD, FD_CLOEXEC); // nothing else runs yet that could leave it to a child
    ::fcntl(socket.get(), F_SETFL, O_NONBLOCK);
    const int yes = 1;
    ::setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    if (::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(socket.get(), limits::backlog) != 0)
        return {};
    return socket;
}

} // namespace

Descriptor listenOnFirst(std::span<const std::uint16_t> ports, const std::filesystem::path &portFile)
{
    for (const auto port : ports) {
        Descriptor socket = listenOn(port);
        if (socket && private_file::write(portFile, std::to_string(port)) == 0)
            return socket;
    }
    return {};
}

} // namespace orvalen
