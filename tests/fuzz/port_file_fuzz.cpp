// What may lie where the stream server leaves its port: any bytes. A number that is found must be the number that
// stands there, and one that stands there must be found.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "streaming/PortFile.h"

namespace {

/// The slow way, for text of plain ASCII alone.
std::optional<long long> numberIn(std::string_view text)
{
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const auto begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return std::nullopt;
    text = text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
    const bool isNegative = text.front() == '-';
    if (isNegative || text.front() == '+')
        text.remove_prefix(1);
    if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos)
        return std::nullopt;
    long long number = 0;
    for (const char digit : text) {
        number = 10 * number + (digit - '0');
        if (number > 2147483648LL)
            return std::nullopt;
    }
    number = isNegative ? -number : number;
    if (number > 2147483647LL)
        return std::nullopt;
    return number;
}

void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string contents(reinterpret_cast<const char *>(data), size);
    const auto port = orvalen::portFrom(contents);
    require(!port || contents.find(std::to_string(std::llabs(*port))) != std::string::npos);
    if (contents.find_first_not_of("+-0123456789 \t\n\v\f\r") == std::string::npos) {
        const auto number = numberIn(contents);
        require(port.has_value() == number.has_value() && (!port || *port == *number));
    }
    return 0;
}
