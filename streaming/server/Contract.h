#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace orvalen {

/// What others rely on: where the server listens, which files it leaves, and its rhythm.
namespace contract {

/// Tried in this order; the rest of the program assumes the first until told otherwise.
inline constexpr std::array<std::uint16_t, 4> ports = {8999, 9000, 9001, 8088};

/// The bound port in decimal, nothing else.
inline constexpr const char *portFile = "/tmp/orvalen_port.txt";

/// A capture file's name is prefix, display number, suffix.
inline constexpr const char *captureFilePrefix = "/tmp/ov_disp_";
inline constexpr const char *captureFileSuffix = ".jpg";

inline constexpr const char *captureCommand = "screencapture";

/// A capture that began less than this ago is served again.
inline constexpr std::chrono::milliseconds frameReuse{100};
/// Rest after a failed capture: each may have shown somebody a question.
inline constexpr std::chrono::milliseconds captureBackOff{1500};
/// Rest of a stream after each frame.
inline constexpr std::chrono::milliseconds framePause{80};
/// Rest of a stream when there is no frame at all.
inline constexpr std::chrono::milliseconds emptyPause{1000};

} // namespace contract

/// What nobody may exceed, whatever they send or refuse to read.
namespace limits {

inline constexpr std::size_t requestHeadBytes = 8 * 1024;
inline constexpr int requestFields = 64;
/// From the connection to the end of the request's head, however it drips in.
inline constexpr std::chrono::seconds requestTime{10};

inline constexpr std::size_t connections = 4096;
/// Connections that wait to be accepted; the system may have a lower limit.
inline constexpr int backlog = 4096;
/// Descriptors that are kept back from connections: capture files, standard streams, the listening socket.
inline constexpr std::size_t otherDescriptors = 64;
/// A connection's stack. Only what is touched takes memory.
inline constexpr std::size_t connectionStack = 128 * 1024;

/// A viewer that takes not a byte for so long is let go.
inline constexpr std::chrono::seconds sendingTime{30};
/// How often a viewer that takes nothing is looked at again.
inline constexpr std::chrono::seconds sendingGlance{1};
/// A frame that was begun is through within this, or the viewer is let go, however steadily it drips.
inline constexpr std::chrono::seconds partTime{60};
/// Frames that viewers still hold while their displays have newer ones. Beyond this many bytes of them,
inline constexpr std::size_t heldBytes = 16 * 1024 * 1024;
/// a viewer that holds one has only this from its beginning to its end.
inline constexpr std::chrono::seconds hurriedPartTime{2};
/// After the answer: how long, and for how many bytes, a client may go on talking before the connection is cut.
inline constexpr std::chrono::seconds farewellTime{1};
inline constexpr std::size_t farewellBytes = 256 * 1024;
/// What may lie unsent in the kernel when the next frame is chosen. Little: what lies there gets older.
inline constexpr int unsentBytes = 4096;

/// Display numbers that have frames of their own; further ones show display 1.
inline constexpr std::size_t displays = 256;
inline constexpr std::size_t frameBytes = 32 * 1024 * 1024;
/// What the last frames of all displays may take; numbers that find no room show display 1, too.
inline constexpr std::size_t allFramesBytes = 128 * 1024 * 1024;
/// A capture command that runs longer is ended by force.
inline constexpr std::chrono::seconds captureTime{30};

} // namespace limits

} // namespace orvalen
