// stream_floor PORT FRAME     The least that it can cost to push a JPEG to every viewer; what a stream server is held
// to.
//
// Nothing is captured: ten times a second FRAME gets a new stamp, and each connection's thread sends the newest one
// with a single call, then sleeps for 80 ms. No request is looked at and no error told. Loopback only.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "bench/stream_stamp.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::string_view answer =
    "HTTP/1.0 200 OK\r\nContent-Type: multipart/x-mixed-replace; boundary=FRAME\r\n\r\n";

/// A part of the stream, ready to be sent.
using Part = std::shared_ptr<const std::string>;

class Parts
{
public:
    explicit Parts(std::string frame) : jpeg(std::move(frame)) {}

    Part newest()
    {
        const std::lock_guard lock(mutex);
        const auto now = Clock::now();
        if (!part || now - madeAt >= 100ms) {
            part = make();
            madeAt = now;
        }
        return part;
    }

private:
    Part make()
    {
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        const orvalen::bench::StreamStamp stamp{std::chrono::nanoseconds(now).count(), ++count};
        const std::string frame = stamp.on(jpeg);
        return std::make_shared<const std::string>("--FRAME\r\nContent-Type: image/jpeg\r\nContent-Length: " +
                                                   std::to_string(frame.size()) + "\r\n\r\n" + frame + "\r\n");
    }

    std::string jpeg;
    std::mutex mutex;
    Part part;
    Clock::time_point madeAt;
    std::uint32_t count = 0;
};

bool sendAll(int connection, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void serve(int connection, Parts &parts)
{
    std::array<char, 2048> request{};
    bool alive = ::recv(connection, request.data(), request.size(), 0) > 0 && sendAll(connection, answer);
    while (alive) {
        alive = sendAll(connection, *parts.newest());
        std::this_thread::sleep_for(80ms);
    }
    ::close(connection);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fputs("stream_floor PORT FRAME\n", stderr);
        return 64;
    }
    std::ifstream file(argv[2], std::ios::binary);
    Parts parts(std::string(std::istreambuf_iterator<char>(file), {}));

    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(std::atoi(argv[1])));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (!file || ::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(listener, SOMAXCONN) != 0) {
        std::perror("stream_floor");
        return 69;
    }
    for (;;) {
        const int connection = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            continue;
        ::setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        std::thread(serve, connection, std::ref(parts)).detach();
    }
}
