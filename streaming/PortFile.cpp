#include "streaming/PortFile.h"

#include <charconv>
#include <system_error>

#include "core/Text.h"

namespace orvalen {

std::optional<int> portFrom(std::string_view contents)
{
    auto number = text::trimmed(contents).value_or("");
    if (number.starts_with('+')) {
        number.remove_prefix(1);
        if (number.starts_with('-')) // one sign
            return std::nullopt;
    }
    int port = 0;
    const auto *end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, port);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return port;
}

} // namespace orvalen
