#pragma once

#include <string_view>

namespace orvalen {

/// The per-user settings. Main thread only. What cannot be read counts as absent; what cannot be written is kept for
/// this run only, and the file that was there stays as it was.
class SettingsStore
{
public:
    virtual ~SettingsStore() = default;

    [[nodiscard]] virtual bool has(std::string_view key) = 0;
    [[nodiscard]] virtual bool readBool(std::string_view key) = 0;     ///< false when absent or no truth value.
    [[nodiscard]] virtual double readDouble(std::string_view key) = 0; ///< 0.0 when absent or no number.

    /// When the call returns, what was written outlives the process: whole or not at all.
    virtual void writeBool(std::string_view key, bool value) = 0;
    virtual void writeDouble(std::string_view key, double value) = 0;
};

} // namespace orvalen
