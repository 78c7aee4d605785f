#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/HotKeys.h"
#include "tests/support/StreamFakes.h"

namespace orvalen::test {

/// A keyboard of which some keys are somebody else's.
struct FakeHotKeys : HotKeys
{
    explicit FakeHotKeys(Diary &diary) : diary(diary) {}

    bool hasService = true;
    std::set<std::uint32_t> taken;  ///< Key codes that are refused.
    std::vector<HotKey> registered; ///< All that were asked for, granted or not.

    std::unique_ptr<HotKeyHandle> installHandler(Handler newHandler) override
    {
        diary.note("install handler");
        if (!hasService)
            return nullptr;
        handler = std::move(newHandler);
        return std::make_unique<Handle>(*this, "remove handler");
    }

    std::unique_ptr<HotKeyHandle> registerHotKey(const HotKey &key) override
    {
        const auto name = std::to_string(key.keyCode);
        diary.note("register " + name);
        registered.push_back(key);
        if (!hasService || taken.contains(key.keyCode))
            return nullptr;
        return std::make_unique<Handle>(*this, "unregister " + name);
    }

    /// The system reports a press; whether it counts as handled.
    bool press(const std::optional<HotKeyId> &pressed) { return handler(pressed); }

private:
    struct Handle : HotKeyHandle
    {
        Handle(FakeHotKeys &owner, std::string farewell) : diary(owner.diary), farewell(std::move(farewell)) {}
        ~Handle() override { diary.note(farewell); }

        Diary &diary;
        const std::string farewell;
    };

    Diary &diary;
    Handler handler;
};

} // namespace orvalen::test
