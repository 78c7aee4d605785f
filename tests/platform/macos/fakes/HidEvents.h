#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace orvalen::fake {

/// A service of the HID event system: what it answers for its "Product" (nothing, a text or a number), and what the
/// event that it gives holds. Without a value it gives no event.
struct HidService
{
    std::variant<std::monostate, std::string, std::int64_t> product;
    std::optional<double> value;
};

/// What the machine has. Calls are noted with their arguments; clients are client1, client2, ... in the order of their
/// making, and the third service is service3 to each of them, its event event3. Who uses a service whose client is gone
/// ends the test.
struct HidSystem
{
    enum class List
    {
        array,
        null,
        noArray,
    };

    std::vector<HidService> services = {};
    bool hasClient = true;
    List list = List::array;
};

/// Counts clients from 1 again. Not while somebody reads.
void setHidSystem(HidSystem system);

} // namespace orvalen::fake
