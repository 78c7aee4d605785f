#include "streaming/server/Server.h"

#include <cerrno>
#include <chrono>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>

#include "streaming/server/Connection.h"

namespace orvalen {

namespace {

/// Until the system may have descriptors or memory again.
constexpr std::chrono::milliseconds shortage{50};

} // namespace

Server::Server(Descriptor listener, DisplayFrames &frames, std::mutex &descriptors, std::size_t mostConnections)
    : listener(std::move(listener)), frames(frames), descriptors(descriptors), places(mostConnections)
{
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
        place->server = this;
        place->nextFree = std::exchange(firstFree, &*place);
    }
}

void Server::serve()
{
    for (;;) {
        pollfd waiting{listener.get(), POLLIN, 0};
        if (::poll(&waiting, 1, -1) < 0)
            continue;
        if (Descriptor socket = accept())
            startThread(std::move(socket));
        else if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM)
            std::this_thread::sleep_for(shortage);
    }
}

Descriptor Server::accept()
{
    const std::lock_guard lock(descriptors); // the capture command must not start before the mark is set
    Descriptor socket(::accept(listener.get(), nullptr, nullptr));
    if (socket)
        ::fcntl(socket.get(), F_SETFD, FD_CLOEXEC);
    return socket;
}

void Server::startThread(Descriptor socket)
{
    Place *const place = takePlace();
    if (!place)
        return; // full: the connection is closed
    ::fcntl(socket.get(), F_SETFL, O_NONBLOCK);
    place->socket = socket.release();

    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    ::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    ::pthread_attr_setstacksize(&attributes, limits::connectionStack);
    pthread_t thread;
    const int error = ::pthread_create(&thread, &attributes, &Server::serveConnection, place);
    ::pthread_attr_destroy(&attributes);
    if (error != 0) {
        const Descriptor closed(place->socket);
        leavePlace(*place);
    }
}

void *Server::serveConnection(void *argument)
{
    auto &place = *static_cast<Place *>(argument);
    auto &server = *place.server;
    try {
        Connection(Descriptor(place.socket), server.frames, server.patience).serve();
    } catch (...) {
        // Nobody is told: the connection is closed.
    }
    server.leavePlace(place);
    return nullptr;
}

Server::Place *Server::takePlace()
{
    const std::lock_guard lock(placesMutex);
    return firstFree ? std::exchange(firstFree, firstFree->nextFree) : nullptr;
}

void Server::leavePlace(Place &place)
{
    const std::lock_guard lock(placesMutex);
    place.nextFree = std::exchange(firstFree, &place);
}

} // namespace orvalen
