#pragma once

#include <string_view>
#include <variant>

namespace orvalen {

/// A request's first line, taken apart. The views point into the bytes that were parsed.
struct RequestHead
{
    std::string_view method;
    std::string_view path;  ///< As sent: not decoded. "/" for an address without one.
    std::string_view query; ///< What follows the first question mark.
};

/// Why there is no request in the bytes.
enum class NoRequest
{
    incomplete, ///< So far there is nothing wrong with it.
    malformed,
    tooLarge, ///< More bytes or more fields than a request's head may have.
};

/// Reads the head of a request, from its first byte to the empty line; what follows is not looked at. Whole addresses
/// as targets are taken apart: "http://host/path?query" asks for "/path".
[[nodiscard]] std::variant<RequestHead, NoRequest> parseRequestHead(std::string_view bytes);

} // namespace orvalen
