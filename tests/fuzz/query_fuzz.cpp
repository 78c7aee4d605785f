// The query of a stream's address.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "streaming/server/DisplayNumber.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using orvalen::displayNumber;
    const std::string query(reinterpret_cast<const char *>(data), size);
    const auto number = displayNumber(query);
    // What was understood can be said in plain words, and pairs of other names change nothing.
    if (displayNumber("d=" + std::to_string(number)) != number || displayNumber("t=1&" + query) != number)
        std::abort();
    // A display that is named behind counts only if none was named before.
    const auto followed = displayNumber(query + "&d=77");
    const auto followedByOther = displayNumber(query + "&d=78");
    const bool named = followed == number && followedByOther == number;
    const bool notNamed = number == 1 && followed == 77 && followedByOther == 78;
    if (!named && !notNamed)
        std::abort();
    return 0;
}
