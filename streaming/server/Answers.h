#pragma once

#include <chrono>
#include <string_view>

#include "streaming/server/RequestHead.h"
#include "streaming/server/ShortText.h"

namespace orvalen {

/// What a request is answered with.
enum class Route
{
    viewerPage,
    status,
    favicon,
    stream,
    headOfAnything,
    notFound,
    notImplemented,
    malformed,
    tooLarge,
};

/// Method and path decide, to the character.
[[nodiscard]] Route routeOf(const RequestHead &request);

/// An answer as it goes over the wire: the head, then one of the two bodies.
struct Answer
{
    ShortText head;        ///< Status line, header fields and the empty line.
    ShortText composed;    ///< A body that was made for this answer.
    std::string_view page; ///< A body that is always there.
};

using WallTime = std::chrono::time_point<std::chrono::system_clock, std::chrono::microseconds>;

/// For a stream it is the head alone; the parts follow.
[[nodiscard]] Answer answerTo(Route route, WallTime now);

/// "Sun, 06 Nov 1994 08:49:37 GMT".
[[nodiscard]] ShortText httpDate(WallTime now);

/// {"status": "online", "time": 1763733600.123456}
[[nodiscard]] ShortText statusObject(WallTime now);

/// What stands before each frame of a stream, and what behind it.
[[nodiscard]] ShortText partHead(std::size_t frameBytes);
inline constexpr std::string_view partEnd = "\r\n";

} // namespace orvalen
