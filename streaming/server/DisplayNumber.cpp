#include "streaming/server/DisplayNumber.h"

#include <limits>
#include <optional>

namespace orvalen {

namespace {

constexpr std::int64_t mainDisplay = 1;

std::optional<unsigned> hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return std::nullopt;
}

/// Hands out the characters of a form-encoded text. A percent sign that begins no code stands for itself.
class Decoded
{
public:
    explicit Decoded(std::string_view text) : rest(text) {}

    [[nodiscard]] bool atEnd() const { return rest.empty(); }

    char next()
    {
        const char c = rest.front();
        if (c == '%' && rest.size() >= 3) {
            const auto high = hexDigit(rest[1]);
            const auto low = hexDigit(rest[2]);
            if (high && low) {
                rest.remove_prefix(3);
                return static_cast<char>(*high * 16 + *low);
            }
        }
        rest.remove_prefix(1);
        return c == '+' ? ' ' : c;
    }

private:
    std::string_view rest;
};

bool isNamedD(std::string_view name)
{
    Decoded decoded(name);
    return !decoded.atEnd() && decoded.next() == 'd' && decoded.atEnd();
}

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// std::nullopt for whatever is not a number of 64 bits.
std::optional<std::int64_t> decimal(std::string_view encoded)
{
    enum
    {
        beforeNumber,
        afterSign,
        inNumber,
        afterNumber
    } place = beforeNumber;
    bool negative = false;
    std::int64_t number = 0; // with its sign: the lowest number has no positive counterpart
    for (Decoded text(encoded); !text.atEnd();) {
        const char c = text.next();
        if (isDigit(c) && place != afterNumber) {
            const int digit = c - '0';
            constexpr auto highest = std::numeric_limits<std::int64_t>::max();
            constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
            if (negative ? number < (lowest + digit) / 10 : number > (highest - digit) / 10)
                return std::nullopt;
            number = number * 10 + (negative ? -digit : digit);
            place = inNumber;
        } else if (isBlank(c) && place != afterSign) {
            place = place == beforeNumber ? beforeNumber : afterNumber;
        } else if ((c == '+' || c == '-') && place == beforeNumber) {
            negative = c == '-';
            place = afterSign;
        } else {
            return std::nullopt;
        }
    }
    if (place == beforeNumber || place == afterSign)
        return std::nullopt;
    return number;
}

} // namespace

std::int64_t displayNumber(std::string_view query)
{
    while (!query.empty()) {
        const auto pair = query.substr(0, query.find('&'));
        query.remove_prefix(pair.size() < query.size() ? pair.size() + 1 : pair.size());
        const auto equals = pair.find('=');
        if (!isNamedD(pair.substr(0, equals)))
            continue;
        return equals == std::string_view::npos ? mainDisplay : decimal(pair.substr(equals + 1)).value_or(mainDisplay);
    }
    return mainDisplay;
}

} // namespace orvalen
