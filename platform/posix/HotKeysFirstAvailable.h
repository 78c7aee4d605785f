#pragma once

#include <memory>
#include <vector>

#include "platform/HotKeys.h"

namespace orvalen {

/// The ways in which sessions give out hot keys, best first: the first that takes the handler gets the keys, too.
class HotKeysFirstAvailable : public HotKeys
{
public:
    explicit HotKeysFirstAvailable(std::vector<std::unique_ptr<HotKeys>> ways);

    [[nodiscard]] std::unique_ptr<HotKeyHandle> installHandler(Handler handler) override;
    [[nodiscard]] std::unique_ptr<HotKeyHandle> registerHotKey(const HotKey &key) override;

private:
    const std::vector<std::unique_ptr<HotKeys>> ways;
    HotKeys *chosen = nullptr;
};

} // namespace orvalen
