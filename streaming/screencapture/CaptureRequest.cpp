#include "streaming/screencapture/CaptureRequest.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>

namespace orvalen {

namespace {

/// A number that does not fit is as far beyond the last display as the greatest that does.
std::optional<std::uint64_t> displayNumber(std::string_view digits)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isDigit))
        return std::nullopt;
    std::uint64_t number = std::numeric_limits<std::uint64_t>::max();
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

std::string quoted(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

} // namespace

std::variant<CaptureRequest, Refusal> captureRequest(std::span<const std::string_view> arguments)
{
    CaptureRequest request;
    auto next = arguments.begin();
    while (next != arguments.end() && next->starts_with('-') && next->size() > 1) {
        auto letters = next++->substr(1);
        if (letters == "-")
            break;
        while (!letters.empty()) {
            const char option = letters.front();
            letters.remove_prefix(1);
            if (option == 'x')
                continue;
            if (option != 't' && option != 'D')
                return Refusal{"There is no option -" + std::string(1, option) + '.'};
            if (letters.empty() && next == arguments.end())
                return Refusal{"Option -" + std::string(1, option) + " wants a value."};
            const auto value = letters.empty() ? *next++ : letters;
            letters = {};
            if (option == 't' && value != "jpg")
                return Refusal{"Pictures are of type jpg, not " + quoted(value) + '.'};
            if (option == 'D') {
                const auto number = displayNumber(value);
                if (!number)
                    return Refusal{"A display has a number, not " + quoted(value) + '.'};
                request.display = *number;
            }
        }
    }
    if (arguments.end() - next != 1 || next->empty())
        return Refusal{"One file must be named."};
    request.file = *next;
    return request;
}

} // namespace orvalen
