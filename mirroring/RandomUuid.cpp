#include "mirroring/RandomUuid.h"

#include <random>
#include <string_view>

namespace orvalen {

std::string randomUuid()
{
    constexpr std::string_view pattern = "xxxxxxxx-xxxx-4xxx-vxxx-xxxxxxxxxxxx"; // v: one of 8, 9, A and B
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::random_device random;
    std::uniform_int_distribution<std::size_t> any(0, 15);
    std::uniform_int_distribution<std::size_t> variant(8, 11);
    std::string uuid(pattern);
    for (auto &character : uuid) {
        if (character == 'x')
            character = digits[any(random)];
        else if (character == 'v')
            character = digits[variant(random)];
    }
    return uuid;
}

} // namespace orvalen
