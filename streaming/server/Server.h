#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

#include "streaming/server/DisplayFrames.h"
#include "streaming/server/Peer.h"

namespace orvalen {

/// Accepts connections and serves each on a thread of its own.
class Server
{
public:
    /// `listener` does not block. `descriptors` is held while a descriptor exists that a child would inherit.
    Server(Descriptor listener, DisplayFrames &frames, std::mutex &descriptors, std::size_t mostConnections);

    /// Until the process is killed: connection threads may be anywhere then, and nobody waits for them.
    [[noreturn]] void serve();

private:
    /// What a connection's thread is given. Made beforehand, so that no thread needs the heap.
    struct Place
    {
        Server *server = nullptr;
        int socket = -1;
        Place *nextFree = nullptr;
    };

    Descriptor accept();
    void startThread(Descriptor socket);
    Place *takePlace();
    void leavePlace(Place &place);
    static void *serveConnection(void *place);

    Descriptor listener;
    DisplayFrames &frames;
    std::mutex &descriptors;
    Patience patience;
    std::vector<Place> places;
    std::mutex placesMutex;
    Place *firstFree = nullptr;
};

} // namespace orvalen
