#include "platform/posix/InputIdleTimeFirstAvailable.h"

#include <utility>

namespace orvalen {

InputIdleTimeFirstAvailable::InputIdleTimeFirstAvailable(std::vector<std::unique_ptr<InputIdleTime>> ways)
    : ways(std::move(ways))
{
}

std::optional<std::chrono::duration<double>> InputIdleTimeFirstAvailable::sinceLastInput()
{
    for (const auto &way : ways) {
        if (const auto idle = way->sinceLastInput())
            return idle;
    }
    return std::nullopt;
}

} // namespace orvalen
