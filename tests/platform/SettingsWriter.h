#pragma once

#include <array>
#include <string_view>

#include "platform/SettingsStore.h"

namespace orvalen::test {

inline constexpr std::array<std::string_view, 5> settingKeys = {"smartModeEnabled", "targetTemp", "idleTimeoutMinutes",
                                                                "autoWarmupOnCharger", "soundFeedbackEnabled"};

/// Whether the setting that assignment `number` is about is a number, not a truth value.
constexpr bool isNumber(int number)
{
    return number % 5 == 1 || number % 5 == 2;
}

/// Assignment `number` of a row that goes through the settings in turn: numbers grow, truth values alternate.
inline void assign(SettingsStore &store, int number)
{
    const std::string_view key = settingKeys[number % 5];
    if (isNumber(number))
        store.writeDouble(key, number + 0.1);
    else
        store.writeBool(key, number / 5 % 2 == 0);
}

} // namespace orvalen::test
