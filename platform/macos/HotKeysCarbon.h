#pragma once

#include "platform/HotKeys.h"

namespace orvalen {

/// Carbon's hot keys, which the application's event target hears of. They need no permission, and come in under any
/// event loop that AppKit runs.
///
/// Each handle gives back what it stands for. A key of which no handler is told is ours all the same. There is one
/// handler at a time: the next one takes its place, and does not give it back to the one before.
class HotKeysCarbon : public HotKeys
{
public:
    [[nodiscard]] std::unique_ptr<HotKeyHandle> installHandler(Handler handler) override;
    [[nodiscard]] std::unique_ptr<HotKeyHandle> registerHotKey(const HotKey &key) override;
};

} // namespace orvalen
