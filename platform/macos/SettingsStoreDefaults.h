#pragma once

#include "platform/SettingsStore.h"

namespace orvalen {

/// The user's defaults database, in the domain of this application: what its bundle is called, or else its program.
///
/// Values that people have put there with the `defaults` tool are often text. They are read as NSUserDefaults reads
/// them: "YES", "true" and "1" are true, and a number may have anything behind it. What is in the user's global domain
/// counts where the application's own has nothing.
///
/// A write has left the process when it returns; the system's preferences service brings it to the disk.
class SettingsStoreDefaults : public SettingsStore
{
public:
    [[nodiscard]] bool has(std::string_view key) override;
    [[nodiscard]] bool readBool(std::string_view key) override;
    [[nodiscard]] double readDouble(std::string_view key) override; ///< A truth value is 1.0 or 0.0.
    void writeBool(std::string_view key, bool value) override;
    void writeDouble(std::string_view key, double value) override;
};

} // namespace orvalen
