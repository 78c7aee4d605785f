#include "platform/posix/HotKeysFirstAvailable.h"

#include <utility>

namespace orvalen {

HotKeysFirstAvailable::HotKeysFirstAvailable(std::vector<std::unique_ptr<HotKeys>> ways) : ways(std::move(ways)) {}

std::unique_ptr<HotKeyHandle> HotKeysFirstAvailable::installHandler(Handler handler)
{
    for (const auto &way : ways) {
        if (auto handle = way->installHandler(handler)) {
            chosen = way.get();
            return handle;
        }
    }
    chosen = nullptr;
    return nullptr;
}

std::unique_ptr<HotKeyHandle> HotKeysFirstAvailable::registerHotKey(const HotKey &key)
{
    return chosen ? chosen->registerHotKey(key) : nullptr;
}

} // namespace orvalen
