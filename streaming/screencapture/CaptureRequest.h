#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace orvalen {

/// What the command line asks for.
struct CaptureRequest
{
    std::uint64_t display = 1; ///< As people count: from 1 on.
    std::string file;

    bool operator==(const CaptureRequest &) const = default;
};

/// Why a command line asks for nothing that can be done.
struct Refusal
{
    std::string reason; ///< A sentence.

    bool operator==(const Refusal &) const = default;
};

/// `arguments`: without the program's name. Options stand before the file and may share a dash; "--" ends them.
[[nodiscard]] std::variant<CaptureRequest, Refusal> captureRequest(std::span<const std::string_view> arguments);

/// How the program is called, in a few lines.
inline constexpr std::string_view captureUsage =
    "usage: screencapture [-x] [-t jpg] [-D display] file\n"
    "  -x          no sound (there is none anyway)\n"
    "  -t jpg      the picture's format; there is no other\n"
    "  -D display  1: the main display, which is also the default; 2, 3, ...: the\n"
    "              others from left to right, then from top to bottom\n";

} // namespace orvalen
