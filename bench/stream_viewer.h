#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvalen::bench {

/// One connection that looks at a stream of motion JPEG as a browser would, but for the pictures: the kernel throws
/// them away, all but what tells when they were taken and whether they are whole. Never blocks.
class StreamViewer
{
public:
    using Clock = std::chrono::steady_clock;

    enum class Freshness
    {
        stamps, ///< Frames may carry a stamp at either end (stream_stamp.h).
        clock,  ///< Frames show a clock (stream_clock.h).
    };

    struct Request
    {
        int port = 0;
        std::string path;
        bool isStrict = true; ///< Parts must be written to the byte as ours are; else any boundary and headers will do.
        Freshness freshness = Freshness::stamps;
        int receiveBuffer = 0; ///< Bytes; 0: as the system has it.
    };

    /// What was seen of whole parts, between `begin` and now.
    struct Sight
    {
        std::uint64_t frames = 0;
        std::uint64_t fresh = 0;  ///< Of `frames`: not a repeat of the one before.
        std::uint64_t torn = 0;   ///< Of `frames`: not whole, or made of two.
        std::uint64_t empty = 0;  ///< Parts with nothing in them.
        std::uint64_t unread = 0; ///< Of `frames`: told no time.
        std::uint64_t bytes = 0;
        std::chrono::duration<double> longestGap{0}; ///< Between the ends of two frames; the first counts from `begin`.
        std::vector<float> ages;                     ///< Milliseconds, of every frame when its last byte was there.
    };

    StreamViewer() = default;
    StreamViewer(const StreamViewer &) = delete;
    StreamViewer &operator=(const StreamViewer &) = delete;
    ~StreamViewer() { drop(); }

    /// Begins to connect. False if not even that works.
    bool connect(const Request &wanted);

    /// The descriptor to wait on; -1 without a connection.
    [[nodiscard]] int descriptor() const { return socket; }
    [[nodiscard]] bool isConnecting() const { return state == State::connecting; }
    [[nodiscard]] bool isWatching() const { return socket >= 0 && state != State::connecting; }

    /// The connection stands or has failed: sends the request. False if it has failed.
    bool ask();

    /// Reads at most about `limit` bytes of what has come. Gives their number; the connection may be closed afterwards.
    std::size_t look(std::size_t limit);

    void drop();

    /// Sets the sight back to nothing.
    void begin();

    [[nodiscard]] const Sight &sight() const { return seen; }
    [[nodiscard]] std::uint64_t framesEver() const { return everSeen; }
    [[nodiscard]] Clock::time_point connectedAt() const { return begunAt; }

    /// Until the end of the first frame of this connection; negative as long as there is none.
    [[nodiscard]] std::chrono::duration<double> firstFrameAfter() const { return firstAfter; }

    /// Why the connection was closed, if it was.
    [[nodiscard]] std::string_view complaint() const { return why; }

private:
    enum class State
    {
        connecting,
        answer,
        partHead,
        frameStart,
        body,
        frameEnd
    };

    enum class Step
    {
        forward,
        wait,
        closed
    };

    Step step(std::size_t limit);
    Step receive(std::size_t atLeast, std::size_t atMost);
    Step discard(std::size_t limit);
    Step close(std::string_view reason);
    Step readAnswer();
    Step readPartHead();
    Step readFrameStart();
    Step readFrameEnd();
    void frameEnded(bool isWhole);
    [[nodiscard]] std::string_view pending() const { return {buffer.data() + first, last - first}; }
    [[nodiscard]] std::size_t startSize() const;

    Request request;
    int socket = -1;
    State state = State::connecting;
    std::string_view why;

    std::array<char, 16384> buffer;
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t taken = 0; // bytes received in this look

    std::size_t frameSize = 0;
    std::size_t bodyLeft = 0;
    std::string startStamp;   // its segment, empty without one
    std::int64_t takenAt = 0; // nanoseconds since the epoch; 0: not known
    std::string lastIdentity; // of the frame before
    std::string identity;
    bool startsWell = false;

    Sight seen;
    std::uint64_t everSeen = 0;
    Clock::time_point begunAt;
    Clock::time_point lastFrame;
    std::chrono::duration<double> firstAfter{-1};
};

} // namespace orvalen::bench
